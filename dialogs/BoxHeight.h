#pragma once

class wxTextCtrl;

// The height that a box of one line needs in the system's look and font.
int HeightOf(const wxTextCtrl& box);
