#include <gtest/gtest.h>

#include "tests/addressbook/Entries.h"

namespace {

std::vector<std::wstring> Names() {
    std::vector<std::wstring> names;
    for (const auto& entry : AddressBook()) names.push_back(entry.PCName());
    return names;
}

class AddressBookTest : public testing::Test {
  protected:
    AddressBookTest() { EmptyAddressBook(); }
    ~AddressBookTest() override { EmptyAddressBook(); }
};

using Texts = std::vector<std::wstring>;

TEST_F(AddressBookTest, NamesAreKeysWithoutCase) {
    EXPECT_TRUE(AddAddressBookEntry(Entry(L"Server", L"10.0.0.1")));
    EXPECT_TRUE(AddAddressBookEntry(Entry(L"Büro")));
    EXPECT_FALSE(AddAddressBookEntry(Entry(L"SERVER", L"10.0.0.2")));
    EXPECT_FALSE(AddAddressBookEntry(Entry(L"bÜRO")));
    EXPECT_TRUE(AddAddressBookEntry(Entry(L"")));
    EXPECT_EQ(Names(), (Texts{L"Server", L"Büro", L""}));
    ASSERT_NE(GetAddressBookEntry(L"sErVeR"), nullptr);
    EXPECT_EQ(GetAddressBookEntry(L"sErVeR")->IP(), L"10.0.0.1");
    EXPECT_EQ(GetAddressBookEntry(L"Serve"), nullptr);
    EXPECT_FALSE(AddressBookEntryExists(L"Server "));
}

TEST_F(AddressBookTest, RemovingKeepsTheOthersInOrder) {
    for (const auto* name : {L"eins", L"zwei", L"drei", L"vier"}) AddAddressBookEntry(Entry(name, name));
    EXPECT_TRUE(RemoveAddressBookEntry(L"ZWEI"));
    EXPECT_FALSE(RemoveAddressBookEntry(L"zwei"));
    EXPECT_EQ(Names(), (Texts{L"eins", L"drei", L"vier"}));
    for (const auto* name : {L"eins", L"drei", L"vier"}) {
        ASSERT_NE(GetAddressBookEntry(name), nullptr);
        EXPECT_EQ(GetAddressBookEntry(name)->IP(), name);
    }
    EXPECT_TRUE(AddAddressBookEntry(Entry(L"Zwei")));
    EXPECT_EQ(Names(), (Texts{L"eins", L"drei", L"vier", L"Zwei"}));
}

}  // namespace
