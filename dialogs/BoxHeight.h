#pragma once

class wxTextCtrl;

// The height in pixels that a box of one line needs in the desktop's theme and font.
int HeightOf(const wxTextCtrl& box);
