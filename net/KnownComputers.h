#pragma once
// Tells whether an address is that of a computer in the address book. Entries may be names, of which the
// addresses are looked up while the program goes on with its events, and a name may have several. What was
// looked up counts for some seconds, so that names whose addresses change stay right, and however many ask,
// one round of look-ups answers them all. An entry that means this computer knows it under each of its
// addresses.

#include <wx/timer.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "addressbook/NameLookup.h"

class KnownComputers {
  public:
    using Answer = std::function<void(bool known)>;

    KnownComputers();
    KnownComputers(const KnownComputers&) = delete;
    KnownComputers& operator=(const KnownComputers&) = delete;

    // address: dotted. Answers by the address book of this moment, within the call where no name has to be
    // looked up, else later: ten seconds at most, after which a name counts as one that nobody has. When this
    // object ends, nobody is answered any more.
    void Ask(const std::string& address, Answer answer);

  private:
    struct Computer {
        std::wstring name;  // as the entry has it
        std::vector<std::string> addresses;
        bool isAddress = false;  // the name is one
        std::unique_ptr<NameLookup> lookup = {};
    };
    struct Question {
        std::string address;
        Answer answer;
    };

    void TakeBook();
    bool Knows(const std::string& address) const;
    bool IsFresh() const;
    void LookUp();
    void Found(std::size_t computer, const std::vector<std::wstring>& addresses);
    void EndRound();

    std::vector<Computer> computers_;  // of the address book as it was when it was last looked at
    std::vector<Question> waiting_;
    std::size_t running_ = 0;  // look-ups
    std::chrono::steady_clock::time_point lookedUp_{};
    wxTimer limit_;
};
