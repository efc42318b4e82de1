#pragma once
// What can be dropped on the program's windows: text becomes a note, files are imported.

#include <wx/dnd.h>

#include <memory>

class NoteHost;

// A target that hands what it gets to the host, which must outlive it. For a window of wxWidgets:
// SetDropTarget(NoteDropTarget(host).release()), which gives the window the target.
std::unique_ptr<wxDropTarget> NoteDropTarget(NoteHost& host);
