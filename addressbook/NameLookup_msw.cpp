// Asked by window messages, so no look-up keeps the program waiting.
#include <winsock2.h>

#include <cstring>

#include "addressbook/NameLookup.h"
#include "base/MessageWindow_msw.h"
#include "base/Text.h"

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
    MessageWindow window{kWindowClass,
                         [this](UINT message, WPARAM, LPARAM lParam) { return OnMessage(message, lParam); }};
    HANDLE task = nullptr;
    char host[MAXGETHOSTSTRUCT] = {};

    ~Running() {
        if (task) WSACancelAsyncRequest(task);
    }

    std::vector<std::wstring> Dotted() const {
        const auto* found = reinterpret_cast<const hostent*>(host);
        std::vector<std::wstring> addresses;
        for (char** each = found->h_addr_list; found->h_addrtype == AF_INET && *each; ++each) {
            in_addr address;
            std::memcpy(&address, *each, sizeof address);
            addresses.push_back(FromAnsi(inet_ntoa(address)));
        }
        return addresses;
    }

    std::optional<LRESULT> OnMessage(UINT message, LPARAM lParam) {
        if (message != kAnswered) return std::nullopt;
        task = nullptr;
        const std::vector<std::wstring> addresses =
            WSAGETASYNCERROR(lParam) == 0 ? Dotted() : std::vector<std::wstring>();
        // A copy, because the look-up may be destroyed by its own answer.
        const Answer told = answer;
        told(addresses);
        return 0;
    }

    void Begin(const std::string& name) {
        if (!name.empty())
            task = WSAAsyncGetHostByName(window.Get(), kAnswered, name.c_str(), host, sizeof host);
        if (!task) PostMessageW(window.Get(), kAnswered, 0, WSAMAKEASYNCREPLY(0, WSAHOST_NOT_FOUND));
    }
};

std::shared_ptr<NameLookup::Running> NameLookup::Start(const std::wstring& name, Answer answer) {
    StartSockets();
    const std::shared_ptr<Running> started(new Running{std::move(answer)});
    started->Begin(ToAnsi(name));
    return started;
}

NameLookup::~NameLookup() = default;
