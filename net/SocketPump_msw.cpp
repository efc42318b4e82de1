// The system posts a message when a socket is ready. It does so once; asking anew after every turn makes it
// tell again what still holds.
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
        entries_[watched] = {static_cast<SOCKET>(handle), std::make_shared<Ready>(std::move(ready))};
        ofMessage_[MessageOf(watched)] = watched;
        return watched;
    }

    void Want(Watched watched, bool read, bool write) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        found->second.read = read;
        found->second.write = write;
        Ask(watched, found->second);
    }

    void Again(Watched watched) {
        again_.insert(watched);
        AskForTurn();
    }

    void Forget(Watched watched) {
        Want(watched, false, false);
        entries_.erase(watched);
        again_.erase(watched);
        const auto found = ofMessage_.find(MessageOf(watched));
        if (found != ofMessage_.end() && found->second == watched) ofMessage_.erase(found);
    }

  private:
    struct Entry {
        SOCKET socket = INVALID_SOCKET;
        std::shared_ptr<Ready> ready;
        bool read = false, write = false;
        bool ended = false;  // the other side sends no more
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
            pump->OnReady(message, lParam);
        } else {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        return 0;
    }

    void Ask(Watched watched, const Entry& entry) {
        long events = 0;
        if (entry.read) events |= FD_READ | FD_ACCEPT | FD_CLOSE;
        if (entry.write) events |= FD_WRITE | FD_CONNECT | (entry.ended ? 0 : FD_CLOSE);
        WSAAsyncSelect(entry.socket, window_, events ? MessageOf(watched) : 0, events);
    }

    void OnReady(UINT message, LPARAM what) {
        const auto found = ofMessage_.find(message);
        const auto entry = found == ofMessage_.end() ? entries_.end() : entries_.find(found->second);
        if (entry == entries_.end()) return;
        const int event = WSAGETSELECTEVENT(what);
        const bool broken = WSAGETSELECTERROR(what) != 0;
        if (event == FD_CLOSE && !broken) entry->second.ended = true;
        waiting_.push_back(
            {found->second,
             {.readable = broken || event == FD_READ || event == FD_ACCEPT || event == FD_CLOSE,
              .writable = broken || event == FD_WRITE || event == FD_CONNECT}});
        RunTurnOrLater();
    }

    // Messages like these come before the user's input; when there is some, the turn comes after it.
    void RunTurnOrLater() {
        if (HIWORD(GetQueueStatus(QS_INPUT | QS_PAINT)) == 0)
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
        for (const Watched watched : std::exchange(again_, {}))
            waiting_.push_back({watched, {.again = true}});
        while (!waiting_.empty()) {
            const auto [watched, readiness] = waiting_.front();
            waiting_.pop_front();
            Serve(watched, readiness);
            if (std::chrono::steady_clock::now() >= end) break;
        }
        if (!waiting_.empty()) AskForTurn();
    }

    void Serve(Watched watched, Readiness readiness) {
        auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        if (!readiness.again) {
            // What is not wanted any more may have been on its way.
            readiness.readable = readiness.readable && found->second.read;
            readiness.writable = readiness.writable && found->second.write;
        }
        if (readiness.readable || readiness.writable || readiness.again) {
            const std::shared_ptr<Ready> ready = found->second.ready;
            (*ready)(readiness);
        }
        found = entries_.find(watched);
        if (found != entries_.end() && !readiness.again) Ask(watched, found->second);
    }

    HWND window_ = nullptr;
    Watched last_ = 0;
    std::unordered_map<Watched, Entry> entries_;
    std::unordered_map<UINT, Watched> ofMessage_;
    std::set<Watched> again_;
    std::deque<std::pair<Watched, Readiness>> waiting_;
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
