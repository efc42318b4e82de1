#pragma once
// What is known of one icon, wherever it is shown: in a host on the session bus, in one that embeds windows,
// or in the program's own strip.

#include <wx/bmpbndl.h>

#include <functional>
#include <string>

#include "tray/TrayMenu.h"
#include "tray/TrayMessage.h"

struct TrayIcon {
    unsigned long number = 0;  // grows with every icon; icons stand in this order
    wxBitmapBundle picture;
    std::wstring toolTip;
    std::function<void(TrayMessage)> report;
    TrayMenu menu;

    // Nothing of this object may be touched afterwards: who is told may destroy it.
    void Report(TrayMessage message) const {
        const std::function<void(TrayMessage)> receiver = report;
        receiver(message);
    }

    // The picture in the largest size that fits a square of that many pixels and for which icons are drawn,
    // because scaling spoils small icons; invalid without a picture.
    wxBitmap BitmapFor(int pixels) const;
};
