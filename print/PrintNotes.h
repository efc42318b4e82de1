#pragma once
// "Drucken...": notes on paper.

#include "print/PrintSystem.h"

class NoteStore;

// Lets the user choose notes and a printer, and prints them; the user is told what goes wrong. While the
// dialog or the progress of another printing is open, that one comes to the front instead. False when there
// is no printer at all: the user has been told, and the command is of no use in this run.
bool PrintNotes(NoteStore& store, PrintSystem& printing = SystemPrinting());
