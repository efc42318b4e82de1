#pragma once
// Keys that are pressed in a widget which wxWidgets only knows from the outside (wxNativeWindow).

#include <gtk/gtk.h>

class wxWindow;

// Lets the window and those around it handle the key as one that was pressed in the window, where it is one
// that dialogs have a use for. True when one of them has.
bool PassKey(wxWindow& window, const GdkEventKey& key);
