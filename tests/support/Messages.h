#pragma once
// Writes message boxes down instead of showing them and answers them, for as long as it lives.

#include <functional>
#include <string>
#include <vector>

#include "dialogs/Message.h"

class MessageRecorder {
  public:
    MessageRecorder() {
        SetMessageObserver([this](const std::wstring& text, int flags, const std::wstring& title) {
            messages.push_back(title + L"|" + std::to_wstring(flags) + L"|" + text);
            if (onMessage) onMessage();
            return answer;
        });
    }
    ~MessageRecorder() { SetMessageObserver({}); }
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    std::vector<std::wstring> messages;  // "title|flags|text"
    std::function<void()> onMessage;     // while it is open
    MessageAnswer answer = MessageAnswer::OK;
};
