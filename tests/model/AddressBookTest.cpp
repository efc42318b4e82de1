#include <gtest/gtest.h>

#include "registry/clsRegistry.h"
#include "tests/addressbook/Entries.h"

namespace {

const std::wstring kSettings = L"HKLM\\Software\\Kivora\\1.5\\";

void Store(const std::wstring& key, const std::wstring& name) {
    Registry().SetValue(kSettings + key + L"\\PCName", REG_TYPE_SZ, name);
}

std::vector<std::wstring> Names() {
    std::vector<std::wstring> names;
    for (const auto& entry : AddressBook()) names.push_back(entry.PCName());
    return names;
}

std::vector<std::wstring> Keys() {
    std::vector<std::wstring> keys;
    Registry().EnumKeys(kSettings, keys);
    return keys;
}

class AddressBookTest : public testing::Test {
  protected:
    AddressBookTest() { Clear(); }
    ~AddressBookTest() override { Clear(); }

    static void Clear() {
        Registry().DeleteKey(kSettings);
        EmptyAddressBook();
    }
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

TEST_F(AddressBookTest, LoadingTakesSubkeysInTheRegistrysOrder) {
    LoadAddressBook();
    EXPECT_TRUE(Names().empty()) << "no settings at all";

    Store(L"AddressBookEntry2", L"c");
    Store(L"AddressBookEntry10", L"b");
    Store(L"AddressBookEntry0", L"Server");
    Store(L"AddressBookEntry1", L"SERVER");
    Store(L"AddressBookEntryX", L"x");
    Store(L"AddressBookEntry", L"ohne Nummer");
    Store(L"AddressbookEntry7", L"andere Schreibung");
    Store(L"AddressBookEntr", L"zu kurz");
    Store(L"Note0", L"Notiz");
    LoadAddressBook();
    EXPECT_EQ(Names(), (Texts{L"ohne Nummer", L"Server", L"b", L"c", L"x"}));
}

TEST_F(AddressBookTest, SavingReplacesTheEntriesAndNothingElse) {
    for (int i = 0; i < 5; ++i) Store(L"AddressBookEntry" + std::to_wstring(i), L"alt");
    Store(L"AddressbookEntry7", L"bleibt");
    Store(L"Note0", L"Notiz");
    AddAddressBookEntry(Entry(L"Müller", L"192.168.0.7", L"2. Stock & Flur"));
    AddAddressBookEntry(Entry(L"B"));
    AddAddressBookEntry(Entry(L"C"));
    SaveAddressBook();
    EXPECT_EQ(Keys(), (Texts{L"AddressBookEntry0", L"AddressBookEntry1", L"AddressBookEntry2",
                             L"AddressbookEntry7", L"Note0"}));
    EmptyAddressBook();
    LoadAddressBook();
    EXPECT_EQ(Names(), (Texts{L"Müller", L"B", L"C"}));
    EXPECT_EQ(AddressBook()[0].IP(), L"192.168.0.7");
    EXPECT_EQ(AddressBook()[0].Comment(), L"2. Stock & Flur");
}

}  // namespace
