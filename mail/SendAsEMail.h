#pragma once
// "Notizen per E-Mail senden an...": the way of notes into the user's mail program.

#include <functional>
#include <string>

#include "dialogs/OpenAddress.h"

class NoteStore;

using AddressOpener = std::function<bool(const std::wstring& address)>;

// Lets the user choose notes, a recipient and a subject, and hands the address made of them to `open`, whose
// result is deliberately not looked at. An address that may be too long for the way there is handed over all
// the same; then the text is in the clipboard, too, and the user is told. A chosen note that is gone is
// reported to the user and nothing is sent. When the dialog is open already it comes to the front instead.
void SendNotesAsEMail(NoteStore& store, const AddressOpener& open = OpenAddress);
