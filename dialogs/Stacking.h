#pragma once
// How high a window stands, and who gets the keyboard of one that goes. No call gives it the keyboard.

#include <vector>

class wxTopLevelWindow;

// Keeps the window above all that are not kept so, those of other programs too, or lets it be one of these.
void KeepAbove(wxTopLevelWindow& window, bool above);

// Puts windows on the screen, which are kept above, in front of all others, the last one foremost.
void PutInFront(const std::vector<wxTopLevelWindow*>& windows);

// Whether Windows or the window manager gives the keyboard of a dialog that goes to the window below it, as
// far as is known. Else the program has to.
bool GivesKeyboardBack();
