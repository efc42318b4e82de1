// The system posts a message when something has become ready on a socket, and not again before the socket was
// used. A message is therefore only the occasion to look at the socket, and what was served is looked at
// anew.
#include <winsock2.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>

#include "net/SocketPump.h"

namespace SocketPump {

namespace {

constexpr auto kTurn = std::chrono::milliseconds(5);
constexpr UINT kTurnMessage = WM_APP;
constexpr UINT_PTR kTurnTimer = 1;
// Every watched socket has its message number, so that one for a closed socket is not taken for its
// successor's.
constexpr UINT kFirstMessage = WM_APP + 1;
constexpr UINT kMessages = 0x3FFE;

class Pump {
  public:
    Pump() {
        WNDCLASSW type{};
        type.lpfnWndProc = OnMessage;
        type.hInstance = GetModuleHandleW(nullptr);
        type.lpszClassName = L"KivoraSocketPump";
        RegisterClassW(&type);
        window_ = CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance,
                                nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }

    Watched Watch(SocketCalls::Handle handle, Ready ready) {
        const Watched watched = ++last_;
        const auto socket = static_cast<SOCKET>(handle);
        entries_[watched] = {socket, std::make_shared<Ready>(std::move(ready))};
        ofMessage_[MessageOf(watched)] = watched;
        WSAAsyncSelect(socket, window_, MessageOf(watched),
                       FD_READ | FD_WRITE | FD_ACCEPT | FD_CONNECT | FD_CLOSE);
        return watched;
    }

    void Want(Watched watched, bool read, bool write) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        found->second.read = read;
        found->second.write = write;
        // Its message may have come when nobody wanted it.
        LookAt(watched, found->second);
        AskForTurn();
    }

    void Again(Watched watched) {
        again_.insert(watched);
        AskForTurn();
    }

    void Forget(Watched watched) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        WSAAsyncSelect(found->second.socket, window_, 0, 0);
        entries_.erase(found);
        again_.erase(watched);
        const auto message = ofMessage_.find(MessageOf(watched));
        if (message != ofMessage_.end() && message->second == watched) ofMessage_.erase(message);
    }

  private:
    struct Entry {
        SOCKET socket = INVALID_SOCKET;
        std::shared_ptr<Ready> ready;
        bool read = false, write = false;
        bool waiting = false;  // to be looked at
    };

    static UINT MessageOf(Watched watched) { return kFirstMessage + static_cast<UINT>(watched % kMessages); }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* pump = reinterpret_cast<Pump*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!pump) return DefWindowProcW(window, message, wParam, lParam);
        if (message == WM_TIMER && wParam == kTurnTimer) {
            KillTimer(window, kTurnTimer);
            pump->asked_ = false;
            pump->RunTurn();
        } else if (message == kTurnMessage) {
            pump->asked_ = false;
            pump->RunTurnOrLater();
        } else if (message >= kFirstMessage && message < kFirstMessage + kMessages) {
            pump->OnReady(message);
        } else {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        return 0;
    }

    void OnReady(UINT message) {
        const auto found = ofMessage_.find(message);
        const auto entry = found == ofMessage_.end() ? entries_.end() : entries_.find(found->second);
        if (entry == entries_.end()) return;
        LookAt(entry->first, entry->second);
        RunTurnOrLater();
    }

    void LookAt(Watched watched, Entry& entry) {
        if (!(entry.read || entry.write) || std::exchange(entry.waiting, true)) return;
        waiting_.push_back(watched);
    }

    // Messages like these come before the user's input, painting and timers; what there is of those has its
    // turn first.
    void RunTurnOrLater() {
        if (HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT | QS_TIMER)) == 0)
            RunTurn();
        else if (!std::exchange(asked_, true))
            SetTimer(window_, kTurnTimer, USER_TIMER_MINIMUM, nullptr);
    }

    void AskForTurn() {
        if (!std::exchange(asked_, true)) PostMessageW(window_, kTurnMessage, 0, 0);
    }

    // Serves sockets in the order in which they became ready until the turn is over.
    void RunTurn() {
        const auto end = std::chrono::steady_clock::now() + kTurn;
        for (const Watched watched : std::exchange(again_, {})) Call(watched, {.again = true});
        while (!waiting_.empty() && std::chrono::steady_clock::now() < end) {
            const Watched watched = waiting_.front();
            waiting_.pop_front();
            Serve(watched);
        }
        if (!waiting_.empty()) AskForTurn();
    }

    // What holds for a socket now, of what is wanted; a connection that is gone is both.
    static Readiness ReadinessOf(const Entry& entry) {
        fd_set readable, writable, broken;
        FD_ZERO(&readable);
        FD_ZERO(&writable);
        FD_ZERO(&broken);
        if (entry.read) FD_SET(entry.socket, &readable);
        if (entry.write) FD_SET(entry.socket, &writable);
        FD_SET(entry.socket, &broken);
        timeval now{0, 0};
        if (select(0, &readable, &writable, &broken, &now) <= 0) return {};
        return {.readable = entry.read && (readable.fd_count > 0 || broken.fd_count > 0),
                .writable = entry.write && (writable.fd_count > 0 || broken.fd_count > 0)};
    }

    void Serve(Watched watched) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        found->second.waiting = false;
        const Readiness readiness = ReadinessOf(found->second);
        if (!readiness.readable && !readiness.writable) return;
        Call(watched, readiness);
        // What still holds is not told again.
        const auto still = entries_.find(watched);
        if (still != entries_.end()) LookAt(watched, still->second);
    }

    void Call(Watched watched, const Readiness& readiness) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        const std::shared_ptr<Ready> ready = found->second.ready;
        (*ready)(readiness);
    }

    HWND window_ = nullptr;
    Watched last_ = 0;
    std::unordered_map<Watched, Entry> entries_;
    std::unordered_map<UINT, Watched> ofMessage_;
    std::set<Watched> again_;
    std::deque<Watched> waiting_;
    bool asked_ = false;
};

Pump& ThePump() {
    // Never destroyed: messages for it may come later than static objects end.
    static Pump& pump = *new Pump;
    return pump;
}

}  // namespace

Watched Watch(SocketCalls::Handle handle, Ready ready) { return ThePump().Watch(handle, std::move(ready)); }
void Want(Watched watched, bool read, bool write) { ThePump().Want(watched, read, write); }
void Again(Watched watched) { ThePump().Again(watched); }
void Forget(Watched watched) { ThePump().Forget(watched); }

}  // namespace SocketPump
