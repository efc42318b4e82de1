#pragma once
// A window that is never seen and only gets messages: from Windows, from the program, from its other copies.

#include <windows.h>

#include <functional>
#include <optional>

class MessageWindow {
  public:
    // Gets each message; what it gives is the answer to it, and for nothing Windows answers.
    using Answer = std::function<std::optional<LRESULT>(UINT message, WPARAM wParam, LPARAM lParam)>;

    // Windows of other programs find it by the name of its class. Belongs to the thread that makes it.
    MessageWindow(const wchar_t* className, Answer answer);
    ~MessageWindow();
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;

    HWND Get() const { return window_; }

    // One of that class, of any program; null when there is none.
    static HWND Find(const wchar_t* className);

  private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    Answer answer_;
    HWND window_;
};
