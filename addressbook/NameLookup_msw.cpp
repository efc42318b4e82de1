// Asked by window messages, so no look-up keeps the program waiting.
#include <winsock2.h>

#include <cstring>

#include "addressbook/NameLookup.h"
#include "base/basText.h"

namespace {

constexpr UINT kAnswered = WM_APP;
const wchar_t* const kWindowClass = L"KivoraNameLookup";

// Windows' sockets have to be started before the first look-up; they stay in use until the program ends.
void StartSockets() {
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
}

}  // namespace

struct NameLookup::Running {
    Answer answer;
    HWND window = nullptr;
    HANDLE task = nullptr;
    char host[MAXGETHOSTSTRUCT] = {};

    ~Running() {
        if (task) WSACancelAsyncRequest(task);
        DestroyWindow(window);
    }

    std::wstring Dotted() const {
        const auto* found = reinterpret_cast<const hostent*>(host);
        if (found->h_addrtype != AF_INET || !found->h_addr_list[0]) return {};
        in_addr address;
        std::memcpy(&address, found->h_addr_list[0], sizeof address);
        return FromAnsi(inet_ntoa(address));
    }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* running = reinterpret_cast<Running*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message != kAnswered || !running) return DefWindowProcW(window, message, wParam, lParam);
        running->task = nullptr;
        const std::wstring address = WSAGETASYNCERROR(lParam) == 0 ? running->Dotted() : L"";
        // A copy, because the look-up may be destroyed by its own answer.
        const Answer answer = running->answer;
        answer(address);
        return 0;
    }

    void Begin(const std::string& name) {
        static const ATOM registered = [] {
            WNDCLASSW type{};
            type.lpfnWndProc = OnMessage;
            type.hInstance = GetModuleHandleW(nullptr);
            type.lpszClassName = kWindowClass;
            return RegisterClassW(&type);
        }();
        window = CreateWindowW(MAKEINTATOM(registered), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        if (!name.empty()) task = WSAAsyncGetHostByName(window, kAnswered, name.c_str(), host, sizeof host);
        if (!task) PostMessageW(window, kAnswered, 0, WSAMAKEASYNCREPLY(0, WSAHOST_NOT_FOUND));
    }
};

std::shared_ptr<NameLookup::Running> NameLookup::Start(const std::wstring& name, Answer answer) {
    StartSockets();
    const std::shared_ptr<Running> started(new Running{std::move(answer)});
    started->Begin(ToAnsi(name));
    return started;
}

NameLookup::~NameLookup() = default;
