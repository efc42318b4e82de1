#pragma once
// The operation "Notizen im Netzwerk versenden".

#include "net/clsOutgoing.h"

class NetworkAccess;
class NoteStore;

// Lets the user choose notes and recipients and sends each recipient the notes, with a window that shows how
// far that is. While it runs already, its window comes to the front instead. Tells the user what fails.
void SendNotesOverNetwork(NetworkAccess& network, NoteStore& store);

// Tells the user why a note was not sent.
void ShowSendFailure(const clsOutgoing::Failure& failure);
