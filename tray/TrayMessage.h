#pragma once
// What the mouse does on an icon of the notification area, as Windows numbers it and GTK and D-Bus tell it.

enum class TrayMessage {
    MouseMove,
    LeftDoubleClick,
    RightDoubleClick,
    LeftDown,
    RightDown,
    LeftUp,
    RightUp,
    ContextMenu,  // asked for otherwise than with the right button
};
