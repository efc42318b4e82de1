#include <gtk/gtk.h>
#include <wx/utils.h>

#include <cmath>
#include <utility>

#include "model/NoteLayout.h"
#include "notes/NoteGesture.h"

namespace {

// Where on the screen the pointer was when the event happened that is being handled. The pointer may be
// elsewhere by now, and the event's own coordinates are those of a window that moves.
wxPoint EventPosition() {
    GdkEvent* event = gtk_get_current_event();
    double x = 0, y = 0;
    const bool known = event && gdk_event_get_root_coords(event, &x, &y);
    if (event) gdk_event_free(event);
    if (!known) return wxGetMousePosition();
    return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

class MouseGesture : public NoteGesture {
  public:
    MouseGesture(wxFrame& window, int hitTest, int smallest,
                 std::function<void(const wxRect&, const wxRect&)> finished)
        : window_(window),
          hitTest_(hitTest),
          smallest_(smallest),
          before_(window.GetRect()),
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
        window_.SetSize(rect);
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

    wxFrame& window_;
    const int hitTest_, smallest_;
    const wxRect before_;
    wxRect after_;
    const wxPoint press_;
    std::function<void(const wxRect&, const wxRect&)> finished_;
    bool released_ = false;
};

}  // namespace

std::unique_ptr<NoteGesture> NoteGesture::Begin(wxFrame& window, int hitTest, int smallest,
                                                std::function<void(const wxRect&, const wxRect&)> finished) {
    return std::make_unique<MouseGesture>(window, hitTest, smallest, std::move(finished));
}
