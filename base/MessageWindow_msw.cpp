#include "base/MessageWindow_msw.h"

MessageWindow::MessageWindow(const wchar_t* className, Answer answer) : answer_(std::move(answer)) {
    WNDCLASSW type{};
    type.lpfnWndProc = OnMessage;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = className;
    RegisterClassW(&type);  // fails when it is there already, which is as good
    window_ = CreateWindowW(className, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MessageWindow::~MessageWindow() { DestroyWindow(window_); }

HWND MessageWindow::Find(const wchar_t* className) {
    return FindWindowExW(HWND_MESSAGE, nullptr, className, nullptr);
}

LRESULT CALLBACK MessageWindow::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* own = reinterpret_cast<const MessageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (own) {
        // A copy, because the answer may destroy its window.
        const Answer answer = own->answer_;
        if (const auto result = answer(message, wParam, lParam)) return *result;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
