// A mutex tells that there is a running copy; a DDE conversation takes the file names to it.
#include <windows.h>

#include <ddeml.h>
#include <wx/app.h>

#include <chrono>
#include <deque>
#include <future>
#include <memory>
#include <thread>

#include "app/HandOver.h"
#include "base/FileName.h"
#include "base/basText.h"

namespace {

using Clock = std::chrono::steady_clock;

const wchar_t* const kMutex = L"Local\\Kivora";
const char* const kService = "Kivora";
const char* const kTopic = "Import";
const char* const kItem = "lblDDERec";
constexpr std::chrono::seconds kPatience{5};
constexpr DWORD kRetryPauseMilliseconds = 20;

// One side of a DDE conversation.
class Conversations {
  public:
    Conversations(PFNCALLBACK callback, DWORD flags) { DdeInitializeA(&instance_, callback, flags, 0); }
    ~Conversations() {
        if (instance_) DdeUninitialize(instance_);
    }
    Conversations(const Conversations&) = delete;
    Conversations& operator=(const Conversations&) = delete;

    DWORD Get() const { return instance_; }
    HSZ Name(const char* text) const { return DdeCreateStringHandleA(instance_, text, CP_WINANSI); }
    bool IsName(HSZ name, const char* text) const {
        const HSZ expected = Name(text);
        const bool same = DdeCmpStringHandles(name, expected) == 0;
        DdeFreeStringHandle(instance_, expected);
        return same;
    }

  private:
    DWORD instance_ = 0;
};

class DdeCopy;
DdeCopy* running = nullptr;  // whom the callback of Windows calls, which is given no object

class DdeCopy : public RunningCopy {
  public:
    explicit DdeCopy(HANDLE mutex)
        : mutex_(mutex), conversations_(std::make_unique<Conversations>(OnDde, APPCLASS_STANDARD)) {
        running = this;
        service_ = conversations_->Name(kService);
        DdeNameService(conversations_->Get(), service_, nullptr, DNS_REGISTER);
    }

    ~DdeCopy() override {
        StopListening();
        running = nullptr;
        CloseHandle(mutex_);
    }

    void Listen(std::function<void(const std::wstring&)> receive) override {
        receive_ = std::move(receive);
        for (std::size_t i = 0; i < names_.size(); ++i) DeliverLater();
    }

    void Finish() override {
        StopListening();
        while (!names_.empty()) DeliverOne();
    }

  private:
    void StopListening() {
        if (!conversations_) return;
        DdeNameService(conversations_->Get(), service_, nullptr, DNS_UNREGISTER);
        DdeFreeStringHandle(conversations_->Get(), service_);
        conversations_.reset();
    }

    static HDDEDATA CALLBACK OnDde(UINT type, UINT format, HCONV, HSZ topic, HSZ item, HDDEDATA data,
                                   ULONG_PTR, ULONG_PTR) {
        if (!running || !running->conversations_) return nullptr;
        if (type == XTYP_CONNECT)
            return reinterpret_cast<HDDEDATA>(
                static_cast<INT_PTR>(running->conversations_->IsName(topic, kTopic)));
        if (type != XTYP_POKE || format != CF_TEXT || !running->conversations_->IsName(item, kItem))
            return nullptr;
        running->Take(data);
        return reinterpret_cast<HDDEDATA>(DDE_FACK);
    }

    void Take(HDDEDATA data) {
        std::string bytes(DdeGetData(data, nullptr, 0, 0), '\0');
        DdeGetData(data, reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()), 0);
        bytes.resize(std::min(bytes.find('\0'), bytes.size()));
        if (bytes.empty()) return;
        names_.push_back(FromAnsi(bytes));
        if (receive_) DeliverLater();
    }

    // As an event of its own: the conversation ends at once, whatever the name brings.
    void DeliverLater() {
        wxTheApp->CallAfter([alive = std::weak_ptr<DdeCopy*>(self_)] {
            if (const auto copy = alive.lock()) (*copy)->DeliverOne();
        });
    }

    void DeliverOne() {
        if (names_.empty()) return;
        const std::wstring name = std::move(names_.front());
        names_.pop_front();
        if (receive_) receive_(name);
    }

    HANDLE mutex_;
    std::unique_ptr<Conversations> conversations_;
    HSZ service_ = nullptr;
    std::deque<std::wstring> names_;
    std::function<void(const std::wstring&)> receive_;
    std::shared_ptr<DdeCopy*> self_ = std::make_shared<DdeCopy*>(this);
};

bool IsCopyRunning() {
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kMutex);
    if (mutex) CloseHandle(mutex);
    return mutex != nullptr;
}

// The name in the code page; a short form of the file system's where that lacks a character.
std::string AnsiName(const std::wstring& name) {
    const std::string bytes = ToAnsi(name);
    if (FromAnsi(bytes) == name) return bytes;
    std::wstring shortName(GetShortPathNameW(name.c_str(), nullptr, 0), L'\0');
    shortName.resize(GetShortPathNameW(name.c_str(), shortName.data(), static_cast<DWORD>(shortName.size())));
    return shortName.empty() ? bytes : ToAnsi(shortName);
}

HDDEDATA CALLBACK IgnoreDde(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) { return nullptr; }

bool Poke(const Conversations& conversations, HCONV conversation, std::string message) {
    const HSZ item = conversations.Name(kItem);
    const bool taken = DdeClientTransaction(
        reinterpret_cast<BYTE*>(message.data()), static_cast<DWORD>(message.size() + 1), conversation, item,
        CF_TEXT, XTYP_POKE, static_cast<DWORD>(std::chrono::milliseconds(kPatience).count()), nullptr);
    DdeFreeStringHandle(conversations.Get(), item);
    return taken;
}

}  // namespace

std::unique_ptr<RunningCopy> RunningCopy::Claim() {
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, kMutex);
    if (mutex && GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return nullptr;
    }
    return std::make_unique<DdeCopy>(mutex);
}

namespace {

bool Converse(const std::string& name) {
    const Clock::time_point deadline = Clock::now() + kPatience;
    const Conversations conversations(IgnoreDde, APPCMD_CLIENTONLY);
    const HSZ service = conversations.Name(kService), topic = conversations.Name(kTopic);
    HCONV conversation = nullptr;
    // The running copy may not have come to offering its service.
    while (IsCopyRunning() && !(conversation = DdeConnect(conversations.Get(), service, topic, nullptr)) &&
           Clock::now() < deadline)
        Sleep(kRetryPauseMilliseconds);
    DdeFreeStringHandle(conversations.Get(), service);
    DdeFreeStringHandle(conversations.Get(), topic);
    if (!conversation) return false;
    const bool taken = Poke(conversations, conversation, name);
    DdeDisconnect(conversation);
    return taken;
}

}  // namespace

bool HandOver(const std::wstring& fileName) {
    // A copy that does not answer would keep the call of Windows for ever, so that waits in a thread that can
    // be left behind.
    std::promise<bool> promise;
    std::future<bool> taken = promise.get_future();
    std::thread([promise = std::move(promise), name = AnsiName(AbsoluteFileName(fileName))]() mutable {
        promise.set_value(Converse(name));
    }).detach();
    return taken.wait_for(kPatience) == std::future_status::ready && taken.get();
}
