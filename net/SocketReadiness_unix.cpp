// One epoll descriptor, watched by the event loop, is ready when any socket is ready for what it wants, and
// as long as it is.
#include <glib-unix.h>
#include <sys/epoll.h>

#include "net/SocketReadiness.h"

namespace SocketPump::System {

namespace {

int Epoll() {
    // At the lowest priority, which is that of wxWidgets' own queue of events: at a higher one a crowd of
    // sockets would stop that altogether.
    static const int epoll = [] {
        const int descriptor = epoll_create1(EPOLL_CLOEXEC);
        g_unix_fd_add_full(
            G_PRIORITY_LOW, descriptor, G_IO_IN,
            [](gint, GIOCondition, gpointer) -> gboolean {
                RunTurn();
                return G_SOURCE_CONTINUE;
            },
            nullptr, nullptr);
        return descriptor;
    }();
    return epoll;
}

void Control(int operation, Watched watched, const Entry& entry) {
    epoll_event event{};
    event.events = (entry.read ? EPOLLIN : 0u) | (entry.write ? EPOLLOUT : 0u);
    event.data.u64 = watched;
    epoll_ctl(Epoll(), operation, static_cast<int>(entry.handle), &event);
}

guint idle = 0;  // the turn that was asked for

}  // namespace

void Add(Watched, const Entry&) {}

void Want(Watched watched, const Entry& entry, bool before) {
    // A socket that wants nothing is taken out, for a lost connection would be told all the time.
    if (entry.Wanted())
        Control(before ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, watched, entry);
    else
        Remove(watched, entry);
}

void Remove(Watched watched, const Entry& entry) { Control(EPOLL_CTL_DEL, watched, entry); }

void Collect(std::deque<Event>& events) {
    epoll_event ready[32];
    const int count = epoll_wait(Epoll(), ready, 32, 0);
    for (int i = 0; i < count; ++i) {
        const auto bits = ready[i].events;
        const bool broken = bits & (EPOLLERR | EPOLLHUP);
        events.push_back(
            {ready[i].data.u64,
             {.readable = broken || (bits & EPOLLIN) != 0, .writable = broken || (bits & EPOLLOUT) != 0}});
    }
}

void Served(Watched, const Entry&) {}

void AskForTurn() {
    if (idle != 0) return;
    idle = g_idle_add_full(
        G_PRIORITY_LOW,
        [](gpointer) -> gboolean {
            idle = 0;
            RunTurn();
            return G_SOURCE_REMOVE;
        },
        nullptr, nullptr);
}

}  // namespace SocketPump::System
