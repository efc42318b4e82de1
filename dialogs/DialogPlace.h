#pragma once
// Where a dialog appears, and the size that the user gave to the last one of its kind. In pixels of the
// screen.

#include <wx/gdicmn.h>

#include <optional>

class wxDialog;

// The display on which a dialog appears that is to be near a rectangle, without what the desktop keeps for
// itself, such as a task bar. Without a rectangle the first display.
wxRect DialogArea(const std::optional<wxRect>& beside);

// Where a dialog of this size stands: beside the rectangle, with a gap between them, else below or above it;
// without a rectangle in the middle. Within the area as far as it fits there.
wxPoint DialogPlace(const wxSize& size, const wxRect& area, const std::optional<wxRect>& beside, int gap);

// Keeps the size that the dialog has, within its frame, for the next one of its class. To be called while it
// is on the screen.
void KeepSize(const wxDialog& dialog);
// Gives it that size, or leaves it its own when there was none, and makes it fit into the area.
void RestoreSize(wxDialog& dialog, const wxRect& area);
