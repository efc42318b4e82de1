#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/FileName.h"
#include "exchange/Association.h"
#include "tests/support/Events.h"

namespace {

namespace fs = std::filesystem;

fs::path Data() { return std::getenv("XDG_DATA_HOME"); }

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Association, DesktopFilesAreWrittenOnlyWhenSomethingChanged) {
    fs::remove_all(Data() / "applications");
    fs::remove_all(Data() / "mime");
    const fs::path entry = Data() / "applications" / "kivora.desktop";
    const fs::path type = Data() / "mime" / "packages" / "kivora.xml";
    RegisterWithDesktop(false);
    ASSERT_TRUE(RunUntil([&] { return fs::exists(entry) && fs::exists(type); }));
    const std::string program = FilePath(ProgramPath()).native();
    EXPECT_NE(Content(entry).find("\nExec=" + program + " %F\n"), std::string::npos) << Content(entry);
    EXPECT_NE(Content(entry).find("\nExec=" + program + " [print] %F\n"), std::string::npos);
    EXPECT_NE(Content(entry).find("\nMimeType=application/x-kivora;\n"), std::string::npos);
    EXPECT_NE(Content(type).find("<glob pattern=\"*.kvr\"/>"), std::string::npos);
    EXPECT_TRUE(fs::exists(Data() / "icons" / "hicolor" / "48x48" / "apps" / "kivora.png"));

    const fs::file_time_type longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    const auto again = [&](const fs::path& changed) {
        for (const fs::path& file : {entry, type}) fs::last_write_time(file, longAgo);
        if (!changed.empty()) {
            std::ofstream(changed) << "x";
            fs::last_write_time(changed, longAgo);
        }
        RegisterWithDesktop(false);
        RunEvents();
    };
    again({});
    EXPECT_EQ(fs::last_write_time(entry), longAgo);
    EXPECT_EQ(fs::last_write_time(type), longAgo);
    again(entry);
    EXPECT_NE(fs::last_write_time(entry), longAgo);
    EXPECT_EQ(fs::last_write_time(type), longAgo);
}

}  // namespace
