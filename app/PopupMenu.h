#pragma once
// What only the platform's window system can do for the popup menu.

#include <wx/bmpbndl.h>

#include <optional>

class wxMenu;
class wxWindow;

// Opens the menu at the mouse, whichever window that is over, and lets events run until it has closed. The id
// of the chosen item, or nothing. Quitting the program closes it.
std::optional<int> PopupMenuAtPointer(wxWindow& owner, wxMenu& menu);

// Appends an item that only shows a picture and cannot be chosen. height: pixels.
void AppendPicture(wxMenu& menu, int id, const wxBitmapBundle& picture, int height);
