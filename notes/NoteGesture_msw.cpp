// Windows moves and sizes windows itself, once it is told that a frame was pressed.
#include <windows.h>

#include <wx/frame.h>
#include <wx/weakref.h>

#include <memory>

#include "notes/NoteGesture.h"

namespace {

using Finished = std::function<void(const wxRect& before, const wxRect& after)>;

// The gesture is over before Begin returns, so there is nothing left for its owner to end.
class FinishedGesture : public NoteGesture {};

}  // namespace

std::unique_ptr<NoteGesture> NoteGesture::Begin(WindowPlace& place, int hitTest, int smallest,
                                                Finished finished) {
    wxFrame& window = place.Window();
    window.SetMinSize(wxSize(smallest, smallest));
    const wxRect before = place.Now();
    // Other events run until the button is released, and the note may be deleted by one of them.
    const wxWeakRef<wxFrame> alive(&window);
    ReleaseCapture();
    SendMessageA(window.GetHandle(), WM_NCLBUTTONDOWN, static_cast<WPARAM>(hitTest), 0);
    if (!alive) return nullptr;
    finished(before, place.Now());
    return std::make_unique<FinishedGesture>();
}
