#pragma once
// The pictures that the program carries, by number. They are drawn as vectors in this folder and rendered
// when the program is built, so nothing is decoded at run time.

#include <wx/bmpbndl.h>

enum ResourceId : int {
    kProgramIcon = 1,    // square, 16 to 128 pixels
    kMenuBanner = 2,     // 240 x 34 pixels
    kSplashPicture = 3,  // 360 x 220 pixels
    // 100 to 103: folded corner in the pure tones red, light blue, yellow, green; 110 to 113: in the pale
    // tones. 30 x 32 pixels for the bottom-right corner of the note's rectangle; the left and the top edge
    // have exactly the note's colour. 120 to 123: small note for the notification area in these colours,
    // square, 16 to 64 pixels.
    kFirstNoteIcon = 120,
    kLastNoteIcon = 123,
};

// The picture of that number in every size that it has, banner, splash and corners also for a scale factor of
// 2; an empty bundle for a number that names none. All bundles of a number share their bitmaps, which are
// made when they are first asked for. User interface thread only.
wxBitmapBundle LoadPicture(int id);
