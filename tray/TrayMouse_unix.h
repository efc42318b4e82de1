#pragma once
// What GTK's button events mean as mouse messages of an icon.

#include <gdk/gdk.h>

#include <optional>

#include "tray/TrayMessage.h"

// Nothing for buttons without a meaning, and for the press that GDK sends ahead of a double click.
std::optional<TrayMessage> MessageOf(const GdkEventButton& event);
