#include "tray/TrayIcon_unix.h"

#include <algorithm>

wxBitmap TrayIcon::BitmapFor(int pixels) const {
    if (!picture.IsOk()) return wxBitmap();
    int best = std::min(pixels, 16);
    for (const int drawn : {16, 22, 24, 32, 44, 48, 64})
        if (drawn <= pixels) best = drawn;
    return picture.GetBitmap(wxSize(best, best));
}
