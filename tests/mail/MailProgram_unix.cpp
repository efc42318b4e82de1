#include <cstdlib>
#include <fstream>

#include "base/Text.h"
#include "tests/mail/MailProgram.h"

// A script in the place of the desktop's opener.
MailProgram::MailProgram() : before_(std::getenv("PATH")) {
    const std::filesystem::path folder = std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "opener";
    std::filesystem::create_directories(folder);
    record_ = folder / "record";
    std::filesystem::remove(record_);
    const std::filesystem::path opener = folder / "xdg-open";
    std::ofstream(opener) << "#!/bin/sh\nprintf '%s\\n' \"$1\" \"$#\" >'" + record_.string() + "'\n";
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    setenv("PATH", (folder.string() + ":" + before_).c_str(), 1);
}

MailProgram::~MailProgram() { setenv("PATH", before_.c_str(), 1); }

std::wstring MailProgram::Got() const {
    std::ifstream written(record_);
    std::string argument, count;
    std::getline(written, argument);
    std::getline(written, count);
    return count == "1" ? FromUtf8(argument) : L"";
}
