#pragma once
// Where a window is to stand, for whose window manager may answer late. A window manager moves and sizes a
// window some time after it was asked to; until then the window stands where an earlier request has put it,
// and whoever takes that for its place loses the requests under way. Plain numbers, no window; pixels of the
// whole desktop.

#include <optional>
#include <vector>

#include "model/NoteLayout.h"
#include "model/ScreenPlace.h"

class AskedPlaces {
  public:
    // The window has been asked to stand here.
    void Ask(const PixelRect& rect);

    // Where the window stands once all requests are answered. `shown`: where it stands on the screen at this
    // moment, nothing while it is not there. As long as that is a place of an earlier request, the last
    // request is what counts; any other place is the choice of the window manager, or of the user by its
    // help, and counts itself. The same goes for the size.
    PixelRect Now(const std::optional<PixelRect>& shown);

  private:
    // Requests that may be unanswered, the oldest first; at the beginning the one that was answered last.
    using Requests = std::vector<PixelPoint>;
    static void Add(Requests& requests, PixelPoint request);
    static void Answered(Requests& requests, PixelPoint answer);

    Requests places_{{}}, sizes_{{}};  // never empty
};
