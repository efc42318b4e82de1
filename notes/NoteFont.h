#pragma once
// The one place that knows which font a note's look is.

#include <wx/font.h>

#include "model/Note.h"

// The font of a note's text. Notes share their fonts; a hundred notes seldom need more than three.
const wxFont& NoteFont(const NoteLook& look);

// Gives a font the styles of a look and leaves its face and size alone.
void SetStyles(wxFont& font, const NoteLook& look);
