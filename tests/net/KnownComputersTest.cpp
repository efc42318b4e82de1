// Which addresses are those of computers in the address book.
#include <gtest/gtest.h>

#include <optional>

#include "base/Text.h"
#include "model/AddressBook.h"
#include "net/KnownComputers.h"
#include "tests/support/Events.h"

namespace {

using namespace std::chrono_literals;

class KnownComputersTest : public testing::Test {
  protected:
    ~KnownComputersTest() override { Book({}); }

    static void Book(const std::vector<std::wstring>& addresses) {
        while (!AddressBook().empty()) RemoveAddressBookEntry(AddressBook().front().PCName());
        for (const std::wstring& address : addresses)
            AddAddressBookEntry({L"Name von " + address, address, L""});
    }

    static bool Knows(KnownComputers& known, const std::string& address) {
        std::optional<bool> answer;
        known.Ask(address, [&](bool isKnown) { answer = isKnown; });
        EXPECT_TRUE(RunUntil([&] { return answer.has_value(); }));
        return answer.value_or(false);
    }

    KnownComputers known_;
};

TEST_F(KnownComputersTest, AreThoseOfTheBookOfNow) {
    const struct {
        std::vector<std::wstring> book;
        const char* address;
        bool known;
    } rows[] = {
        {{}, "127.0.0.1", false},
        {{L"192.0.2.7", L" 192.0.2.8 "}, "192.0.2.8", true},
        {{L"192.0.2.7", L" 192.0.2.8 "}, "192.0.2.9", false},
        {{L"localhost"}, "127.0.0.1", true},
        {{L"localhost"}, "127.0.0.2", true},  // of this computer as well
        {{L"localhost"}, "192.0.2.7", false},
        {{L"nirgends.invalid", L""}, "192.0.2.7", false},
        {{L"nirgends.invalid", L"localhost"}, "127.0.0.1", true},
    };
    for (const auto& row : rows) {
        Book(row.book);
        EXPECT_EQ(Knows(known_, row.address), row.known) << row.address;
    }
}

// The answer of a look-up that the book has overtaken does not count.
TEST_F(KnownComputersTest, AllWhoAskDuringALookUpAreAnsweredByTheBookOfNow) {
    Book({L"localhost"});
    std::string answers;
    for (const char* const address : {"127.0.0.1", "192.0.2.7", "127.0.0.3"})
        known_.Ask(address, [&](bool known) { answers += known ? '+' : '-'; });
    EXPECT_EQ(answers, "") << "names are looked up while events go on";
    Book({L"192.0.2.7"});
    EXPECT_TRUE(RunUntil([&] { return answers.size() == 3; }));
    EXPECT_EQ(answers, "-+-");
}

TEST_F(KnownComputersTest, NamesAreAskedForAgainAndAnAnswerIsNotWaitedForLong) {
    std::vector<std::wstring> found;  // nothing: no answer comes
    KnownComputers known({.LookUp =
                              [&](const std::wstring& name, const NameLookup::Answer& answer) {
                                  EXPECT_EQ(name, L"name");
                                  const auto lookup = std::make_shared<int>();
                                  wxTheApp->CallAfter([=, &found, asked = std::weak_ptr(lookup)] {
                                      if (!asked.expired() && !found.empty()) answer(found);
                                  });
                                  return lookup;
                              },
                          .patience = 20ms,
                          .fresh = 20ms});
    Book({L"192.0.2.1", L"name"});
    for (const wchar_t* const now : {L"192.0.2.7", L"192.0.2.8"}) {
        found = {now};
        EXPECT_TRUE(RunUntil([&] { return Knows(known, ToUtf8(now)); }));
    }
    found.clear();
    EXPECT_TRUE(RunUntil([&] { return !Knows(known, "192.0.2.8"); }));
}

}  // namespace
