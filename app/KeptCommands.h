#pragma once
// Commands that a started process carries out alone, with what is kept and without a window, and what of them
// the running copy shares.

#include <functional>
#include <vector>

#include "app/Commands.h"
#include "model/Note.h"
#include "model/ReceiveSetting.h"
#include "registry/KeepResult.h"

CommandAnswer CarryOutAlone(const Command& command);

// --list and --export with these notes.
CommandAnswer ListNotes(const std::vector<Note>& notes);
CommandAnswer ExportNotes(const std::vector<Note>& notes, const std::wstring& fileName);

// A message's text as whole lines of a terminal.
std::wstring InTerminal(std::wstring message);

// Says what was not done, and why, where that is known.
CommandAnswer NotDone(const std::wstring& what, const KeepResult& why);

// --receive. apply: called with what is set, once it is on the disk.
CommandAnswer SetReceiveFrom(const Command& command, const std::function<void(ReceiveFrom)>& apply);
