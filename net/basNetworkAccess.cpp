#include "net/basNetworkAccess.h"

#include <utility>

#include "base/DateText.h"
#include "base/Text.h"
#include "dialogs/Wait.h"
#include "net/clsIncoming.h"
#include "net/clsOutgoing.h"
#include "notes/NoteStore.h"

namespace {

// More than any office has; fewer than a process may have handles.
constexpr std::size_t kMostSessions = 256;

}  // namespace

NetworkAccess::NetworkAccess(NoteStore& store, const Options& options) : store_(store), options_(options) {}

NetworkAccess::NetworkAccess(NoteStore& store) : NetworkAccess(store, Options()) {}

NetworkAccess::~NetworkAccess() { Stop(); }

bool NetworkAccess::Listen() {
    if (sckSend.State() != TcpSocket::Listening) {
        sckSend.LocalPort(options_.localPort);
        sckSend.Listen();
    }
    return sckSend.State() == TcpSocket::Listening;
}

void NetworkAccess::Stop() {
    sckSend.Close();
    for (const auto& session : std::exchange(pool_, {})) session->Socket.Close();
}

std::shared_ptr<clsOutgoing> NetworkAccess::CreateOutgoing() {
    return std::make_shared<clsOutgoing>(options_.patience, [this] { RemoveClosed(); });
}

void NetworkAccess::Connect(const std::shared_ptr<clsOutgoing>& session, const std::wstring& host) {
    cancelled_ = false;
    pool_.push_back(session);
    TcpSocket& socket = session->Socket;
    socket.RemotePort(options_.remotePort);
    socket.LocalPort(0);
    socket.Connect(host);
    const WaitEnd end =
        WaitUntil([&] { return cancelled_ || socket.State() != TcpSocket::Connecting; }, options_.patience);
    if (end == WaitEnd::Quitting) return;
    if (cancelled_ || !session->IsConnected())
        Shutdown(session);
    else
        session->ConnectionEstablished();
}

void NetworkAccess::CancelConnect() {
    cancelled_ = true;
    WakeWaits();
}

void NetworkAccess::Shutdown(const std::shared_ptr<clsSession>& session) {
    session->PrepareConnectionShutdown();
    session->Socket.Close();
    RemoveClosed();
}

void NetworkAccess::RemoveClosed() {
    std::erase_if(pool_, [](const auto& each) { return each->Socket.State() == TcpSocket::Closed; });
}

void NetworkAccess::ConnectionRequest() {
    const SocketCalls::Request request = sckSend.NextRequest();
    if (request.handle == SocketCalls::kNoHandle) return;
    RemoveClosed();
    if (IsQuitting() || pool_.size() >= kMostSessions || (MayConnect && !MayConnect(request.address))) {
        SocketCalls::Close(request.handle);
        return;
    }
    const auto session = std::make_shared<clsIncoming>(
        options_.patience, [this] { RemoveClosed(); }, [this](const Note& note) { return TakeIn(note); });
    session->Socket.Accept(request.handle);
    pool_.push_back(session);
    session->ConnectionEstablished();
}

KeepResult NetworkAccess::TakeIn(const Note& received) {
    Note note = received;
    note.creationTime = CurrentCreationTime();
    // First the text, of which the store keeps only a part: what is left over when the store then refuses the
    // note is a file too many, not a note too few.
    if (KeepLongNote && !ComesBack(note.text)) {
        if (KeepResult failed = KeepLongNote(note); !failed.Kept()) return failed;
    }
    return store_.AddNoteIfKept(note);
}
