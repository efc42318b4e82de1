#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "base/basText.h"
#include "net/SocketCalls.h"

namespace SocketCalls {

namespace {

int Descriptor(Handle handle) { return static_cast<int>(handle); }

void Set(Handle handle, int level, int option) {
    const int on = 1;
    setsockopt(Descriptor(handle), level, option, &on, sizeof on);
}

// A descriptor in reserve, for closing a connection that no other is left for.
int& Reserve() {
    static int reserve = open("/dev/null", O_RDONLY | O_CLOEXEC);
    return reserve;
}

Handle Prepared(Handle handle) {
    if (handle == kNoHandle) return handle;
    Set(handle, IPPROTO_TCP, TCP_NODELAY);
    // Finds out about computers that were switched off.
    Set(handle, SOL_SOCKET, SO_KEEPALIVE);
    return handle;
}

Transfer Result(ssize_t count) {
    if (count > 0) return {Outcome::Done, static_cast<std::size_t>(count)};
    if (count == 0) return {Outcome::Ended};
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) return {Outcome::Later};
    return {Outcome::Failed, 0, errno};
}

}  // namespace

Handle Listen(std::uint16_t port, int& error) {
    Reserve();
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (listener >= 0) {
        Set(listener, SOL_SOCKET, SO_REUSEADDR);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
            listen(listener, SOMAXCONN) == 0)
            return listener;
    }
    error = errno;
    if (listener >= 0) close(listener);
    return kNoHandle;
}

std::uint16_t LocalPort(Handle handle) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(Descriptor(handle), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

Handle Accept(Handle listener) {
    const auto accept = [&] {
        return accept4(Descriptor(listener), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    };
    const int accepted = accept();
    if (accepted < 0 && (errno == EMFILE || errno == ENFILE)) {
        // Left alone, the connection would wake the program again and again.
        close(Reserve());
        const int unwanted = accept();
        if (unwanted >= 0) close(unwanted);
        Reserve() = open("/dev/null", O_RDONLY | O_CLOEXEC);
    }
    return Prepared(accepted);
}

Handle BeginConnect(const std::string& address, std::uint16_t port, int& error) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    if (inet_pton(AF_INET, address.c_str(), &target.sin_addr) != 1) {
        error = EINVAL;
        return kNoHandle;
    }
    const Handle handle = Prepared(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (handle == kNoHandle ||
        (connect(Descriptor(handle), reinterpret_cast<sockaddr*>(&target), sizeof target) != 0 &&
         errno != EINPROGRESS)) {
        error = errno;
        if (handle != kNoHandle) close(Descriptor(handle));
        return kNoHandle;
    }
    return handle;
}

int ConnectError(Handle handle) {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(Descriptor(handle), SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

Transfer Receive(Handle handle, char* buffer, std::size_t size) {
    return Result(recv(Descriptor(handle), buffer, size, 0));
}

Transfer Send(Handle handle, const char* data, std::size_t size) {
    return Result(send(Descriptor(handle), data, size, MSG_NOSIGNAL));
}

bool AwaitForAMoment(Handle handle) {
    pollfd awaited{Descriptor(handle), POLLIN, 0};
    return poll(&awaited, 1, 1) == 1;
}

void Close(Handle handle) {
    // Closed with something unread, the connection would be reset and take what was sent last with it.
    char unread[4096];
    shutdown(Descriptor(handle), SHUT_WR);
    for (int i = 0; i < 16 && recv(Descriptor(handle), unread, sizeof unread, MSG_DONTWAIT) > 0; ++i) {
    }
    close(Descriptor(handle));
}

std::wstring Describe(int error) { return FromUtf8(std::system_category().message(error)); }

}  // namespace SocketCalls
