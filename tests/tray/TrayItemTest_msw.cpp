#include <windows.h>

#include <gtest/gtest.h>
#include <shellapi.h>

#include <string>
#include <utility>
#include <vector>

#include "res/Resources.h"
#include "tests/support/Events.h"
#include "tray/TrayItem.h"

namespace {

using namespace std::chrono_literals;

// A shell's notification area that gets the orders before the real one does.
class Shell {
  public:
    Shell() {
        WNDCLASSW type{};
        type.lpfnWndProc = OnMessage;
        type.hInstance = GetModuleHandleW(nullptr);
        type.lpszClassName = L"Shell_TrayWnd";
        RegisterClassW(&type);
        window_ = CreateWindowW(type.lpszClassName, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                type.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowPos(window_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
    }
    ~Shell() {
        DestroyWindow(window_);
        UnregisterClassW(L"Shell_TrayWnd", GetModuleHandleW(nullptr));
    }

    // What shell32 makes of the program's record under Wine, as far as it is used here.
    struct Record {
        LONG window;
        UINT id, flags, callback;
        WCHAR tip[128];
    };

    // What a shell does when the mouse does something on the icon.
    void TellOfMouse(UINT message) const {
        const auto window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(icon.window));
        SendMessageW(window, icon.callback, icon.id, static_cast<LPARAM>(message));
    }

    bool busy = false;   // refuses every order
    bool there = false;  // the icon
    std::vector<DWORD> orders;
    Record icon{};  // of the last order

  private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* shell = reinterpret_cast<Shell*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!shell || message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        return shell->Obey(static_cast<DWORD>(data->dwData), *static_cast<const Record*>(data->lpData));
    }

    bool Obey(DWORD order, const Record& record) {
        orders.push_back(order);
        icon = record;
        if (busy || there == (order == NIM_ADD)) return false;
        there = order != NIM_DELETE;
        return true;
    }

    HWND window_;
};

class TrayItemOnWindows : public testing::Test {
  protected:
    std::unique_ptr<TrayItem> Add() {
        return TrayItem::Add(LoadPicture(kFirstNoteIcon), L"Notiz", [](TrayMessage) {}, {});
    }

    Shell shell_;
};

TEST_F(TrayItemOnWindows, ComesWhenABusyShellHasTimeForIt) {
    shell_.busy = true;
    const auto item = Add();
    EXPECT_TRUE(RunUntil([&] { return shell_.orders.size() > 1; }));
    EXPECT_FALSE(shell_.there);
    shell_.busy = false;
    EXPECT_TRUE(RunUntil([&] { return shell_.there; }));
    // Now that it is there nobody is asked any more.
    const std::size_t orders = shell_.orders.size();
    RunEvents(1s);
    EXPECT_EQ(shell_.orders.size(), orders);
}

TEST_F(TrayItemOnWindows, TellsWhatTheMouseDoesOnIt) {
    const std::pair<UINT, TrayMessage> messages[] = {
        {WM_MOUSEMOVE, TrayMessage::MouseMove},
        {WM_LBUTTONDOWN, TrayMessage::LeftDown},
        {WM_LBUTTONUP, TrayMessage::LeftUp},
        {WM_LBUTTONDBLCLK, TrayMessage::LeftDoubleClick},
        {WM_RBUTTONDOWN, TrayMessage::RightDown},
        {WM_RBUTTONUP, TrayMessage::RightUp},
        {WM_RBUTTONDBLCLK, TrayMessage::RightDoubleClick},
        {WM_CONTEXTMENU, TrayMessage::ContextMenu},
    };
    std::vector<TrayMessage> expected, told;
    auto item = TrayItem::Add(LoadPicture(kFirstNoteIcon), L"Käse",
                              [&](TrayMessage message) { told.push_back(message); }, {});
    EXPECT_TRUE(RunUntil([&] { return shell_.there; }));
    EXPECT_EQ(shell_.icon.flags, UINT{NIF_MESSAGE | NIF_ICON | NIF_TIP});
    EXPECT_EQ(shell_.icon.tip, std::wstring(L"Käse"));
    for (const auto& [message, meaning] : messages) {
        shell_.TellOfMouse(message);
        expected.push_back(meaning);
    }
    shell_.TellOfMouse(WM_MBUTTONDOWN);
    EXPECT_EQ(told, expected);
    item->Modify(LoadPicture(kFirstNoteIcon), L"Brot");
    EXPECT_EQ(shell_.icon.tip, std::wstring(L"Brot"));
    item.reset();
    EXPECT_TRUE(RunUntil([&] { return !shell_.there; }));
}

// What was not confirmed in time may be there nevertheless: then it is not added a second time.
TEST_F(TrayItemOnWindows, IsModifiedBeforeItIsAddedAgain) {
    const auto item = Add();
    EXPECT_TRUE(RunUntil([&] { return shell_.there; }));
    const HWND window = FindWindowW(L"Kivora.Notification", nullptr);
    const UINT created = RegisterWindowMessageW(L"TaskbarCreated");
    SendMessageW(window, created, 0, 0);
    const std::vector<DWORD> modified = {NIM_ADD, NIM_MODIFY};
    EXPECT_TRUE(RunUntil([&] { return shell_.orders == modified; }));
    shell_.there = false;
    SendMessageW(window, created, 0, 0);
    const std::vector<DWORD> addedAgain = {NIM_ADD, NIM_MODIFY, NIM_MODIFY, NIM_ADD};
    EXPECT_TRUE(RunUntil([&] { return shell_.orders == addedAgain; }));
}

TEST_F(TrayItemOnWindows, ComesAgainWhenAnotherCopyIsStarted) {
    const auto item = Add();
    EXPECT_TRUE(RunUntil([&] { return shell_.there; }));
    shell_.there = false;
    TrayItem::RemindOtherCopies();
    EXPECT_TRUE(RunUntil([&] { return shell_.there; }));
}

}  // namespace
