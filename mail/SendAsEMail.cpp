#include "mail/SendAsEMail.h"

#include <wx/textctrl.h>

#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "mail/MailText.h"
#include "mail/frmSendAsEMail.h"
#include "notes/NoteStore.h"

namespace {

// Asks the user; nothing when he cancels or a chosen note is gone.
std::optional<std::wstring> AskForAddress(const NoteStore& store, OneDialog& once) {
    const OneDialog::Opened<frmSendAsEMail> dialog(once, store);
    if (dialog->ShowModal() != 1) return std::nullopt;
    const auto notes = ChosenNotes(store, dialog->Frame1->Marked(), L"Versenden");
    if (!notes) return std::nullopt;
    std::vector<std::wstring> texts;
    for (const Note& note : *notes) texts.push_back(note.text);
    return MailAddress(dialog->txtEmpfänger->GetValue().ToStdWstring(),
                       dialog->txtBetreff->GetValue().ToStdWstring(), EncodeMailBody(MailBody(texts)));
}

}  // namespace

void SendNotesAsEMail(NoteStore& store, const AddressOpener& open) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const std::optional<std::wstring> address = AskForAddress(store, once);
    if (address && !IsQuitting()) open(*address);
}
