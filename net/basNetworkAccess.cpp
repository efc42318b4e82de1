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

class NetworkAccess::Undecided {
  public:
    explicit Undecided(const SocketCalls::Request& request) : request_(request) {}
    ~Undecided() {
        if (request_.handle != SocketCalls::kNoHandle) SocketCalls::Close(request_.handle);
    }
    Undecided(const Undecided&) = delete;
    Undecided& operator=(const Undecided&) = delete;

    const std::string& Address() const { return request_.address; }
    SocketCalls::Handle Take() { return std::exchange(request_.handle, SocketCalls::kNoHandle); }

  private:
    SocketCalls::Request request_;
};

NetworkAccess::NetworkAccess(NoteStore& store, const Options& options) : store_(store), options_(options) {}

NetworkAccess::NetworkAccess(NoteStore& store) : NetworkAccess(store, Options()) {}

NetworkAccess::~NetworkAccess() { Stop(); }

bool NetworkAccess::Listen() {
    if (listensAtAll_ && sckSend.State() != TcpSocket::Listening) {
        sckSend.LocalPort(options_.localPort);
        sckSend.Listen();
    }
    return sckSend.State() == TcpSocket::Listening;
}

void NetworkAccess::Stop() {
    sckSend.Close();
    undecided_.clear();
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
    const auto undecided = std::make_shared<Undecided>(request);
    if (IsQuitting() || pool_.size() + undecided_.size() >= kMostSessions) return;
    if (!MayConnect) return Admit(undecided);
    undecided_.push_back(undecided);
    MayConnect(request.address, [this, asked = std::weak_ptr(undecided)](bool may) {
        const auto decided = asked.lock();
        if (!decided || std::erase(undecided_, decided) == 0) return;
        if (may && !IsQuitting()) Admit(decided);
    });
}

void NetworkAccess::Admit(const std::shared_ptr<Undecided>& request) {
    const auto session = std::make_shared<clsIncoming>(
        request->Address(), options_.patience, [this] { RemoveClosed(); },
        [this](const Note& note) { return TakeIn(note); });
    session->Socket.Accept(request->Take());
    pool_.push_back(session);
    session->ConnectionEstablished();
}

void NetworkAccess::AskAgain() {
    if (!MayConnect) return;
    for (const std::shared_ptr<clsSession>& session : std::vector(pool_)) {
        const auto* const incoming = dynamic_cast<const clsIncoming*>(session.get());
        if (!incoming) continue;
        MayConnect(incoming->Address, [this, asked = std::weak_ptr(session)](bool may) {
            const auto session = asked.lock();
            if (may || !session) return;
            session->Socket.Close();
            RemoveClosed();
        });
    }
}

void NetworkAccess::ListensAtAll(bool listens) {
    listensAtAll_ = listens;
    if (listens) return;
    sckSend.Close();
    undecided_.clear();
    for (const std::shared_ptr<clsSession>& session : pool_)
        if (dynamic_cast<const clsIncoming*>(session.get())) session->Socket.Close();
    RemoveClosed();
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
