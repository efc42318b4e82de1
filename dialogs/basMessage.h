#pragma once
// The one function that shows message boxes. Texts, flags and titles are the program's own; tests put an
// observer in the box's place and read what would have been shown.

#include <functional>
#include <string>

// Flags: 16 critical, 48 exclamation, 64 information; +4 for the buttons Yes and No instead of OK.
constexpr int kCritical = 16;
constexpr int kExclamation = 48;
constexpr int kInformation = 64;
constexpr int kYesNo = 4;

enum class MessageAnswer { OK = 1, Yes = 6, No = 7 };

// Shows the box and lets events run until it is answered. Closing it or Esc answers OK, or No where that is a
// choice; so does quitting the program.
MessageAnswer ShowMessage(const std::wstring& text, int flags, const std::wstring& title);

using MessageObserver =
    std::function<MessageAnswer(const std::wstring& text, int flags, const std::wstring& title)>;

// From now on the observer answers instead of the user; an empty one gives the boxes back to the screen.
void SetMessageObserver(MessageObserver observer);
