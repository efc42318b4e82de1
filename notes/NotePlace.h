#pragma once
// Where note windows go on the screens, in pixels of the whole desktop.

#include <wx/gdicmn.h>

#include "model/Note.h"
#include "model/ScreenPlace.h"

class wxWindow;

inline wxRect ToWx(const PixelRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }
inline PixelRect FromWx(const wxRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

// Where the next new note goes: each a step beside the one before, in the upper left of the main screen.
wxPoint NextPlace();

// The window's rectangle for a note's place, within what X11 and Windows can name.
wxRect NotePixels(const wxWindow& window, const NotePlace& place);

// As large as a window is shown at most: all screens together, or some more where they are very small.
wxRect LargestRect();

// The rectangle as the screens of now can show it: no larger than all of them, from their left edge when it
// would be wider, and on the nearest one where too little of it would be visible.
wxRect OnScreens(wxRect rect);
