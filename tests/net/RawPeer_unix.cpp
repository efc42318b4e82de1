#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "tests/net/RawPeer.h"

namespace {

sockaddr_in ThisComputer(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void Hurry(int descriptor) {
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool IsReady(int descriptor, std::chrono::milliseconds limit) {
    pollfd ready{descriptor, POLLIN, 0};
    return poll(&ready, 1, static_cast<int>(limit.count())) == 1;
}

int ListenOn(std::uint16_t& port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = ThisComputer(0);
    socklen_t size = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 16) != 0)
        throw std::runtime_error("no port to listen on");
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

}  // namespace

RawConnection::~RawConnection() {
    if (descriptor_ >= 0) close(descriptor_);
}

RawConnection RawConnection::To(std::uint16_t port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = ThisComputer(port);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no connection");
    Hurry(descriptor);
    return RawConnection(descriptor);
}

bool RawConnection::Send(const std::string& bytes) const {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::size_t RawConnection::TrySend(const std::string& bytes) const {
    const ssize_t count = send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool RawConnection::Receive(std::chrono::milliseconds limit) {
    char buffer[65536];
    if (ended_ || !IsReady(descriptor_, limit)) return false;
    const ssize_t count = recv(descriptor_, buffer, sizeof buffer, 0);
    if (count <= 0) {
        ended_ = true;
        return false;
    }
    received_.append(buffer, static_cast<std::size_t>(count));
    return true;
}

void RawConnection::EndSending() const { shutdown(descriptor_, SHUT_WR); }

void RawConnection::Reset() {
    const linger atOnce{1, 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(std::exchange(descriptor_, -1));
}

RawServer::RawServer(std::function<void(RawConnection&)> dialogue) : listener_(ListenOn(port_)) {
    thread_ = std::thread([this, dialogue = std::move(dialogue)] {
        const int accepted = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (accepted < 0) return;
        Hurry(accepted);
        RawConnection connection(accepted);
        dialogue(connection);
    });
}

RawServer::~RawServer() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
}

std::uint16_t FreePort() {
    std::uint16_t port = 0;
    close(ListenOn(port));
    return port;
}

double ThreadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

int CountHandles() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                          std::filesystem::directory_iterator()));
}

double LongestTurn() { return 0.05; }
