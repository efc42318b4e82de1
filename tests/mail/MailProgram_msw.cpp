#include <windows.h>

#include "base/FileName.h"
#include "base/Text.h"
#include "registry/clsRegistry.h"
#include "tests/mail/MailProgram.h"
#include "tests/support/Files.h"

// This very program, which keeps its command line when it is started so. The registry is the test's own.
MailProgram::MailProgram() {
    record_ =
        std::filesystem::temp_directory_path() / (L"kivora-mail-" + std::to_wstring(GetCurrentProcessId()));
    std::filesystem::remove(record_);
    Registry().SetValue(L"HKCR\\mailto\\URL Protocol", REG_TYPE_SZ, L"");
    Registry().SetValue(
        L"HKCR\\mailto\\shell\\open\\command\\", REG_TYPE_SZ,
        L"\"" + ProgramPath() + L"\" --keep-command-line \"" + record_.native() + L"\" \"%1\"");
}

MailProgram::~MailProgram() {
    Registry().DeleteKey(L"HKCR\\mailto");
    std::error_code ignored;
    std::filesystem::remove(record_, ignored);
}

std::wstring MailProgram::Got() const {
    const std::string line = Content(record_);
    const std::size_t start = line.find(" \"mailto:");
    if (start == std::string::npos || !line.ends_with("\"")) return L"";
    return FromUtf8(line.substr(start + 2, line.size() - start - 3));
}
