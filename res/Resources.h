#pragma once
// The pictures that the program carries, by number. They are drawn as vectors in this folder, rendered and
// packed when the program is built, and unpacked when somebody asks for them.

#include <wx/bmpbndl.h>

enum ResourceId : int {
    kProgramIcon = 1,      // square, 16 to 128 pixels
    kMenuBanner = 2,       // 240 x 34 pixels
    kSplashPicture = 3,    // 360 x 220 pixels
    kCriticalPicture = 4,  // heads of message boxes, square, 32 to 64 pixels
    kWarningPicture = 5,
    kInformationPicture = 6,
    kTroubleIcon = 7,  // the program icon with a warning mark, square, 16 to 64 pixels
    // 100 to 103: folded corner in the pure tones red, light blue, yellow, green; 110 to 113: in the pale
    // tones. 30 x 32 pixels for the bottom-right corner of the note's rectangle; the left and the top edge
    // have exactly the note's colour. 120 to 123: small note for the notification area in these colours,
    // square, 16 to 64 pixels.
    kFirstNoteIcon = 120,
    kLastNoteIcon = 123,
};

// The picture of that number in every size that it has, banner, splash and corners also for a scale factor of
// 2; an empty bundle for a number that names none. Bitmaps are made when they are first asked for. All
// bundles of a number share them and they are kept, except those of the splash: they go with their bundle.
// User interface thread only.
wxBitmapBundle LoadPicture(int id);
