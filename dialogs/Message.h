#pragma once
// The one function that shows message boxes. Texts, flags and titles are the program's own; tests put an
// observer in the box's place and read what would have been shown.

#include <functional>
#include <string>

#include "dialogs/MessageFlags.h"

// Shows the box and lets events run until it is answered. Closing it or Esc answers OK, or No where that is a
// choice; so does quitting the program.
MessageAnswer ShowMessage(const std::wstring& text, int flags, const std::wstring& title);

// The same for what its user has not asked for and nobody waits for: shows the box and returns at once. No
// dialog that is open has to wait until it is answered.
void TellMessage(const std::wstring& text, int flags, const std::wstring& title);

using MessageObserver =
    std::function<MessageAnswer(const std::wstring& text, int flags, const std::wstring& title)>;

// From now on the observer answers instead of the user; an empty one gives the boxes back to the screen.
void SetMessageObserver(MessageObserver observer);
