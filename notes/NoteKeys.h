#pragma once
// What the keyboard does with a note that has the focus:
//
//   Menu, Shift+F10           opens the menu for the note, at the note
//   Enter                     opens the note in its dialog, or presses the control that has the focus
//   Tab, Shift+Tab            goes on from the text to "im Vordergrund", to "minimieren" and back to the text
//   Space                     presses the control that has the focus
//   arrows                    move the note
//   Shift + arrows            make it narrower, wider, lower or higher
//   Ctrl+C                    copies the text
//   Ctrl+V                    makes a new note of the text in the clipboard
//   Ctrl+Tab, Ctrl+Shift+Tab  the next note on the screen, the one before; F6 and Shift+F6 do the same
//   Ctrl+F                    opens the window that finds notes
//   Ctrl+Z                    brings back what was deleted last, whichever note has the focus
//
// There is no key that deletes: a note looks like no window, and what is typed may reach it by mistake. The
// menu does that. Combinations with Alt belong to the window manager.

enum class NoteCommand {
    None,
    Menu,
    Enter,
    NextControl,
    PreviousControl,
    Press,
    MoveLeft,
    MoveUp,
    MoveRight,
    MoveDown,
    Narrower,
    Lower,
    Wider,
    Higher,
    NextNote,
    PreviousNote,
    Find,
    BringBack,
    Copy,
    Paste,
};

// keyCode and modifiers as key events of wxWidgets hold them.
NoteCommand CommandOfKey(int keyCode, int modifiers);
