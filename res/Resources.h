#pragma once
// The pictures that the program carries, by number. They are drawn as vectors in this folder and rendered when the
// program is built, so nothing is decoded at run time.

#include <wx/bmpbndl.h>

enum ResourceId : int {
    kProgramIcon = 1,
    kMenuBanner = 2,   // 34 pixels high
    kSplashPicture = 3,
    // 100 to 103: folded corner in the pure tones red, light blue, yellow, green; 110 to 113: in the pale tones.
    // 120 to 123: small note for the notification area in these colours.
};

// The picture of that number in every size that it has; an empty bundle for a number that names none.
wxBitmapBundle LoadPicture(int id);
