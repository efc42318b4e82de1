#include "mail/basMail.h"

#include <wx/textctrl.h>

#include <optional>

#include "dialogs/OneDialog.h"
#include "dialogs/basMessage.h"
#include "dialogs/basWait.h"
#include "mail/MailText.h"
#include "mail/frmSendAsEMail.h"
#include "notes/NoteChoice.h"
#include "notes/NoteStore.h"

namespace {

// What the dialog asks for; nothing when one of its notes is gone.
std::optional<std::wstring> ChosenAddress(const frmSendAsEMail& dialog, const NoteStore& store) {
    std::vector<std::wstring> texts;
    for (const std::int32_t key : dialog.Frame1->Marked()) {
        const frmNote* note = store.Find(key);
        if (!note) return std::nullopt;
        texts.push_back(note->Text());
    }
    return MailAddress(dialog.txtEmpfänger->GetValue().ToStdWstring(),
                       dialog.txtBetreff->GetValue().ToStdWstring(), EncodeMailBody(MailBody(texts)));
}

}  // namespace

void SendNotesAsEMail(NoteStore& store, const AddressOpener& open) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    std::optional<std::wstring> address;
    {
        const OneDialog::Opened<frmSendAsEMail> dialog(once, store);
        if (dialog->ShowModal() != 1) return;
        address = ChosenAddress(*dialog, store);
    }
    if (IsQuitting()) return;
    if (address) {
        open(*address);
    } else {
        ShowMessage(
            L"Eine zum Versenden vorgesehene Notiz existiert nicht mehr.\r\nDer Vorgang wird abgebrochen.",
            kCritical, L"Notiz existiert nicht");
    }
}
