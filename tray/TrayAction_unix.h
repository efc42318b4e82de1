#pragma once
// What the user does with an icon, as a host on the session bus tells it. The calls return at once, so that
// the host gets its answer; the icon is told when events run next, if it is still there.

#include <glib.h>

#include "tray/TrayIcon_unix.h"

// The icon was activated. Some hosts send this for a click and some for a double click; it stands for the
// icon's main action, which is what a double click does: a minimized note comes back, the program's icon
// opens a new note. Two activations as quick as a double click are one.
void Activate(const TrayIcon& icon);

// The other activation, most often by the middle button: what a single click does.
void ActivateSecondary(const TrayIcon& icon);

// The host leaves it to the program to open the menu.
void AskForMenu(const TrayIcon& icon);

// An entry of the menu was chosen. time: of the user's action in X11 milliseconds, 0 when it is not known.
void ChooseFromMenu(const TrayIcon& icon, int id, guint32 time);
