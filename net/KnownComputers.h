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

// Where the addresses of names come from.
struct NameService {
    // Begins a look-up, whose answer comes later, and never when what is returned has been destroyed before.
    std::function<std::shared_ptr<void>(const std::wstring& name, const NameLookup::Answer& answer)> LookUp =
        [](const auto& name, const auto& answer) { return std::make_shared<NameLookup>(name, answer); };
    // How long an answer is waited for; a sender waits 15 seconds for the greeting.
    std::chrono::milliseconds patience = std::chrono::seconds(10);
    std::chrono::milliseconds fresh = std::chrono::seconds(10);  // how long an answer counts
};

class KnownComputers {
  public:
    using Answer = std::function<void(bool known)>;

    explicit KnownComputers(NameService names = {});
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
        std::shared_ptr<void> lookup = {};
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

    const NameService names_;
    std::vector<Computer> computers_;  // of the address book as it was when it was last looked at
    std::vector<Question> waiting_;
    std::size_t running_ = 0;  // look-ups
    std::chrono::steady_clock::time_point lookedUp_{};
    wxTimer limit_;
};
