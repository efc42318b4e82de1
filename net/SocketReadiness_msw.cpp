// Windows posts a message when something has become ready on a socket, and not again before the socket was
// used. A message is therefore only the occasion to look at the socket, and what was served is looked at
// anew.
#include <winsock2.h>

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/MessageWindow_msw.h"
#include "net/SocketReadiness.h"

namespace SocketPump::System {

namespace {

constexpr UINT kTurnMessage = WM_APP;
constexpr UINT_PTR kTurnTimer = 1;
// Every watched socket has its message number, so that one for a closed socket is not taken for its
// successor's.
constexpr UINT kFirstMessage = WM_APP + 1;
constexpr UINT kMessages = 0x3FFE;

UINT MessageOf(Watched watched) { return kFirstMessage + static_cast<UINT>(watched % kMessages); }

std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

struct State {
    const MessageWindow messages{L"KivoraSocketPump", OnMessage};
    const HWND window = messages.Get();
    std::unordered_map<UINT, Watched> ofMessage;
    std::deque<Watched> toLookAt;
    std::unordered_set<Watched> queued;  // those in toLookAt
    bool asked = false;
};

State& The() {
    // Never destroyed: messages for it may come later than static objects end.
    static State& state = *new State;
    return state;
}

void LookAt(Watched watched, const Entry& entry) {
    if (entry.Wanted() && The().queued.insert(watched).second) The().toLookAt.push_back(watched);
}

void BeginTurn() {
    RunTurn();
    if (!The().toLookAt.empty()) AskForTurn();
}

// Messages like these come before the user's input, painting and timers; what there is of those has its turn
// first.
void BeginTurnOrLater() {
    if (HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER)) == 0)
        BeginTurn();
    else if (!std::exchange(The().asked, true))
        SetTimer(The().window, kTurnTimer, USER_TIMER_MINIMUM, nullptr);
}

void OnReady(UINT message) {
    const auto found = The().ofMessage.find(message);
    const Entry* const entry = found == The().ofMessage.end() ? nullptr : Find(found->second);
    if (!entry) return;
    LookAt(found->second, *entry);
    BeginTurnOrLater();
}

std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_TIMER && wParam == kTurnTimer) {
        KillTimer(The().window, kTurnTimer);
        The().asked = false;
        BeginTurn();
    } else if (message == kTurnMessage) {
        The().asked = false;
        BeginTurnOrLater();
    } else if (message >= kFirstMessage && message < kFirstMessage + kMessages) {
        OnReady(message);
    } else {
        return std::nullopt;
    }
    return 0;
}

// What holds for a socket now, of what is wanted; a connection that is gone is both.
Readiness ReadinessOf(const Entry& entry) {
    const auto socket = static_cast<SOCKET>(entry.handle);
    fd_set readable, writable, broken;
    FD_ZERO(&readable);
    FD_ZERO(&writable);
    FD_ZERO(&broken);
    if (entry.read) FD_SET(socket, &readable);
    if (entry.write) FD_SET(socket, &writable);
    FD_SET(socket, &broken);
    timeval now{0, 0};
    if (select(0, &readable, &writable, &broken, &now) <= 0) return {};
    return {.readable = entry.read && (readable.fd_count > 0 || broken.fd_count > 0),
            .writable = entry.write && (writable.fd_count > 0 || broken.fd_count > 0)};
}

}  // namespace

void Add(Watched watched, const Entry& entry) {
    The().ofMessage[MessageOf(watched)] = watched;
    WSAAsyncSelect(static_cast<SOCKET>(entry.handle), The().window, MessageOf(watched),
                   FD_READ | FD_WRITE | FD_ACCEPT | FD_CONNECT | FD_CLOSE);
}

void Want(Watched watched, const Entry& entry, bool) {
    // Its message may have come when nobody wanted it.
    LookAt(watched, entry);
    AskForTurn();
}

void Remove(Watched watched, const Entry& entry) {
    WSAAsyncSelect(static_cast<SOCKET>(entry.handle), The().window, 0, 0);
    const auto message = The().ofMessage.find(MessageOf(watched));
    if (message != The().ofMessage.end() && message->second == watched) The().ofMessage.erase(message);
}

void Collect(std::deque<Event>& events) {
    if (The().toLookAt.empty()) return;
    const Watched watched = The().toLookAt.front();
    The().toLookAt.pop_front();
    The().queued.erase(watched);
    const Entry* const entry = Find(watched);
    events.push_back({watched, entry ? ReadinessOf(*entry) : Readiness()});
}

// What still holds is not told again.
void Served(Watched watched, const Entry& entry) { LookAt(watched, entry); }

void AskForTurn() {
    if (!std::exchange(The().asked, true)) PostMessageW(The().window, kTurnMessage, 0, 0);
}

}  // namespace SocketPump::System
