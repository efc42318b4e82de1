#pragma once
// What a host of icons on the session bus tells of the user's actions, brought to the icon. The icon gets to
// know it as an event of its own, when the host has had its answer, and may be gone by then.

#include <glib.h>

#include "tray/TrayIcon_unix.h"

// The icon was activated. Hosts know one activation, for which they take a click or a double click, and it
// stands for the icon's main action: what a double click does. A minimized note comes back, and the program's
// icon opens a new note. Two activations as quick as a double click are one.
void Activate(const TrayIcon& icon);

// The other activation, most often by the middle button: what a single click does.
void ActivateSecondary(const TrayIcon& icon);

// The host leaves it to the program to open the menu.
void AskForMenu(const TrayIcon& icon);

// An entry of the menu was chosen. time: of the user's action, 0 when it is not known.
void ChooseFromMenu(const TrayIcon& icon, int id, guint32 time);
