#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "base/DataFolder.h"

namespace {

// Sets a variable, or takes it away, while this object lives.
class Variable {
  public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        Set(value);
    }
    ~Variable() { Set(before_ ? before_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    void Set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }

    const char* name_;
    std::optional<std::string> before_;
};

}  // namespace

TEST(DataFolder, FollowsTheUsersVariables) {
    const std::string home = getpwuid(getuid())->pw_dir;
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
        const Variable data("XDG_DATA_HOME", row.data), user("HOME", row.home);
        EXPECT_EQ(SharedDataFolder(), row.shared);
        EXPECT_EQ(DataFolder(), row.shared.empty() ? "" : row.shared + "/kivora");
    }
}
