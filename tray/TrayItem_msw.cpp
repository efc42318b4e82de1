#include <windows.h>

#include <shellapi.h>
#include <wx/icon.h>
#include <wx/utils.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "base/Text.h"
#include "tray/TipText.h"
#include "tray/TrayItem.h"

namespace {

const wchar_t* const kWindowClass = L"Kivora.Notification";
constexpr std::size_t kLongestTip = 63;
// The message by which Windows tells of the mouse on the icon; lParam is the number of the mouse's own
// message.
constexpr UINT kCallback = WM_MOUSEMOVE;
// An order to the shell waits until that has time for it. So icons are put up and taken down one by one
// between other events: many notes are off the screen at once when they are minimized, and there again when
// that is undone. While the shell is busy, as it is when the user logs on, it takes no icons. It is asked
// again, less and less often.
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

// All icons tell what happens to them to one window, in which their numbers are those of their timers too: a
// shell may look through all windows of all programs whenever one comes or goes.
class MswTrayItem : public TrayItem {
  public:
    MswTrayItem(const wxBitmapBundle& picture, const std::wstring& toolTip,
                std::function<void(TrayMessage)> report)
        : report_(std::move(report)) {
        items_[id_] = this;
        Fill(picture, toolTip);
        SetTimer(window_, id_, 0, nullptr);
    }

    ~MswTrayItem() override {
        items_.erase(id_);
        if (!asked_) {
            KillTimer(window_, id_);
            return;
        }
        leaving_.ids.insert(id_);
        SetTimer(window_, id_, 0, nullptr);
    }

    void Modify(const wxBitmapBundle& picture, const std::wstring& toolTip) override {
        Fill(picture, toolTip);
        if (asked_) Tell(NIM_MODIFY);
    }

    std::optional<wxRect> Place() const override { return std::nullopt; }  // it may be hidden

  private:
    // Icons of which there are no items any more. What is left of them at the end goes with the program.
    struct Leaving {
        ~Leaving() {
            while (!ids.empty()) TakeDown(*ids.begin());
        }
        void TakeDown(UINT id) {
            NOTIFYICONDATAA record{};
            record.cbSize = NOTIFYICONDATAA_V1_SIZE;
            record.hWnd = Window();
            record.uID = id;
            ids.erase(id);
            Shell_NotifyIconA(NIM_DELETE, &record);
        }
        std::set<UINT> ids;
    };

    static HWND Window() {
        static const HWND window = [] {
            WNDCLASSW type{};
            type.lpfnWndProc = OnMessage;
            type.hInstance = GetModuleHandleW(nullptr);
            type.lpszClassName = kWindowClass;
            RegisterClassW(&type);
            const HWND created = CreateWindowW(kWindowClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                               type.hInstance, nullptr);
            // A copy that was started with an administrator's rights hears the shell and the other copies
            // too.
            for (const UINT message : {AreaCreated(), kCallback})
                ChangeWindowMessageFilterEx(created, message, MSGFLT_ALLOW, nullptr);
            return created;
        }();
        return window;
    }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        const auto found = items_.find(static_cast<UINT>(wParam));
        if (message == kCallback && found != items_.end()) {
            // A copy, because the item may be destroyed by its own report.
            const std::function<void(TrayMessage)> report = found->second->report_;
            if (const auto meaning = MessageOf(static_cast<UINT>(lParam))) report(*meaning);
            return 0;
        }
        if (message == WM_TIMER) {
            KillTimer(window, wParam);
            if (found != items_.end())
                found->second->PutUp();
            else
                leaving_.TakeDown(static_cast<UINT>(wParam));
        }
        if (message == AreaCreated()) {
            for (const auto& [id, item] : items_) SetTimer(window, id, 0, nullptr);
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    // The first version of the record, which every Windows knows.
    void Fill(const wxBitmapBundle& picture, const std::wstring& toolTip) {
        icon_ = IconOf(picture);
        record_ = {};
        record_.cbSize = NOTIFYICONDATAA_V1_SIZE;
        record_.hWnd = window_;
        record_.uID = id_;
        record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
        record_.uCallbackMessage = kCallback;
        record_.hIcon = icon_.IsOk() ? icon_.GetHICON() : nullptr;
        const std::string tip = TipOf(toolTip);
        std::copy(tip.begin(), tip.end(), record_.szTip);
    }

    // What the shell did not confirm in time may be there nevertheless.
    void PutUp() {
        if (std::exchange(asked_, true) && Tell(NIM_MODIFY)) return;
        if (!Tell(NIM_ADD)) Retry();
    }

    void Retry() {
        SetTimer(window_, id_, pause_, nullptr);
        pause_ = std::min(2 * pause_, kLongestPauseMilliseconds);
    }

    bool Tell(DWORD message) { return Shell_NotifyIconA(message, &record_); }

    static inline std::map<UINT, MswTrayItem*> items_;  // by their numbers
    static inline Leaving leaving_;
    static inline UINT lastId_ = 0;

    const HWND window_ = Window();
    const UINT id_ = ++lastId_;
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
