#pragma once
// Where a window without a frame stands on the desktop, and the one way to place it elsewhere. wxWidgets' own
// GetPosition and GetSize are what the last event said, which may be long ago.

#include <wx/frame.h>

#include "model/AskedPlaces.h"

class WindowPlace {
  public:
    // The window, which must live longer, has been created by the first call of Ask or Now.
    explicit WindowPlace(wxFrame& window) : window_(window) {}

    // Asks the window, shown or not, to stand here, in pixels of the whole desktop.
    void Ask(const wxRect& rect);
    // Where it stands, in the same pixels, as soon as everything asked for has been done.
    wxRect Now();

    wxFrame& Window() const { return window_; }

  private:
    wxFrame& window_;
    AskedPlaces asked_;
};
