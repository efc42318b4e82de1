#pragma once
// Writes message boxes down instead of showing them and answers them, for as long as it lives.

#include <string>
#include <vector>

#include "dialogs/Message.h"

class MessageRecorder {
  public:
    MessageRecorder() {
        SetMessageObserver([this](const std::wstring& text, int flags, const std::wstring& title) {
            messages.push_back(title + L"|" + std::to_wstring(flags) + L"|" + text);
            return answer;
        });
    }
    ~MessageRecorder() { SetMessageObserver({}); }
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    std::vector<std::wstring> messages;  // "title|flags|text"
    MessageAnswer answer = MessageAnswer::OK;
};
