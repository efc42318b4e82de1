#include <windows.h>

#include <shellapi.h>
#include <wx/icon.h>
#include <wx/utils.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "tray/TipText.h"
#include "tray/TrayItem.h"

namespace {

const wchar_t* const kWindowClass = L"Kivora.Notification";
constexpr UINT kIconId = 1;
constexpr std::size_t kLongestTip = 63;
// The message by which Windows tells of the mouse on the icon; lParam is the number of the mouse's own
// message.
constexpr UINT kCallback = WM_MOUSEMOVE;
// An order to the shell waits until that has time for it. So icons are put up one by one between other
// events: many notes are off the screen at once when they are minimized. While the shell is busy, as it is
// when the user logs on, it takes no icons. It is asked again, less and less often.
constexpr UINT_PTR kRetry = 1;
constexpr UINT kFirstPauseMilliseconds = 250;
constexpr UINT kLongestPauseMilliseconds = 60'000;

std::optional<TrayMessage> MessageOf(UINT message) {
    switch (message) {
        case WM_MOUSEMOVE:
            return TrayMessage::MouseMove;
        case WM_LBUTTONDBLCLK:
            return TrayMessage::LeftDoubleClick;
        case WM_RBUTTONDBLCLK:
            return TrayMessage::RightDoubleClick;
        case WM_LBUTTONDOWN:
            return TrayMessage::LeftDown;
        case WM_RBUTTONDOWN:
            return TrayMessage::RightDown;
        case WM_LBUTTONUP:
            return TrayMessage::LeftUp;
        case WM_RBUTTONUP:
            return TrayMessage::RightUp;
        case WM_CONTEXTMENU:
            return TrayMessage::ContextMenu;
        default:
            return std::nullopt;
    }
}

// What Explorer sends to every window when it has started again and its notification area is empty.
UINT AreaCreated() {
    static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
    return message;
}

// Windows 11, which is build 22000, is the first to show "&" as it is.
std::string TipOf(const std::wstring& toolTip) {
    static const bool asItIs = wxCheckOsVersion(10, 0, 22000);
    return ToAnsi(asItIs ? toolTip : WithMarkedAmpersands(toolTip, kLongestTip)).substr(0, kLongestTip);
}

wxIcon IconOf(const wxBitmapBundle& picture) {
    wxIcon icon;
    if (picture.IsOk())
        icon.CopyFromBitmap(
            picture.GetBitmap(wxSize(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON))));
    return icon;
}

class MswTrayItem : public TrayItem {
  public:
    MswTrayItem(const wxBitmapBundle& picture, const std::wstring& toolTip,
                std::function<void(TrayMessage)> report)
        : window_(CreateWindowW(WindowClass(), L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr)),
          report_(std::move(report)) {
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        // A copy that was started with an administrator's rights hears the shell and the other copies too.
        for (const UINT message : {AreaCreated(), kCallback})
            ChangeWindowMessageFilterEx(window_, message, MSGFLT_ALLOW, nullptr);
        Fill(picture, toolTip);
        SetTimer(window_, kRetry, 0, nullptr);
    }

    ~MswTrayItem() override {
        if (asked_) Tell(NIM_DELETE);
        DestroyWindow(window_);
    }

    void Modify(const wxBitmapBundle& picture, const std::wstring& toolTip) override {
        Fill(picture, toolTip);
        if (asked_) Tell(NIM_MODIFY);
    }

    std::optional<wxRect> Place() const override { return std::nullopt; }  // it may be hidden

  private:
    static const wchar_t* WindowClass() {
        static const ATOM registered = [] {
            WNDCLASSW type{};
            type.lpfnWndProc = OnMessage;
            type.hInstance = GetModuleHandleW(nullptr);
            type.lpszClassName = kWindowClass;
            return RegisterClassW(&type);
        }();
        return MAKEINTATOM(registered);
    }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* item = reinterpret_cast<MswTrayItem*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (item && message == kCallback && wParam == kIconId) {
            // A copy, because the item may be destroyed by its own report.
            const std::function<void(TrayMessage)> report = item->report_;
            if (const auto meaning = MessageOf(static_cast<UINT>(lParam))) report(*meaning);
            return 0;
        }
        if (item && (message == AreaCreated() || (message == WM_TIMER && wParam == kRetry))) item->PutUp();
        return DefWindowProcW(window, message, wParam, lParam);
    }

    // The first version of the record, which every Windows knows.
    void Fill(const wxBitmapBundle& picture, const std::wstring& toolTip) {
        icon_ = IconOf(picture);
        record_ = {};
        record_.cbSize = NOTIFYICONDATAA_V1_SIZE;
        record_.hWnd = window_;
        record_.uID = kIconId;
        record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
        record_.uCallbackMessage = kCallback;
        record_.hIcon = icon_.IsOk() ? icon_.GetHICON() : nullptr;
        const std::string tip = TipOf(toolTip);
        std::copy(tip.begin(), tip.end(), record_.szTip);
    }

    // What the shell did not confirm in time may be there nevertheless.
    void PutUp() {
        KillTimer(window_, kRetry);
        if (std::exchange(asked_, true) && Tell(NIM_MODIFY)) return;
        if (!Tell(NIM_ADD)) Retry();
    }

    void Retry() {
        SetTimer(window_, kRetry, pause_, nullptr);
        pause_ = std::min(2 * pause_, kLongestPauseMilliseconds);
    }

    bool Tell(DWORD message) { return Shell_NotifyIconA(message, &record_); }

    const HWND window_;
    std::function<void(TrayMessage)> report_;
    wxIcon icon_;
    NOTIFYICONDATAA record_{};
    bool asked_ = false;  // at least once
    UINT pause_ = kFirstPauseMilliseconds;
};

}  // namespace

std::unique_ptr<TrayItem> TrayItem::Add(const wxBitmapBundle& picture, const std::wstring& toolTip,
                                        std::function<void(TrayMessage)> report, const TrayMenu&) {
    return std::make_unique<MswTrayItem>(picture, toolTip, std::move(report));
}

void TrayItem::TakeDrops(std::function<std::unique_ptr<wxDropTarget>()>) {}  // there is no such window

void TrayItem::MenusChanged() {}  // here the program opens its menus itself

// They do what they do when the shell has started again.
void TrayItem::RemindOtherCopies() {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kWindowClass, nullptr)))
        PostMessageW(window, AreaCreated(), 0, 0);
}
