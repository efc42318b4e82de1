#include "notes/WindowPlace.h"

#include "notes/NotePlace.h"
#include "notes/NoteWindow.h"

void WindowPlace::Ask(const wxRect& rect) {
    asked_.Ask(FromWx(rect));
    PlaceWindow(window_, rect);
}

wxRect WindowPlace::Now() {
    const std::optional<wxRect> shown = RectOnScreen(window_);
    return ToWx(asked_.Now(shown ? std::optional(FromWx(*shown)) : std::nullopt));
}
