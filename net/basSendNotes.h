#pragma once
// The operation "Notizen im Netzwerk versenden".

class NetworkAccess;
class NoteStore;

// Lets the user choose notes and recipients and sends each recipient the notes, with a window that shows how
// far that is. While it runs already, its window comes to the front instead.
void SendNotesOverNetwork(NetworkAccess& network, const NoteStore& store);
