#include "net/TcpSocket.h"

#include <array>
#include <utility>

#include "addressbook/NameLookup.h"
#include "dialogs/Wait.h"

namespace {

// Read at once. Small, so that a turn of the sockets ends in time whatever the bytes cost.
constexpr std::size_t kPiece = 8 * 1024;

// With more than this unsent nothing is read: whoever does not take the answers gets to ask nothing more.
constexpr std::size_t kMostUnsent = 16 * 1024;

constexpr int kHostNotFound = 11001;

}  // namespace

TcpSocket::TcpSocket(SocketEvents& receiver) : receiver_(receiver) {}

TcpSocket::~TcpSocket() { Close(); }

template <class... Parameters, class... Arguments>
void TcpSocket::Tell(void (SocketEvents::*event)(Parameters...), const Arguments&... arguments) {
    if (!IsQuitting()) (receiver_.*event)(arguments...);
    WakeWaits();
}

std::uint16_t TcpSocket::LocalPort() const {
    return handle_ == SocketCalls::kNoHandle ? localPort_ : SocketCalls::LocalPort(handle_);
}

void TcpSocket::Listen() {
    Close();
    int error = 0;
    const SocketCalls::Handle handle = SocketCalls::Listen(localPort_, error);
    if (handle == SocketCalls::kNoHandle) {
        state_ = Failed;
        return;
    }
    Open(handle, Listening);
}

void TcpSocket::Connect(const std::wstring& host) {
    Close();
    state_ = Connecting;
    lookup_ = std::make_unique<NameLookup>(host, [this](const std::vector<std::wstring>& addresses) {
        const auto alive = receiver_.weak_from_this().lock();
        const std::wstring address = addresses.empty() ? L"" : addresses.front();
        const std::string dotted(address.begin(), address.end());
        lookup_.reset();
        BeginConnect(dotted);
    });
}

void TcpSocket::BeginConnect(const std::string& address) {
    if (address.empty()) {
        state_ = Failed;
        Tell(&SocketEvents::Socket_Error, kHostNotFound, L"Host not found");
        return;
    }
    int error = 0;
    const SocketCalls::Handle handle = SocketCalls::BeginConnect(address, remotePort_, error);
    if (handle == SocketCalls::kNoHandle)
        Fail(error);
    else
        Open(handle, Connecting);
}

void TcpSocket::Accept(SocketCalls::Handle request) {
    Close();
    Open(request, Connected);
}

void TcpSocket::Open(SocketCalls::Handle handle, SocketState state) {
    handle_ = handle;
    state_ = state;
    watched_ = SocketPump::Watch(handle, [this](const SocketPump::Readiness& readiness) {
        const auto alive = receiver_.weak_from_this().lock();
        OnReady(readiness);
    });
    UpdateWants();
}

SocketCalls::Request TcpSocket::NextRequest() {
    return state_ == Listening ? SocketCalls::Accept(handle_) : SocketCalls::Request();
}

void TcpSocket::SendData(const std::string& bytes) {
    if (state_ != Connected || error_ != 0) return;
    const bool first = out_.empty();
    out_ += bytes;
    if (first) Flush();
}

std::string TcpSocket::GetData() { return std::exchange(in_, {}); }

void TcpSocket::AskAgain() {
    held_ = true;
    UpdateWants();
    SocketPump::Again(watched_);
}

void TcpSocket::LookForAMoment() {
    if (state_ == Connected && wantsRead_ && SocketCalls::AwaitForAMoment(handle_))
        OnReady({.readable = true});
}

void TcpSocket::Close() {
    lookup_.reset();
    if (handle_ != SocketCalls::kNoHandle) {
        SocketPump::Forget(watched_);
        SocketCalls::Close(handle_);
        handle_ = SocketCalls::kNoHandle;
    }
    state_ = Closed;
    in_.clear();
    out_.clear();
    sent_ = 0;
    held_ = ended_ = wantsRead_ = wantsWrite_ = false;
    error_ = 0;
}

void TcpSocket::OnReady(const SocketPump::Readiness& readiness) {
    if (state_ == Listening) {
        receiver_.ConnectionRequest();
        return;
    }
    if (state_ == Connecting) {
        if (const int error = SocketCalls::ConnectError(handle_)) {
            Fail(error);
        } else if (readiness.writable) {
            state_ = Connected;
            UpdateWants();
            WakeWaits();
        }
        return;
    }
    if (readiness.again && held_) {
        held_ = false;
        Tell(&SocketEvents::Socket_DataArrival, static_cast<std::int32_t>(in_.size()));
    } else {
        if (readiness.writable && wantsWrite_) Flush();
        if (readiness.readable && wantsRead_) Read();
    }
    if (state_ == Connected && !held_) {
        UpdateWants();  // what was held back may be read again
        Finish();
    }
}

void TcpSocket::Read() {
    std::array<char, kPiece> piece;
    const SocketCalls::Transfer transfer = SocketCalls::Receive(handle_, piece.data(), piece.size());
    switch (transfer.outcome) {
        case SocketCalls::Outcome::Done:
            in_.append(piece.data(), transfer.bytes);
            Tell(&SocketEvents::Socket_DataArrival, static_cast<std::int32_t>(in_.size()));
            break;
        case SocketCalls::Outcome::Ended:
            ended_ = true;
            UpdateWants();
            break;
        case SocketCalls::Outcome::Failed:
            error_ = transfer.error;
            break;
        case SocketCalls::Outcome::Later:
            break;
    }
}

void TcpSocket::Flush() {
    while (sent_ < out_.size()) {
        const SocketCalls::Transfer transfer =
            SocketCalls::Send(handle_, out_.data() + sent_, out_.size() - sent_);
        if (transfer.outcome == SocketCalls::Outcome::Later) break;
        if (transfer.outcome != SocketCalls::Outcome::Done) {
            // Told later: this may be within a call of the receiver.
            error_ = transfer.error;
            out_.clear();
            sent_ = 0;
            UpdateWants();
            SocketPump::Again(watched_);
            return;
        }
        sent_ += transfer.bytes;
    }
    const bool complete = sent_ == out_.size();
    if (complete) {
        out_.clear();
        if (out_.capacity() > kMostUnsent) out_.shrink_to_fit();
    } else if (sent_ > out_.size() / 2) {
        out_.erase(0, sent_);
    } else {
        UpdateWants();
        return;
    }
    sent_ = 0;
    UpdateWants();
    if (complete) Tell(&SocketEvents::Socket_SendComplete);
}

// Tells the end of the connection once everything before it has been dealt with.
void TcpSocket::Finish() {
    if (error_ != 0) {
        Fail(error_);
    } else if (ended_ && out_.empty()) {
        Close();
        Tell(&SocketEvents::Socket_Close);
    }
}

void TcpSocket::Fail(int error) {
    Close();
    state_ = Failed;
    Tell(&SocketEvents::Socket_Error, error, SocketCalls::Describe(error));
}

void TcpSocket::UpdateWants() {
    if (handle_ == SocketCalls::kNoHandle) return;
    const bool connected = state_ == Connected && error_ == 0;
    const bool read =
        state_ == Listening || (connected && !held_ && !ended_ && out_.size() - sent_ < kMostUnsent);
    const bool write = state_ == Connecting || (connected && !out_.empty());
    if (read == wantsRead_ && write == wantsWrite_) return;
    wantsRead_ = read;
    wantsWrite_ = write;
    SocketPump::Want(watched_, read, write);
}
