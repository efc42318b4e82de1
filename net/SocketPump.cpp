#include "net/SocketPump.h"

#include <chrono>
#include <deque>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>

namespace SocketPump {

namespace {

constexpr auto kTurn = std::chrono::milliseconds(5);

struct State {
    Watched last = 0;
    std::unordered_map<Watched, Entry> entries;
    std::set<Watched> again;
    std::deque<Event> waiting;
};

State& The() {
    // Never destroyed: event loops, which know of it, end later than static objects do.
    static State& state = *new State;
    return state;
}

void Call(const Event& event) {
    const Readiness& readiness = event.readiness;
    const Entry* const entry = Find(event.watched);
    if (!entry || !(readiness.readable || readiness.writable || readiness.again)) return;
    const std::shared_ptr<Ready> ready = entry->ready;
    (*ready)(readiness);
    if (const Entry* const still = Find(event.watched)) System::Served(event.watched, *still);
}

}  // namespace

Watched Watch(SocketCalls::Handle handle, Ready ready) {
    const Watched watched = ++The().last;
    Entry& entry = The().entries[watched];
    entry = {handle, std::make_shared<Ready>(std::move(ready))};
    System::Add(watched, entry);
    return watched;
}

void Want(Watched watched, bool read, bool write) {
    const auto found = The().entries.find(watched);
    if (found == The().entries.end()) return;
    Entry& entry = found->second;
    const bool before = entry.Wanted();
    entry.read = read;
    entry.write = write;
    System::Want(watched, entry, before);
}

void Again(Watched watched) {
    The().again.insert(watched);
    System::AskForTurn();
}

void Forget(Watched watched) {
    const auto found = The().entries.find(watched);
    if (found == The().entries.end()) return;
    System::Remove(watched, found->second);
    The().entries.erase(found);
    The().again.erase(watched);
}

const Entry* Find(Watched watched) {
    const auto found = The().entries.find(watched);
    return found == The().entries.end() ? nullptr : &found->second;
}

// In the order in which they became ready.
void RunTurn() {
    const auto end = std::chrono::steady_clock::now() + kTurn;
    std::deque<Event>& waiting = The().waiting;
    for (const Watched watched : std::exchange(The().again, {}))
        waiting.push_back({watched, {.again = true}});
    do {
        if (waiting.empty()) System::Collect(waiting);
        if (waiting.empty()) return;
        const Event event = waiting.front();
        waiting.pop_front();
        Call(event);
    } while (std::chrono::steady_clock::now() < end);
    if (!waiting.empty()) System::AskForTurn();
}

}  // namespace SocketPump
