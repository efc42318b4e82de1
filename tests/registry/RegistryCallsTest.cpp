// What the calls answer alike on every system, down to result codes and missing terminators, and clsRegistry
// does not let through.
#include <gtest/gtest.h>

#include "registry/RegistryCalls.h"
#include "registry/clsRegistry.h"

using namespace RegistryCalls;

namespace {

constexpr Key kUser = RootKey(1);
constexpr std::uint32_t kAll = kQueryValue | kEnumerateSubKeys | kWrite;
const std::string kPlace = "Software\\KivoraTest";

class RegistryCallsTest : public testing::Test {
  protected:
    RegistryCallsTest() {
        Clear();
        EXPECT_EQ(CreateKey(kUser, kPlace, kAll, key), kSuccess);
    }
    ~RegistryCallsTest() override {
        CloseKey(key);
        Clear();
    }
    static void Clear() { Registry().DeleteKey(L"HKCU\\Software\\KivoraTest"); }

    void Make(const std::string& subKey) {
        Key made = 0;
        ASSERT_EQ(CreateKey(key, subKey, kQueryValue, made), kSuccess);
        EXPECT_EQ(CloseKey(made), kSuccess);
    }
    bool Exists(const std::string& subKey) {
        Key found = 0;
        return OpenKey(key, subKey, kQueryValue, found) == kSuccess && CloseKey(found) == kSuccess;
    }

    Key key = 0;
};

TEST_F(RegistryCallsTest, IndexesFollowChanges) {
    for (const char* name : {"a", "b", "c", "d"}) Make(name);
    char name[256];
    std::uint32_t size = sizeof name;
    EXPECT_EQ(EnumKey(key, 1, name, size), kSuccess);
    EXPECT_STREQ(name, "b");
    EXPECT_EQ(DeleteKey(key, "a"), kSuccess);
    size = sizeof name;
    EXPECT_EQ(EnumKey(key, 1, name, size), kSuccess);
    EXPECT_STREQ(name, "c");
    size = sizeof name;
    EXPECT_EQ(EnumKey(key, 0, name, size), kSuccess);
    EXPECT_STREQ(name, "b");
    size = sizeof name;
    EXPECT_EQ(EnumKey(key, 3, name, size), kNoMoreItems);
    size = sizeof name;
    EXPECT_EQ(EnumKey(key, 0xFFFFFFFF, name, size), kNoMoreItems);
}

TEST_F(RegistryCallsTest, BuffersAreFilledOrLeftAlone) {
    const struct {
        std::uint32_t type;
        std::string data;
        std::uint32_t room;
        long result;
        std::string buffer;  // of "######" before
    } cases[] = {
        {1, "abc", 6, kSuccess, std::string("abc\0##", 6)},
        {1, "abc", 4, kSuccess, std::string("abc\0##", 6)},
        {1, "abc", 3, kSuccess, "abc###"},
        {1, "abc", 2, kMoreData, "######"},
        {2, "abc", 4, kSuccess, std::string("abc\0##", 6)},
        {7, "abc", 4, kSuccess, std::string("abc\0##", 6)},
        {4, "abcd", 6, kSuccess, "abcd##"},
        {3, "abc", 6, kSuccess, "abc###"},
        {1, std::string("ab\0", 3), 6, kSuccess, std::string("ab\0###", 6)},
        {4, "ab", 4, kSuccess, "ab####"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.data << " of type " << row.type << " in " << row.room);
        // The byte behind the data is no NUL, or systems would take it along.
        const std::string data = row.data + "#";
        const auto length = static_cast<std::uint32_t>(row.data.size());
        ASSERT_EQ(SetValue(key, "v", row.type, data.data(), length), kSuccess);
        std::string buffer = "######";
        std::uint32_t type = 0, size = row.room;
        EXPECT_EQ(QueryValue(key, "V", type, buffer.data(), size), row.result);
        EXPECT_EQ(buffer, row.buffer);
        EXPECT_EQ(size, length);
        EXPECT_EQ(type, row.type);
    }
}

TEST_F(RegistryCallsTest, DeletingKeys) {
    for (const char* name : {"a\\b", "c", "d", "e\\f"}) Make(name);
    const struct {
        const char* subKey;
        long result;
    } cases[] = {
        {"a", kAccessDenied},
        {"missing", kFileNotFound},
        {"a\\missing", kFileNotFound},
        {"a\\b\\", kSuccess},
        {"a", kSuccess},
        {"a", kFileNotFound},
        {"C\\", kSuccess},
        {"", kAccessDenied},
        {"e\\F", kSuccess},
        {"d", kSuccess},
        {"e", kSuccess},
    };
    for (const auto& row : cases) EXPECT_EQ(DeleteKey(key, row.subKey), row.result) << row.subKey;

    // The empty name means the key itself, values and all; its handle leads nowhere afterwards.
    SetValue(key, "v", 1, "x#", 1);
    EXPECT_EQ(DeleteKey(key, ""), kSuccess);
    char buffer[8];
    std::uint32_t type = 0, size = sizeof buffer;
    EXPECT_EQ(QueryValue(key, "v", type, buffer, size), kKeyDeleted);
    EXPECT_EQ(SetValue(key, "v", 1, "x#", 1), kKeyDeleted);
    EXPECT_EQ(DeleteKey(kUser, ""), kAccessDenied) << "a root stays";
}

TEST_F(RegistryCallsTest, NamesAndDepthsHaveLimits) {
    Key made = 0;
    EXPECT_EQ(CreateKey(key, std::string(255, 'k'), kQueryValue, made), kSuccess);
    CloseKey(made);
    EXPECT_TRUE(Exists(std::string(255, 'k')));
    EXPECT_EQ(CreateKey(key, "new\\" + std::string(256, 'k'), kQueryValue, made), kInvalidParameter);
    EXPECT_FALSE(Exists("new"));
    std::string deep;
    for (int i = 0; i < 600; ++i) deep += "d\\";
    EXPECT_EQ(CreateKey(key, deep, kQueryValue, made), kInvalidParameter);
    EXPECT_FALSE(Exists("d"));
}

}  // namespace
