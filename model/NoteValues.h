#pragma once
// The values of a note under their names, one after the other: what the registry's image and the program's
// own files keep of it. A value that is added here is kept in both.

#include "model/Note.h"

// Calls visit(name, value) for each value in the order of writing: texts are std::wstring, numbers double,
// std::int32_t or bool. The note may be one that is filled or one that is only read.
template <class AnyNote, class Visit>
void EachValue(AnyNote& note, const Visit& visit) {
    visit(L"X", note.place.left);
    visit(L"Y", note.place.top);
    visit(L"Width", note.place.width);
    visit(L"Height", note.place.height);
    visit(L"Text", note.text);
    visit(L"CreationTime", note.creationTime);
    visit(L"Color", note.look.color);
    visit(L"FontSize", note.look.size);
    visit(L"FontBold", note.look.bold);
    visit(L"FontItalic", note.look.italic);
    visit(L"FontUnderlined", note.look.underlined);
    visit(L"FontAlignment", note.look.alignment);
    visit(L"Foreground", note.foreground);
}
