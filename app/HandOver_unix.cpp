// A message is one file name and the NUL behind it; the answer is one byte. The answer is what counts: a name
// is taken when "taken" could be sent, and a sender that gives up refuses to be sent anything more. The
// kernel does one or the other first, so both sides know the same.
#include <glib-unix.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <deque>
#include <list>
#include <optional>
#include <thread>

#include "app/HandOver.h"
#include "app/MeetingPlace_unix.h"
#include "base/FileName.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kTaken = '+';
constexpr char kRefused = '-';
constexpr std::size_t kLongestMessage = 65536;
// A sender has its few bytes ready; one that is slower than this holds a place that others need.
constexpr guint kSlowestSenderSeconds = 3;
constexpr std::size_t kMostSenders = 16;
constexpr std::chrono::seconds kPatience{5};
constexpr std::chrono::milliseconds kRetryPause{20};

// An event source of the main loop, removed with its owner.
class Source {
  public:
    Source() = default;
    ~Source() { Remove(); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    void Set(guint id) {
        Remove();
        id_ = id;
    }
    void Remove() {
        if (id_) g_source_remove(id_);
        id_ = 0;
    }
    explicit operator bool() const { return id_ != 0; }

  private:
    guint id_ = 0;
};

class SocketCopy;

struct Sender {
    Sender(SocketCopy* owner, Descriptor connection) : copy(owner), socket(std::move(connection)) {}
    SocketCopy* copy;
    Descriptor socket;
    std::string received;
    Source readable, late;
};

class SocketCopy : public RunningCopy {
  public:
    explicit SocketCopy(MeetingPlace place) : place_(std::move(place)) {}

    // The place, and with it the lock, goes last.
    ~SocketCopy() override { StopListening(); }

    void Listen(std::function<void(const std::wstring&)> receive) override {
        receive_ = std::move(receive);
        Accept();
    }

    void Finish() override {
        StopListening();
        while (!names_.empty()) DeliverOne();
    }

  private:
    // Who still comes waits, and finds out at the end of this process that nobody has taken anything.
    void StopListening() {
        acceptable_.Remove();
        retry_.Remove();
        senders_.clear();
    }

    void Accept() {
        if (!place_.Socket()) return;
        acceptable_.Set(g_unix_fd_add(place_.Socket().Get(), G_IO_IN, OnSender, this));
    }

    static gboolean OnSender(gint, GIOCondition, gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        Descriptor socket = copy.place_.Accept();
        if (!socket) {
            if (errno != EMFILE && errno != ENFILE && errno != ENOMEM && errno != ENOBUFS)
                return G_SOURCE_CONTINUE;
            // Out of descriptors: the sender stays in the queue, and asking for it at once again is no use.
            copy.acceptable_.Remove();
            copy.retry_.Set(g_timeout_add_seconds(1, OnRetry, self));
            return G_SOURCE_CONTINUE;
        }
        const int fd = socket.Get();
        Sender& sender = copy.senders_.emplace_back(&copy, std::move(socket));
        sender.readable.Set(g_unix_fd_add(fd, G_IO_IN, OnReadable, &sender));
        sender.late.Set(g_timeout_add_seconds(kSlowestSenderSeconds, OnLate, &sender));
        if (copy.senders_.size() >= kMostSenders) copy.acceptable_.Remove();
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnRetry(gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        copy.retry_.Remove();
        copy.Accept();
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnLate(gpointer data) {
        auto& sender = *static_cast<Sender*>(data);
        sender.copy->Dismiss(sender);
        return G_SOURCE_CONTINUE;
    }

    static gboolean OnReadable(gint fd, GIOCondition, gpointer data) {
        auto& sender = *static_cast<Sender*>(data);
        char buffer[4096];
        const ssize_t count = recv(fd, buffer, sizeof buffer, 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return G_SOURCE_CONTINUE;
        if (count <= 0) {
            sender.copy->Dismiss(sender);
            return G_SOURCE_CONTINUE;
        }
        sender.received.append(buffer, static_cast<std::size_t>(count));
        const std::size_t end = sender.received.find('\0');
        if (end != std::string::npos && sender.received[0] == '/') {
            if (Answer(sender, kTaken)) sender.copy->Take(sender.received.substr(0, end));
            sender.copy->Dismiss(sender);
        } else if (end != std::string::npos || sender.received.size() > kLongestMessage) {
            Answer(sender, kRefused);
            sender.copy->Dismiss(sender);
        }
        return G_SOURCE_CONTINUE;
    }

    // False when the sender has given up. One byte always fits.
    static bool Answer(const Sender& sender, char answer) {
        return send(sender.socket.Get(), &answer, 1, MSG_NOSIGNAL) == 1;
    }

    void Dismiss(Sender& sender) {
        senders_.remove_if([&](const Sender& other) { return &other == &sender; });
        if (!acceptable_ && !retry_) Accept();
    }

    void Take(const std::string& name) {
        names_.push_back(FileName(name));
        if (!deliver_) deliver_.Set(g_idle_add_full(G_PRIORITY_DEFAULT, OnDeliver, this, nullptr));
    }

    static gboolean OnDeliver(gpointer self) {
        auto& copy = *static_cast<SocketCopy*>(self);
        copy.DeliverOne();
        if (copy.names_.empty()) copy.deliver_.Remove();
        return G_SOURCE_CONTINUE;
    }

    void DeliverOne() {
        if (names_.empty()) return;
        const std::wstring name = std::move(names_.front());
        names_.pop_front();
        if (receive_) receive_(name);
    }

    MeetingPlace place_;
    Source acceptable_, retry_, deliver_;
    std::list<Sender> senders_;
    std::deque<std::wstring> names_;
    std::function<void(const std::wstring&)> receive_;
};

// Waits until the socket is ready for what is asked. False at the deadline.
bool Ready(const Descriptor& socket, short events, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return false;
        pollfd waiting{socket.Get(), events, 0};
        const int count = poll(&waiting, 1, static_cast<int>(left));
        if (count > 0) return true;
        if (count < 0 && errno != EINTR) return false;
    }
}

bool Send(const Descriptor& socket, const std::string& message, Clock::time_point deadline) {
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t count = send(socket.Get(), message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno != EINTR && (errno != EAGAIN || !Ready(socket, POLLOUT, deadline))) {
            return false;
        }
    }
    return true;
}

// One attempt. Nothing when the copy ended, has not begun to listen, or did not answer in time: then the name
// is withdrawn.
std::optional<bool> Ask(const MeetingPlace& place, const std::string& message, Clock::time_point deadline) {
    const Descriptor socket = place.Connect();
    if (!socket) return std::nullopt;
    if (!Send(socket, message, deadline)) return std::nullopt;
    if (!Ready(socket, POLLIN, deadline)) shutdown(socket.Get(), SHUT_RD);
    char answer = 0;  // it may have come in between
    if (recv(socket.Get(), &answer, 1, 0) != 1) return std::nullopt;
    return answer == kTaken;
}

}  // namespace

std::unique_ptr<RunningCopy> RunningCopy::Claim() {
    MeetingPlace place;
    if (!place.Lock()) return nullptr;
    return std::make_unique<SocketCopy>(std::move(place));
}

bool HandOver(const std::wstring& fileName) {
    const Clock::time_point deadline = Clock::now() + kPatience;
    std::string message = FilePath(AbsoluteFileName(fileName)).native();
    message += '\0';
    const MeetingPlace place;
    if (message.size() > kLongestMessage) return false;
    for (;;) {
        if (const std::optional<bool> answer = Ask(place, message, deadline)) return *answer;
        if (Clock::now() + kRetryPause >= deadline || !place.IsLocked()) return false;
        std::this_thread::sleep_for(kRetryPause);
    }
}
