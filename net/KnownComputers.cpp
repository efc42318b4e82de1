#include "net/KnownComputers.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "model/AddressBook.h"
#include "net/SocketCalls.h"

namespace {

std::string Trimmed(const std::wstring& name) {
    const std::string bytes = ToUtf8(name);
    const std::size_t first = bytes.find_first_not_of(' ');
    return first == bytes.npos ? "" : bytes.substr(first, bytes.find_last_not_of(' ') - first + 1);
}

}  // namespace

KnownComputers::KnownComputers(NameService names) : names_(std::move(names)) {
    limit_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { EndRound(); });
}

void KnownComputers::Ask(const std::string& address, Answer answer) {
    if (running_ == 0) TakeBook();
    if (Knows(address)) return answer(true);
    if (running_ == 0 && IsFresh()) return answer(false);
    waiting_.push_back({address, std::move(answer)});
    if (running_ == 0) LookUp();
}

// Keeps what is known when the book has not changed.
void KnownComputers::TakeBook() {
    const std::vector<clsAddressBookEntry>& book = AddressBook();
    const auto ip = [](const clsAddressBookEntry& entry) -> const std::wstring& { return entry.IP(); };
    if (std::ranges::equal(book, computers_, {}, ip, &Computer::name)) return;
    computers_.clear();
    lookedUp_ = {};
    for (const clsAddressBookEntry& entry : book) {
        Computer& computer = computers_.emplace_back();
        computer.name = entry.IP();
        computer.isAddress = SocketCalls::IsAddress(Trimmed(computer.name));
        if (computer.isAddress) computer.addresses = {Trimmed(computer.name)};
    }
}

bool KnownComputers::Knows(const std::string& address) const {
    const bool own = SocketCalls::IsOwnAddress(address);
    return std::ranges::any_of(computers_, [&](const Computer& computer) {
        if (!computer.isAddress && !IsFresh()) return false;
        return std::ranges::any_of(computer.addresses, [&](const std::string& each) {
            return each == address || (own && SocketCalls::IsOwnAddress(each));
        });
    });
}

bool KnownComputers::IsFresh() const {
    return std::ranges::all_of(computers_, &Computer::isAddress) ||
           (lookedUp_ != std::chrono::steady_clock::time_point() &&
            std::chrono::steady_clock::now() - lookedUp_ < names_.fresh);
}

void KnownComputers::LookUp() {
    running_ = 1;  // as long as this begins the others
    for (std::size_t i = 0; i < computers_.size(); ++i) {
        if (computers_[i].isAddress) continue;
        ++running_;
        computers_[i].lookup =
            names_.LookUp(computers_[i].name,
                          [this, i](const std::vector<std::wstring>& addresses) { Found(i, addresses); });
    }
    limit_.StartOnce(static_cast<int>(names_.patience.count()));
    if (--running_ == 0) EndRound();
}

void KnownComputers::Found(std::size_t computer, const std::vector<std::wstring>& addresses) {
    Computer& found = computers_[computer];
    found.addresses.clear();
    for (const std::wstring& address : addresses) found.addresses.push_back(ToUtf8(address));
    found.lookup.reset();
    if (--running_ == 0) EndRound();
}

void KnownComputers::EndRound() {
    limit_.Stop();
    for (Computer& computer : computers_) {
        if (computer.lookup) computer.addresses.clear();
        computer.lookup.reset();
    }
    running_ = 0;
    lookedUp_ = std::chrono::steady_clock::now();
    // By the book of now, which may have changed meanwhile; then those who are still waiting start a round.
    for (Question& question : std::exchange(waiting_, {})) Ask(question.address, std::move(question.answer));
}
