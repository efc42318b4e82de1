#include <gtk/gtk.h>
#include <wx/utils.h>

#include <cmath>
#include <memory>
#include <utility>

#include "model/NoteLayout.h"
#include "notes/NoteGesture.h"

namespace {

struct FreeEvent {
    void operator()(GdkEvent* event) const { gdk_event_free(event); }
};

// The event that is being handled.
std::unique_ptr<GdkEvent, FreeEvent> CurrentEvent() {
    return std::unique_ptr<GdkEvent, FreeEvent>(gtk_get_current_event());
}

wxPoint Rounded(double x, double y) {
    return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

// Where on the screen the pointer was when the event happened. The pointer may be elsewhere by now, and the
// event's own coordinates are those of a window that moves.
wxPoint EventPosition() {
    const auto event = CurrentEvent();
    double x = 0, y = 0;
    if (!event || !gdk_event_get_root_coords(event.get(), &x, &y)) return wxGetMousePosition();
    return Rounded(x, y);
}

// The window as it was pressed. It may be on its way elsewhere, but what the user has taken hold of is the
// point that was under the pointer.
wxRect PressedRect(WindowPlace& place) {
    wxRect rect = place.Now();
    const auto event = CurrentEvent();
    double x = 0, y = 0;
    if (event && gdk_event_get_coords(event.get(), &x, &y)) rect.SetPosition(EventPosition() - Rounded(x, y));
    return rect;
}

class MouseGesture : public NoteGesture {
  public:
    MouseGesture(WindowPlace& place, int hitTest, int smallest,
                 std::function<void(const wxRect&, const wxRect&)> finished)
        : place_(place),
          window_(place.Window()),
          hitTest_(hitTest),
          smallest_(smallest),
          before_(PressedRect(place)),
          after_(before_),
          press_(EventPosition()),
          finished_(std::move(finished)) {
        window_.Bind(wxEVT_MOTION, &MouseGesture::OnMotion, this);
        window_.Bind(wxEVT_LEFT_UP, &MouseGesture::OnUp, this);
        window_.Bind(wxEVT_MOUSE_CAPTURE_LOST, &MouseGesture::OnLost, this);
        window_.CaptureMouse();
    }

    ~MouseGesture() override { Release(); }

  private:
    void OnMotion(wxMouseEvent&) { Follow(); }
    void OnUp(wxMouseEvent&) {
        Follow();
        Finish();
    }
    void OnLost(wxMouseCaptureLostEvent&) { Finish(); }

    void Follow() {
        const wxPoint way = EventPosition() - press_;
        wxRect rect = before_;
        if (hitTest_ == HT_CAPTION) {
            rect.Offset(way);
        } else {
            Stretch(rect.x, rect.width, way.x,
                    hitTest_ == HT_LEFT || hitTest_ == HT_TOPLEFT || hitTest_ == HT_BOTTOMLEFT,
                    hitTest_ == HT_RIGHT || hitTest_ == HT_BOTTOMRIGHT);
            Stretch(rect.y, rect.height, way.y, hitTest_ == HT_TOP || hitTest_ == HT_TOPLEFT,
                    hitTest_ == HT_BOTTOM || hitTest_ == HT_BOTTOMLEFT || hitTest_ == HT_BOTTOMRIGHT);
        }
        if (rect == after_) return;
        after_ = rect;
        place_.Ask(rect);
    }

    // Moves the near or the far end of one dimension; the other end stays where it is.
    void Stretch(int& start, int& length, int way, bool near, bool far) const {
        const int end = start + length;
        if (near) {
            length = std::max(length - way, smallest_);
            start = end - length;
        } else if (far) {
            length = std::max(length + way, smallest_);
        }
    }

    void Finish() {
        Release();
        if (const auto finished = std::exchange(finished_, nullptr)) finished(before_, after_);
    }

    void Release() {
        if (released_) return;
        released_ = true;
        window_.Unbind(wxEVT_MOTION, &MouseGesture::OnMotion, this);
        window_.Unbind(wxEVT_LEFT_UP, &MouseGesture::OnUp, this);
        window_.Unbind(wxEVT_MOUSE_CAPTURE_LOST, &MouseGesture::OnLost, this);
        if (window_.HasCapture()) window_.ReleaseMouse();
    }

    WindowPlace& place_;
    wxFrame& window_;
    const int hitTest_, smallest_;
    const wxRect before_;
    wxRect after_;
    const wxPoint press_;
    std::function<void(const wxRect&, const wxRect&)> finished_;
    bool released_ = false;
};

}  // namespace

std::unique_ptr<NoteGesture> NoteGesture::Begin(WindowPlace& place, int hitTest, int smallest,
                                                std::function<void(const wxRect&, const wxRect&)> finished) {
    return std::make_unique<MouseGesture>(place, hitTest, smallest, std::move(finished));
}
