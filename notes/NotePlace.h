#pragma once
// Where note windows go on the screens, in pixels of the whole desktop.

#include <wx/gdicmn.h>

#include <vector>

#include "model/Note.h"
#include "model/ScreenPlace.h"

class wxWindow;

inline wxRect ToWx(const PixelRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }
inline PixelRect FromWx(const wxRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

// Where a new window of that size goes on the main screen so that it covers as little as possible of these
// others and of the dialogs that are open; from the upper left on.
wxPoint NextPlace(const wxSize& size, const std::vector<wxRect>& others);

// The window's rectangle for a note's place, within what X11 and Windows can name.
wxRect NotePixels(const wxWindow& window, const NotePlace& place);

// As large as a window is shown at most: all screens together, or some more where they are very small.
wxRect LargestRect();

// The rectangle as the screens of now can show it: no larger than all of them, from their left edge when it
// would be wider, and on the nearest one where too little of it would be visible.
wxRect OnScreens(wxRect rect);
