#include "net/basNetworkAccess.h"

#include <algorithm>

#include "base/DateText.h"
#include "base/basText.h"
#include "dialogs/basWait.h"
#include "net/clsIncoming.h"
#include "net/clsOutgoing.h"
#include "notes/NoteStore.h"

namespace {

// More than any office has; fewer than a process may have handles.
constexpr std::size_t kMostIncoming = 256;

bool IsIncoming(const std::shared_ptr<clsSession>& session) {
    return dynamic_cast<const clsIncoming*>(session.get()) != nullptr;
}

}  // namespace

NetworkAccess::NetworkAccess(NoteStore& store, const Options& options)
    : store_(store), options_(options), sckSend(*this) {}

NetworkAccess::NetworkAccess(NoteStore& store) : NetworkAccess(store, Options()) {}

NetworkAccess::~NetworkAccess() { Stop(); }

bool NetworkAccess::Listen() {
    TcpSocket& listener = sckSend.Listener();
    if (listener.State() != TcpSocket::Listening) {
        listener.LocalPort(options_.localPort);
        listener.Listen();
    }
    return listener.State() == TcpSocket::Listening;
}

void NetworkAccess::Stop() {
    sckSend.Listener().Close();
    for (const auto& session : std::exchange(pool_, {})) {
        if (session->Socket) session->Socket->Close();
    }
}

std::shared_ptr<clsOutgoing> NetworkAccess::CreateOutgoing() {
    return std::make_shared<clsOutgoing>(sckSend, options_.patience);
}

void NetworkAccess::Connect(const std::shared_ptr<clsSession>& session, const std::wstring& host) {
    cancelled_ = false;
    const std::shared_ptr<TcpSocket> socket = session->Socket;
    if (!socket) return;
    pool_.push_back(session);
    socket->RemotePort(options_.remotePort);
    socket->LocalPort(0);
    socket->Connect(host);
    const WaitEnd end =
        WaitUntil([&] { return cancelled_ || socket->State() != TcpSocket::Connecting; }, options_.patience);
    if (end == WaitEnd::Quitting) return;
    if (cancelled_ || socket->State() != TcpSocket::Connected)
        Shutdown(session);
    else
        session->ConnectionEstablished();
}

void NetworkAccess::CancelConnect() {
    cancelled_ = true;
    WakeWaits();
}

std::shared_ptr<clsSession> NetworkAccess::FindSession(const TcpSocket& socket) const {
    const auto found = std::find_if(pool_.begin(), pool_.end(),
                                    [&](const auto& session) { return session->Socket.get() == &socket; });
    return found == pool_.end() ? nullptr : *found;
}

void NetworkAccess::Shutdown(const std::shared_ptr<clsSession>& session) {
    session->PrepareConnectionShutdown();
    if (session->Socket) session->Socket->Close();
    Remove(session.get());
}

// Takes the session out of the pool, and all that have given up their sockets.
void NetworkAccess::Remove(const clsSession* session) {
    std::erase_if(pool_, [&](const auto& each) { return each.get() == session || !each->Socket; });
}

void NetworkAccess::ConnectionRequest(TcpSocket& listener) {
    const SocketCalls::Handle request = listener.NextRequest();
    if (request == SocketCalls::kNoHandle) return;
    const auto incoming = static_cast<std::size_t>(std::count_if(pool_.begin(), pool_.end(), IsIncoming));
    if (IsQuitting() || incoming >= kMostIncoming) {
        SocketCalls::Close(request);
        return;
    }
    const auto session = std::make_shared<clsIncoming>(
        sckSend, options_.patience, [this](const NoteContent& content) { TakeIn(content); });
    if (!session->Socket) {
        SocketCalls::Close(request);
        return;
    }
    session->Socket->Accept(request);
    pool_.push_back(session);
    session->ConnectionEstablished();
}

// Calls the owner of the socket. last: no other event will come.
template <class Call>
void NetworkAccess::Route(TcpSocket& socket, Call call, bool last) {
    const std::shared_ptr<clsSession> session = FindSession(socket);
    if (!session || IsQuitting()) return;
    call(*session);
    if (last)
        Shutdown(session);
    else if (!session->Socket)
        Remove(session.get());
    WakeWaits();
}

void NetworkAccess::Connect(TcpSocket& socket) {
    Route(socket, [](clsSession& session) { session.Socket_Connect(); });
}

void NetworkAccess::DataArrival(TcpSocket& socket, std::int32_t bytes) {
    Route(socket, [=](clsSession& session) { session.Socket_DataArrival(bytes); });
}

void NetworkAccess::SendComplete(TcpSocket& socket) {
    Route(socket, [](clsSession& session) { session.Socket_SendComplete(); });
}

void NetworkAccess::SendProgress(TcpSocket& socket, std::int32_t sent, std::int32_t remaining) {
    Route(socket, [=](clsSession& session) { session.Socket_SendProgress(sent, remaining); });
}

void NetworkAccess::Close(TcpSocket& socket) {
    Route(
        socket, [](clsSession& session) { session.Socket_Close(); }, true);
}

void NetworkAccess::Error(TcpSocket& socket, std::int32_t number, const std::wstring& description) {
    Route(
        socket, [&](clsSession& session) { session.Socket_Error(number, description); }, true);
}

void NetworkAccess::TakeIn(const NoteContent& content) {
    const Note note{.text = content.text,
                    .creationTime = CurrentDateText() + L", " + CurrentTimeText(),
                    .look = {.size = content.fontSize,
                             .bold = content.bold,
                             .italic = content.italic,
                             .underlined = content.underlined,
                             .alignment = static_cast<std::int16_t>(content.alignment),
                             .color = content.color}};
    const frmNote& added = store_.AddNote(note).note;
    if (KeepLongNote && !ComesBack(content.text)) KeepLongNote(added);
}
