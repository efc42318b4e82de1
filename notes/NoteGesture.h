#pragma once
// Moving or sizing a window by the mouse, from the press of the left button to its release.

#include <functional>
#include <memory>

#include "notes/WindowPlace.h"

class NoteGesture {
  public:
    virtual ~NoteGesture() = default;  // ends the gesture without a report

    // Takes a press on the window over as if it had hit the part of a frame that hitTest names. The window
    // follows the pointer and gets no narrower or lower than `smallest` pixels. `finished` gets the window's
    // rectangles on the screen before and after, once, also when nothing moved. The place and its
    // window must outlive the gesture.
    static std::unique_ptr<NoteGesture> Begin(
        WindowPlace& place, int hitTest, int smallest,
        std::function<void(const wxRect& before, const wxRect& after)> finished);
};
