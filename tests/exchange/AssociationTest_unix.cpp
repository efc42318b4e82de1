#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "base/FileName.h"
#include "exchange/Association.h"
#include "tests/support/Events.h"
#include "tests/support/Files.h"

namespace {

namespace fs = std::filesystem;

fs::path Data() { return std::getenv("XDG_DATA_HOME"); }

TEST(Association, DesktopFilesAreWrittenOnlyWhenSomethingChanged) {
    fs::remove_all(Data() / "applications");
    fs::remove_all(Data() / "mime");
    const fs::path entry = Data() / "applications" / "kivora.desktop";
    const fs::path type = Data() / "mime" / "packages" / "kivora.xml";
    RegisterWithDesktop(false);
    ASSERT_TRUE(RunUntil([&] { return fs::exists(entry) && fs::exists(type); }));
    const std::string program = FilePath(ProgramPath()).native();
    const std::pair<const char*, const char*> entries[] = {{"kivora.desktop", " %F\n"},
                                                           {"kivora.desktop", " --print\n"},
                                                           {"kivora.new.desktop", " --new\n"},
                                                           {"kivora.print.desktop", " [print] %F\n"}};
    for (const auto& [name, arguments] : entries)
        EXPECT_NE(Content(entry.parent_path() / name).find("\nExec=" + program + arguments),
                  std::string::npos)
            << name;
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

// The tools get the folder as it is named, and one that hangs holds up neither the program nor the others.
TEST(Association, TheDesktopsToolsAreStarted) {
    const fs::path tools = Data() / "a \"b$(c)' tools";
    fs::create_directories(tools);
    ASSERT_EQ(mkfifo((tools / "gate").c_str(), 0600), 0);
    const auto make = [&](const char* name, const char* first) {
        std::ofstream(tools / name) << "#!/bin/sh\n"
                                    << first
                                    << "printf '%s\\n' \"$@\" >\"$0.part\"; mv \"$0.part\" \"$0.called\"\n";
        fs::permissions(tools / name, fs::perms::owner_all);
    };
    make("update-mime-database", "read line <\"${0%/*}/gate\"\n");
    make("update-desktop-database", "");
    make("xdg-mime", "");
    const std::string path = std::getenv("PATH"), data = Data();
    setenv("PATH", (tools.native() + ":" + path).c_str(), 1);
    setenv("XDG_DATA_HOME", (tools / "data").c_str(), 1);
    RegisterWithDesktop(false);
    const auto called = [&](const char* name) { return fs::exists(tools / (std::string(name) + ".called")); };
    EXPECT_TRUE(RunUntil([&] { return called("update-desktop-database") && called("xdg-mime"); }));
    EXPECT_FALSE(called("update-mime-database"));
    std::ofstream(tools / "gate") << "\n";
    EXPECT_TRUE(RunUntil([&] { return called("update-mime-database"); }));
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(Content(tools / "update-mime-database.called"), tools.native() + "/data/mime\n");
    EXPECT_EQ(Content(tools / "update-desktop-database.called"), tools.native() + "/data/applications\n");
    EXPECT_EQ(Content(tools / "xdg-mime.called"), "default\nkivora.desktop\napplication/x-kivora\n");
}

}  // namespace
