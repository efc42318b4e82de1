#pragma once
// What only the platform's window system can do for the popup menu.

#include <wx/bmpbndl.h>

#include <optional>

class wxMenu;
class wxWindow;

// Opens the menu and lets events run until it has closed. It opens at a place on the screen, ready for the
// keyboard; without one at the mouse, whichever window that is over. The id of the chosen item, or nothing.
// Quitting the program closes it.
std::optional<int> OpenPopupMenu(wxWindow& owner, wxMenu& menu, std::optional<wxPoint> at);

// Appends an item that only shows a picture and cannot be chosen. height: device-independent pixels.
void AppendPicture(wxMenu& menu, int id, const wxBitmapBundle& picture, int height);
