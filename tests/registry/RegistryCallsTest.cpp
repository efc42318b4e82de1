// The calls answer alike on every system, down to result codes, order and missing terminators.
#include <gtest/gtest.h>

#include <cstring>

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
    std::vector<std::wstring> SubKeys() {
        std::vector<std::wstring> names;
        char name[256];
        std::uint32_t size = sizeof name;
        for (std::uint32_t i = 0; EnumKey(key, i, name, size) == kSuccess; ++i, size = sizeof name) {
            EXPECT_EQ(size, std::strlen(name));
            names.push_back(FromCodePage(name));
        }
        return names;
    }

    Key key = 0;
};

TEST_F(RegistryCallsTest, KeysAreOrderedWithoutCase) {
    for (const auto* name : {L"Note2", L"note10", L"Note1a", L"NOTE1", L"Note1"}) Make(ToCodePage(name));
    EXPECT_EQ(SubKeys(), (std::vector<std::wstring>{L"NOTE1", L"note10", L"Note1a", L"Note2"}));
    for (const auto* name : {L"Öl", L"öl", L"ÖL2"}) Make(ToCodePage(name));
    EXPECT_EQ(SubKeys().size(), 6u);
    EXPECT_TRUE(Exists(ToCodePage(L"öL2")));
}

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

TEST_F(RegistryCallsTest, ValuesEnumerateByNameEvenWithoutRoomForTheirData) {
    const char number[] = {5, 0, 0, 0};
    SetValue(key, "b", 4, number, 4);
    SetValue(key, "", 1, "unnamed", 7);
    SetValue(key, "A", 1, "twelve bytes#", 12);
    const struct {
        std::uint32_t index;
        long result;
        const char* name;
        std::uint32_t dataSize;
    } cases[] = {{0, kSuccess, "", 7}, {1, kMoreData, "A", 12}, {2, kSuccess, "b", 4}};
    char name[256], data[8];
    std::uint32_t nameSize, dataSize, type;
    for (const auto& row : cases) {
        nameSize = sizeof name;
        dataSize = sizeof data;
        EXPECT_EQ(EnumValue(key, row.index, name, nameSize, type, data, dataSize), row.result) << row.index;
        EXPECT_STREQ(name, row.name);
        EXPECT_EQ(nameSize, std::strlen(row.name));
        EXPECT_EQ(dataSize, row.dataSize);
    }
    nameSize = sizeof name;
    EXPECT_EQ(EnumValue(key, 3, name, nameSize, type, data, dataSize), kNoMoreItems);
    nameSize = 1;
    dataSize = sizeof data;
    EXPECT_EQ(EnumValue(key, 2, name, nameSize, type, data, dataSize), kMoreData) << "no room for the NUL";
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

TEST_F(RegistryCallsTest, WhatComesBackAfterDeletingIsEmpty) {
    const RegistryTransaction around;
    Make("a\\b");
    Key a = 0;
    OpenKey(key, "a", kSetValue, a);
    SetValue(a, "v", 1, "x#", 1);
    CloseKey(a);
    DeleteKey(key, "a\\b");
    DeleteKey(key, "a");
    Make("A");
    EXPECT_EQ(SubKeys(), std::vector<std::wstring>{L"A"}) << "in its new spelling";
    EXPECT_FALSE(Exists("a\\b"));
    OpenKey(key, "a", kQueryValue, a);
    char buffer[8];
    std::uint32_t type = 0, size = sizeof buffer;
    EXPECT_EQ(QueryValue(a, "v", type, buffer, size), kFileNotFound);
    CloseKey(a);
}

TEST_F(RegistryCallsTest, HandlesAndRights) {
    char buffer[256];
    std::uint32_t type = 0, size = sizeof buffer, dataSize = 0;
    Key closed = 0, other = 7;
    ASSERT_EQ(OpenKey(kUser, kPlace + "\\", kQueryValue, closed), kSuccess);
    EXPECT_EQ(SetValue(closed, "v", 1, "x#", 1), kAccessDenied);
    EXPECT_EQ(EnumKey(closed, 0, buffer, size), kAccessDenied);
    EXPECT_EQ(DeleteValue(closed, "v"), kAccessDenied);
    EXPECT_EQ(CloseKey(closed), kSuccess);
    for (const Key bad : {Key{0}, closed}) {
        size = sizeof buffer;
        EXPECT_EQ(OpenKey(bad, "x", kQueryValue, other), kInvalidHandle);
        EXPECT_EQ(CreateKey(bad, "x", kQueryValue, other), kInvalidHandle);
        EXPECT_EQ(QueryValue(bad, "x", type, buffer, size), kInvalidHandle);
        EXPECT_EQ(SetValue(bad, "x", 1, "x#", 1), kInvalidHandle);
        EXPECT_EQ(EnumKey(bad, 0, buffer, size), kInvalidHandle);
        EXPECT_EQ(EnumValue(bad, 0, buffer, size, type, nullptr, dataSize), kInvalidHandle);
        EXPECT_EQ(DeleteKey(bad, "x"), kInvalidHandle);
        EXPECT_EQ(DeleteValue(bad, "x"), kInvalidHandle);
        EXPECT_EQ(CloseKey(bad), kInvalidHandle);
    }
    EXPECT_EQ(other, 7u) << "a failed call opens nothing";
    EXPECT_EQ(CloseKey(kUser), kSuccess);
    EXPECT_EQ(QueryValue(key, "missing", type, buffer, size), kFileNotFound);
    EXPECT_EQ(DeleteValue(key, "missing"), kFileNotFound);
}

TEST_F(RegistryCallsTest, NamesAndDepthsHaveLimits) {
    Key made = 0;
    EXPECT_EQ(CreateKey(key, std::string(255, 'k'), kQueryValue, made), kSuccess);
    CloseKey(made);
    EXPECT_EQ(SubKeys(), std::vector<std::wstring>{std::wstring(255, L'k')});
    EXPECT_EQ(CreateKey(key, "new\\" + std::string(256, 'k'), kQueryValue, made), kInvalidParameter);
    EXPECT_FALSE(Exists("new"));
    std::string deep;
    for (int i = 0; i < 600; ++i) deep += "d\\";
    EXPECT_EQ(CreateKey(key, deep, kQueryValue, made), kInvalidParameter);
    EXPECT_FALSE(Exists("d"));
}

}  // namespace
