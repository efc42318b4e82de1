#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "base/DataFolder.h"

TEST(DataFolder, FollowsTheUsersVariables) {
    const std::string home = getpwuid(getuid())->pw_dir, before = std::getenv("XDG_DATA_HOME");
    const auto set = [](const char* name, const char* value) {
        value ? setenv(name, value, 1) : unsetenv(name);
    };
    const struct {
        const char *data, *home;
        std::string shared;
    } rows[] = {
        {"/d/a ta", "/h", "/d/a ta"},
        {nullptr, "/h/ü", "/h/ü/.local/share"},
        {"", "/h", "/h/.local/share"},
        {"relative", "/h", "/h/.local/share"},
        {nullptr, "", home + "/.local/share"},
        {nullptr, nullptr, home + "/.local/share"},
        {nullptr, "relative", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << (row.data ? row.data : "-") << " " << (row.home ? row.home : "-"));
        set("XDG_DATA_HOME", row.data);
        set("HOME", row.home);
        EXPECT_EQ(SharedDataFolder(), row.shared);
        EXPECT_EQ(DataFolder(), row.shared.empty() ? "" : row.shared + "/kivora");
    }
    set("XDG_DATA_HOME", before.c_str());
    set("HOME", home.c_str());
}
