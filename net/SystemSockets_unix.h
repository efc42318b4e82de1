#pragma once
// The sockets of Linux, under names that those of both platforms have. None of the calls waits.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "base/Text.h"

namespace SystemSockets {

using Socket = int;
using Length = socklen_t;

constexpr int kInvalid = EINVAL;
constexpr int kEndOfSending = SHUT_WR;
// Without it a port could not be listened on again soon after it was left.
constexpr int kListenOption = SO_REUSEADDR;

inline int LastError() { return errno; }
inline bool IsForLater(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }
inline bool IsConnecting(int error) { return error == EINPROGRESS; }

// A descriptor in reserve, for closing a connection that no other is left for.
inline int& Reserve() {
    static int reserve = open("/dev/null", O_RDONLY | O_CLOEXEC);
    return reserve;
}

inline Socket New() {
    Reserve();
    return socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

// peer: gets the address of the other side.
inline Socket AcceptNext(Socket listener, sockaddr_in& peer) {
    const auto accept = [&] {
        Length size = sizeof peer;
        return accept4(listener, reinterpret_cast<sockaddr*>(&peer), &size, SOCK_NONBLOCK | SOCK_CLOEXEC);
    };
    const Socket accepted = accept();
    if (accepted < 0 && (errno == EMFILE || errno == ENFILE)) {
        // Left alone, the connection would wake the program again and again.
        close(Reserve());
        const Socket unwanted = accept();
        if (unwanted >= 0) close(unwanted);
        Reserve() = open("/dev/null", O_RDONLY | O_CLOEXEC);
    }
    return accepted;
}

inline long Receive(Socket socket, char* buffer, std::size_t size) { return recv(socket, buffer, size, 0); }
inline long Send(Socket socket, const char* data, std::size_t size) {
    return send(socket, data, size, MSG_NOSIGNAL);
}
inline void Close(Socket socket) { close(socket); }

inline bool AwaitForAMoment(Socket socket) {
    pollfd awaited{socket, POLLIN, 0};
    return poll(&awaited, 1, 1) == 1;
}

inline std::wstring Describe(int error) { return FromUtf8(std::system_category().message(error)); }

}  // namespace SystemSockets
