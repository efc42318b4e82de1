#include "tray/TrayMouse_unix.h"

#include <memory>

namespace {

bool DoubleClickFollows(const GdkEventButton& press) {
    const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> next(
        gdk_display_peek_event(gdk_window_get_display(press.window)), gdk_event_free);
    return next && next->type == GDK_2BUTTON_PRESS && next->button.button == press.button;
}

}  // namespace

std::optional<TrayMessage> MessageOf(const GdkEventButton& event) {
    const bool left = event.button == GDK_BUTTON_PRIMARY;
    if (!left && event.button != GDK_BUTTON_SECONDARY) return std::nullopt;
    switch (event.type) {
        case GDK_BUTTON_PRESS:
            if (DoubleClickFollows(event)) return std::nullopt;
            return left ? TrayMessage::LeftDown : TrayMessage::RightDown;
        case GDK_2BUTTON_PRESS:
            return left ? TrayMessage::LeftDoubleClick : TrayMessage::RightDoubleClick;
        case GDK_BUTTON_RELEASE:
            return left ? TrayMessage::LeftUp : TrayMessage::RightUp;
        default:
            return std::nullopt;
    }
}
