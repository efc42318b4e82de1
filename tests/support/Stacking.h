#pragma once
// How high windows stand on the screen.

class wxTopLevelWindow;

// The platform still has the window and shows it.
bool IsOnScreen(const wxTopLevelWindow& window);

// Both are on the screen, and the first is in front of the other.
bool StandsAbove(const wxTopLevelWindow& upper, const wxTopLevelWindow& lower);

// The window stays above the windows of other programs.
bool IsKeptAbove(const wxTopLevelWindow& window);

// On Linux: the window manager keeps this state, such as _NET_WM_STATE_ABOVE, with the window.
bool HasState(const wxTopLevelWindow& window, const char* state);
