#include <glib-unix.h>
#include <sys/epoll.h>

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

class Pump {
  public:
    Pump() : epoll_(epoll_create1(EPOLL_CLOEXEC)) {
        // The priority at which the toolkit deals with its own queue of events: with a higher one a crowd of
        // sockets would stop that altogether.
        g_unix_fd_add_full(
            G_PRIORITY_LOW, epoll_, G_IO_IN,
            [](gint, GIOCondition, gpointer data) -> gboolean {
                static_cast<Pump*>(data)->RunTurn();
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
    }

    Watched Watch(SocketCalls::Handle handle, Ready ready) {
        const Watched watched = ++last_;
        entries_[watched] = {static_cast<int>(handle), std::make_shared<Ready>(std::move(ready))};
        return watched;
    }

    void Want(Watched watched, bool read, bool write) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        Entry& entry = found->second;
        epoll_event event{};
        event.events = (read ? EPOLLIN : 0u) | (write ? EPOLLOUT : 0u);
        event.data.u64 = watched;
        // A socket that wants nothing is taken out, for a lost connection would be told all the time.
        const bool wanted = read || write;
        const int operation = !wanted ? EPOLL_CTL_DEL : entry.polled ? EPOLL_CTL_MOD : EPOLL_CTL_ADD;
        if (wanted || entry.polled) epoll_ctl(epoll_, operation, entry.descriptor, &event);
        entry.polled = wanted;
    }

    void Again(Watched watched) {
        again_.insert(watched);
        AskForTurn();
    }

    void Forget(Watched watched) {
        const auto found = entries_.find(watched);
        if (found == entries_.end()) return;
        Want(watched, false, false);
        entries_.erase(found);
        again_.erase(watched);
    }

  private:
    struct Entry {
        int descriptor = -1;
        std::shared_ptr<Ready> ready;
        bool polled = false;
    };

    void AskForTurn() {
        if (idle_ != 0) return;
        idle_ = g_idle_add_full(
            G_PRIORITY_LOW,
            [](gpointer data) -> gboolean {
                auto& pump = *static_cast<Pump*>(data);
                pump.idle_ = 0;
                pump.RunTurn();
                return G_SOURCE_REMOVE;
            },
            this, nullptr);
    }

    // Serves sockets in the order in which they became ready until the turn is over.
    void RunTurn() {
        const auto end = std::chrono::steady_clock::now() + kTurn;
        for (const Watched watched : std::exchange(again_, {}))
            waiting_.push_back({watched, {.again = true}});
        for (;;) {
            if (waiting_.empty()) {
                epoll_event events[32];
                const int count = epoll_wait(epoll_, events, 32, 0);
                for (int i = 0; i < count; ++i) {
                    const auto bits = events[i].events;
                    const bool broken = bits & (EPOLLERR | EPOLLHUP);
                    waiting_.push_back({events[i].data.u64,
                                        {.readable = broken || (bits & EPOLLIN) != 0,
                                         .writable = broken || (bits & EPOLLOUT) != 0}});
                }
                if (waiting_.empty()) return;
            }
            const auto [watched, readiness] = waiting_.front();
            waiting_.pop_front();
            const auto found = entries_.find(watched);
            if (found != entries_.end()) {
                const std::shared_ptr<Ready> ready = found->second.ready;
                (*ready)(readiness);
            }
            if (std::chrono::steady_clock::now() >= end) break;
        }
        if (!waiting_.empty()) AskForTurn();
    }

    const int epoll_;
    Watched last_ = 0;
    std::unordered_map<Watched, Entry> entries_;
    std::set<Watched> again_;
    std::deque<std::pair<Watched, Readiness>> waiting_;
    guint idle_ = 0;
};

Pump& ThePump() {
    // Never destroyed: the toolkit's loop, which knows it, ends later than static objects do.
    static Pump& pump = *new Pump;
    return pump;
}

}  // namespace

Watched Watch(SocketCalls::Handle handle, Ready ready) { return ThePump().Watch(handle, std::move(ready)); }
void Want(Watched watched, bool read, bool write) { ThePump().Want(watched, read, write); }
void Again(Watched watched) { ThePump().Again(watched); }
void Forget(Watched watched) { ThePump().Forget(watched); }

}  // namespace SocketPump
