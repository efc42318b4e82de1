#include "notes/NoteKeys.h"

#include <wx/defs.h>

NoteCommand CommandOfKey(int keyCode, int modifiers) {
    using enum NoteCommand;
    static const struct {
        int keyCode, modifiers;
        NoteCommand command;
    } keys[] = {
        {WXK_WINDOWS_MENU, wxMOD_NONE, Menu},
        {WXK_MENU, wxMOD_NONE, Menu},
        {WXK_F10, wxMOD_SHIFT, Menu},
        {WXK_RETURN, wxMOD_NONE, Enter},
        {WXK_NUMPAD_ENTER, wxMOD_NONE, Enter},
        {WXK_TAB, wxMOD_NONE, NextControl},
        {WXK_TAB, wxMOD_SHIFT, PreviousControl},
        {WXK_SPACE, wxMOD_NONE, Press},
        {WXK_LEFT, wxMOD_NONE, MoveLeft},
        {WXK_UP, wxMOD_NONE, MoveUp},
        {WXK_RIGHT, wxMOD_NONE, MoveRight},
        {WXK_DOWN, wxMOD_NONE, MoveDown},
        {WXK_LEFT, wxMOD_SHIFT, Narrower},
        {WXK_UP, wxMOD_SHIFT, Lower},
        {WXK_RIGHT, wxMOD_SHIFT, Wider},
        {WXK_DOWN, wxMOD_SHIFT, Higher},
        {WXK_TAB, wxMOD_CONTROL, NextNote},
        {WXK_TAB, wxMOD_CONTROL | wxMOD_SHIFT, PreviousNote},
        {WXK_F6, wxMOD_NONE, NextNote},
        {WXK_F6, wxMOD_SHIFT, PreviousNote},
        {'F', wxMOD_CONTROL, Find},
        {'Z', wxMOD_CONTROL, BringBack},
        {'C', wxMOD_CONTROL, Copy},
        {'V', wxMOD_CONTROL, Paste},
    };
    for (const auto& key : keys) {
        if (key.keyCode == keyCode && key.modifiers == modifiers) return key.command;
    }
    return None;
}
