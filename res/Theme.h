#pragma once
// The desktop's theme for controls. Notes, splash and icons need none, and under GTK reading it takes a third
// of the time that the program needs to come up, and some megabytes: it is read before the first window with
// controls. Elsewhere nothing happens here.

// Lets GTK come up without the theme. Before GTK starts, while no other thread runs.
void PutOffTheme();

// Gives the user's choice of a theme back to GTK and to whatever is started from now on. Once GTK has come
// up.
void RestoreThemeChoice();

// Reads the theme, unless that has been done. To be called before anything is shown whose look or size it
// decides: dialogs, menus. Tool tips do it themselves.
void LoadTheme();
