// A mutex tells that there is a running copy. Its window takes file names and packed commands; a DDE
// conversation takes file names too, for copies and programs that know no other way. That is the second
// choice, because Windows lets it wait for the windows of all programs, also of one that hangs, and because
// it carries the characters of the code page only. What a command comes to is sent to a window of its
// sender's.
#include <windows.h>

#include <ddeml.h>
#include <wx/app.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <memory>
#include <thread>

#include "app/CopyMutex_msw.h"
#include "app/HandOver.h"
#include "base/FileName.h"
#include "base/MessageWindow_msw.h"
#include "base/ShortFileName_msw.h"
#include "base/Text.h"

namespace {

using Clock = std::chrono::steady_clock;

const wchar_t* const kWindowClass = L"Kivora.HandOver";
const char* const kService = "Kivora";
const char* const kTopic = "Import";
const char* const kItem = "lblDDERec";
constexpr std::chrono::seconds kPatience{5};
constexpr std::chrono::seconds kPatienceForResult{60};
// A copy that has just started may not have come to opening its window.
constexpr std::chrono::seconds kPatienceForWindow{1};
constexpr DWORD kRetryPauseMilliseconds = 20;

DWORD MillisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<DWORD>(std::max<long long>(left.count(), 1));
}

// The class of the window that waits for what a command comes to.
std::wstring AskerClass(DWORD process, ULONG_PTR number) {
    return L"Kivora.Asker." + std::to_wstring(process) + L"." + std::to_wstring(number);
}

// What was taken, and the class of the window that waits for what becomes of it.
struct Errand {
    Command command;
    std::wstring asker = {};  // empty for a file
};

// A window with text for another program, which has it when this returns.
void SendText(HWND window, DWORD sender, ULONG_PTR number, const std::wstring& text, DWORD milliseconds) {
    COPYDATASTRUCT data{number, static_cast<DWORD>(text.size() * sizeof(wchar_t)),
                        const_cast<wchar_t*>(text.data())};
    SendMessageTimeoutW(window, WM_COPYDATA, sender, reinterpret_cast<LPARAM>(&data), SMTO_BLOCK,
                        milliseconds, nullptr);
}

std::wstring TextOf(const COPYDATASTRUCT& data) {
    return {static_cast<const wchar_t*>(data.lpData), data.cbData / sizeof(wchar_t)};
}

// Who has the say over one message: the running copy, which takes it, or the sender, which withdraws it. The
// first to ask gets it, so never both.
class Say {
  public:
    // Made by the sender, which names it by its process and a number of its own.
    static Say Make(DWORD process, ULONG_PTR number) {
        // A copy that was started with other rights asks for it, too.
        SECURITY_DESCRIPTOR everybody;
        InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
        SECURITY_ATTRIBUTES attributes{sizeof attributes, &everybody, FALSE};
        return Say(CreateEventW(&attributes, FALSE, TRUE, Name(process, number).c_str()));
    }
    static Say Open(DWORD process, ULONG_PTR number) {
        return Say(OpenEventW(SYNCHRONIZE, FALSE, Name(process, number).c_str()));
    }
    ~Say() {
        if (event_) CloseHandle(event_);
    }
    Say(const Say&) = delete;
    Say& operator=(const Say&) = delete;

    explicit operator bool() const { return event_ != nullptr; }
    bool Get() const { return WaitForSingleObject(event_, 0) == WAIT_OBJECT_0; }

  private:
    explicit Say(HANDLE event) : event_(event) {}

    static std::wstring Name(DWORD process, ULONG_PTR number) {
        return L"Local\\Kivora.HandOver." + std::to_wstring(process) + L"." + std::to_wstring(number);
    }

    HANDLE event_;  // one that resets itself
};

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
        window_ =
            std::make_unique<MessageWindow>(kWindowClass, [this](UINT message, WPARAM process, LPARAM data) {
                return OnMessage(message, static_cast<DWORD>(process), data);
            });
        // A copy that was started with an administrator's rights takes names from the others too.
        ChangeWindowMessageFilterEx(window_->Get(), WM_COPYDATA, MSGFLT_ALLOW, nullptr);
        running = this;
        service_ = conversations_->Name(kService);
        DdeNameService(conversations_->Get(), service_, nullptr, DNS_REGISTER);
    }

    ~DdeCopy() override {
        StopListening();
        running = nullptr;
        if (mutex_) CloseHandle(mutex_);
    }

    void Listen(Receive receive) override {
        receive_ = std::move(receive);
        for (std::size_t i = 0; i < errands_.size(); ++i) DeliverLater();
    }

    void Finish() override {
        StopListening();
        while (!errands_.empty()) DeliverOne();
    }

  private:
    void StopListening() {
        if (!conversations_) return;
        window_.reset();
        DdeNameService(conversations_->Get(), service_, nullptr, DNS_UNREGISTER);
        DdeFreeStringHandle(conversations_->Get(), service_);
        conversations_.reset();
    }

    static HDDEDATA CALLBACK OnDde(UINT type, UINT format, HCONV conversation, HSZ topic, HSZ item,
                                   HDDEDATA data, ULONG_PTR, ULONG_PTR) {
        if (!running || !running->conversations_) return nullptr;
        if (type == XTYP_CONNECT)
            return reinterpret_cast<HDDEDATA>(
                static_cast<INT_PTR>(running->conversations_->IsName(topic, kTopic)));
        if (type != XTYP_POKE || format != CF_TEXT || !running->conversations_->IsName(item, kItem) ||
            HasGivenUp(conversation))
            return nullptr;
        running->TakeFile(Caption(data));
        return reinterpret_cast<HDDEDATA>(DDE_FACK);
    }

    // The window of a sender that has ended the conversation is gone, though what it poked is still there.
    static bool HasGivenUp(HCONV conversation) {
        CONVINFO info{};
        info.cb = sizeof info;
        DdeQueryConvInfo(conversation, QID_SYNC, &info);
        return info.hwndPartner && !IsWindow(info.hwndPartner);
    }

    static std::wstring Caption(HDDEDATA data) {
        std::string bytes(DdeGetData(data, nullptr, 0, 0), '\0');
        DdeGetData(data, reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()), 0);
        bytes.resize(std::min(bytes.find('\0'), bytes.size()));
        return FromAnsi(bytes);
    }

    std::optional<LRESULT> OnMessage(UINT message, DWORD process, LPARAM lParam) {
        if (message != WM_COPYDATA) return std::nullopt;
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        if (!Say::Open(process, data->dwData).Get()) return FALSE;
        // No name of a file holds a NUL.
        std::wstring text = TextOf(*data);
        if (std::optional<Command> command = Unpacked(text))
            Take({std::move(*command), AskerClass(process, data->dwData)});
        else
            TakeFile(std::move(text));
        return TRUE;
    }

    void TakeFile(std::wstring name) {
        if (!name.empty()) Take({{L"", {std::move(name)}}});
    }

    void Take(Errand errand) {
        errands_.push_back(std::move(errand));
        if (receive_) DeliverLater();
    }

    // As an event of its own: the conversation ends at once, whatever the name brings.
    void DeliverLater() {
        wxTheApp->CallAfter([alive = std::weak_ptr<DdeCopy*>(self_)] {
            if (const auto copy = alive.lock()) (*copy)->DeliverOne();
        });
    }

    void DeliverOne() {
        if (errands_.empty()) return;
        const Errand errand = std::move(errands_.front());
        errands_.pop_front();
        if (!receive_) return;
        const CommandAnswer answer = receive_(errand.command);
        if (errand.asker.empty()) return;
        if (const HWND asker = MessageWindow::Find(errand.asker.c_str()))
            SendText(asker, 0, static_cast<ULONG_PTR>(answer.exitCode), answer.text,
                     MillisecondsUntil(Clock::now() + kPatience));
    }

    HANDLE mutex_;
    std::unique_ptr<MessageWindow> window_;
    std::unique_ptr<Conversations> conversations_;
    HSZ service_ = nullptr;
    std::deque<Errand> errands_;
    Receive receive_;
    std::shared_ptr<DdeCopy*> self_ = std::make_shared<DdeCopy*>(this);
};

HDDEDATA CALLBACK IgnoreDde(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) { return nullptr; }

bool Poke(const Conversations& conversations, HCONV conversation, std::string message,
          Clock::time_point deadline) {
    const HSZ item = conversations.Name(kItem);
    const bool taken =
        DdeClientTransaction(reinterpret_cast<BYTE*>(message.data()), static_cast<DWORD>(message.size() + 1),
                             conversation, item, CF_TEXT, XTYP_POKE, MillisecondsUntil(deadline), nullptr);
    DdeFreeStringHandle(conversations.Get(), item);
    return taken;
}

}  // namespace

std::unique_ptr<RunningCopy> RunningCopy::Claim() {
    bool none = false;
    const HANDLE mutex = ClaimCopyMutex(none);
    return mutex || none ? std::make_unique<DdeCopy>(mutex) : nullptr;
}

namespace {

// Null when the running copy opens none in time.
HWND WindowOfRunningCopy(Clock::time_point deadline) {
    HWND window = nullptr;
    while (IsCopyMutexHeld() && !(window = MessageWindow::Find(kWindowClass)) && Clock::now() < deadline)
        Sleep(kRetryPauseMilliseconds);
    return window;
}

ULONG_PTR NextNumber() {
    static ULONG_PTR number = 0;
    return ++number;
}

// True when the running copy has taken the message.
bool Send(HWND window, ULONG_PTR number, const std::wstring& message, Clock::time_point deadline) {
    const DWORD process = GetCurrentProcessId();
    const Say say = Say::Make(process, number);
    if (!say) return false;
    // The window may get the message after that time, and whether it has taken it shows elsewhere.
    SendText(window, process, number, message, MillisecondsUntil(deadline));
    return !say.Get();
}

// Lets messages come in until something has arrived or the process has ended; not for ever.
template <class Arrived>
void WaitFor(HANDLE process, Clock::time_point deadline, const Arrived& arrived) {
    while (!arrived() && Clock::now() < deadline) {
        const DWORD handles = process ? 1 : 0;
        const DWORD what =
            MsgWaitForMultipleObjects(handles, &process, FALSE, MillisecondsUntil(deadline), QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        if (handles == 1 && what == WAIT_OBJECT_0) return;
    }
}

// Whoever sets `decided` first decides: here the name is poked, elsewhere that it is withdrawn.
bool Converse(const std::string& name, Clock::time_point deadline, std::atomic<bool>& decided) {
    const Conversations conversations(IgnoreDde, APPCMD_CLIENTONLY);
    const HSZ service = conversations.Name(kService), topic = conversations.Name(kTopic);
    HCONV conversation = nullptr;
    // The running copy may not have come to offering its service.
    while (IsCopyMutexHeld() && !(conversation = DdeConnect(conversations.Get(), service, topic, nullptr)) &&
           Clock::now() < deadline)
        Sleep(kRetryPauseMilliseconds);
    DdeFreeStringHandle(conversations.Get(), service);
    DdeFreeStringHandle(conversations.Get(), topic);
    if (!conversation) return false;
    const bool taken = !decided.exchange(true) && Poke(conversations, conversation, name, deadline);
    DdeDisconnect(conversation);
    return taken;
}

}  // namespace

bool HandOver(const std::wstring& fileName) {
    const Clock::time_point start = Clock::now(), deadline = start + kPatience;
    const std::wstring name = AbsoluteFileName(fileName);
    if (const HWND window = WindowOfRunningCopy(start + kPatienceForWindow))
        return Send(window, NextNumber(), name, deadline);
    // A window that does not answer would keep the conversation for ever, so that waits in a thread that can
    // be left behind.
    std::promise<bool> promise;
    std::future<bool> taken = promise.get_future();
    const auto decided = std::make_shared<std::atomic<bool>>(false);
    std::thread([promise = std::move(promise), name = ToAnsi(NameInCodePage(name)), deadline,
                 decided]() mutable {
        promise.set_value(Converse(name, deadline, *decided));
    }).detach();
    if (taken.wait_until(deadline) != std::future_status::ready && !decided->exchange(true)) return false;
    // What is poked is answered, or its conversation ended, at the deadline.
    return taken.wait_until(deadline + kPatienceForWindow) == std::future_status::ready && taken.get();
}

HandedOver HandOver(const Command& command) {
    const Clock::time_point deadline = Clock::now() + kPatience;
    if (!IsCopyMutexHeld()) return {HandedOver::NobodyThere};
    const HWND window = WindowOfRunningCopy(deadline);
    if (!window) return {IsCopyMutexHeld() ? HandedOver::Silent : HandedOver::NobodyThere};
    DWORD copy = 0;
    GetWindowThreadProcessId(window, &copy);
    AllowSetForegroundWindow(copy);  // it may have a dialog to show

    const ULONG_PTR number = NextNumber();
    std::optional<CommandAnswer> answer;
    const MessageWindow asker(AskerClass(GetCurrentProcessId(), number).c_str(),
                              [&](UINT message, WPARAM, LPARAM lParam) -> std::optional<LRESULT> {
                                  if (message != WM_COPYDATA) return std::nullopt;
                                  const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
                                  answer = CommandAnswer{static_cast<int>(data.dwData), TextOf(data)};
                                  return TRUE;
                              });
    // The copy may have fewer rights than this process.
    ChangeWindowMessageFilterEx(asker.Get(), WM_COPYDATA, MSGFLT_ALLOW, nullptr);
    if (!Send(window, number, Packed(command), deadline)) return {HandedOver::Silent};
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, copy);
    WaitFor(process, Clock::now() + kPatienceForResult, [&] { return answer.has_value(); });
    if (process) CloseHandle(process);
    if (!answer) return {HandedOver::Lost};
    return {HandedOver::Answered, std::move(*answer)};
}
