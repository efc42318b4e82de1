#pragma once
// The sockets of Windows, under names that those of both platforms have. None of the calls waits.

#include <winsock2.h>

#include <ws2tcpip.h>

#include <algorithm>
#include <string>

namespace SystemSockets {

using Socket = SOCKET;
using Length = int;

constexpr int kInvalid = WSAEINVAL;
constexpr int kEndOfSending = SD_SEND;
// Here it is this that keeps other programs from taking the port as well.
constexpr int kListenOption = SO_EXCLUSIVEADDRUSE;

inline int LastError() { return WSAGetLastError(); }
inline bool IsForLater(int error) { return error == WSAEWOULDBLOCK; }
inline bool IsConnecting(int error) { return error == WSAEWOULDBLOCK; }

inline Socket NotWaiting(Socket socket) {
    u_long on = 1;
    if (socket != INVALID_SOCKET) ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
    return socket;
}

inline Socket New() {
    // In use from the first socket to the end.
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
    return NotWaiting(socket(AF_INET, SOCK_STREAM, 0));
}

// peer: gets the address of the other side.
inline Socket AcceptNext(Socket listener, sockaddr_in& peer) {
    Length size = sizeof peer;
    return NotWaiting(accept(listener, reinterpret_cast<sockaddr*>(&peer), &size));
}

// A call takes no more than a positive number of bytes.
inline int Limited(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, 1'000'000)); }

inline long Receive(Socket socket, char* buffer, std::size_t size) {
    return recv(socket, buffer, Limited(size), 0);
}
inline long Send(Socket socket, const char* data, std::size_t size) {
    return send(socket, data, Limited(size), 0);
}
inline void Close(Socket socket) { closesocket(socket); }

inline bool AwaitForAMoment(Socket socket) {
    fd_set awaited;
    FD_ZERO(&awaited);
    FD_SET(socket, &awaited);
    timeval moment{0, 1000};
    return select(0, &awaited, nullptr, nullptr, &moment) == 1;
}

inline std::wstring Describe(int error) {
    wchar_t text[512] = L"";
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(error), 0, text, 512, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
    return {text, length};
}

}  // namespace SystemSockets
