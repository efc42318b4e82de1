#include "mail/SendAsEMail.h"

#include <wx/textctrl.h>

#include "dialogs/Clipboard.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "mail/MailCodePage.h"
#include "mail/MailText.h"
#include "mail/frmSendAsEMail.h"
#include "notes/NoteStore.h"

namespace {

struct Mail {
    std::wstring body, address;
};

// Asks the user; nothing when he cancels or a chosen note is gone.
std::optional<Mail> AskForMail(const NoteStore& store, OneDialog& once) {
    const OneDialog::Opened<frmSendAsEMail> dialog(once, store);
    if (dialog->ShowModal() != 1) return std::nullopt;
    const auto notes = ChosenNotes(store, dialog->Frame1->Marked(), L"Versenden");
    if (!notes) return std::nullopt;
    std::vector<std::wstring> texts;
    for (const Note& note : *notes) texts.push_back(note.text);
    std::wstring body = MailBody(texts);
    std::wstring address = MailAddress(dialog->txtEmpfänger->GetValue().ToStdWstring(),
                                       dialog->txtBetreff->GetValue().ToStdWstring(), EncodeMailBody(body));
    return Mail{std::move(body), std::move(address)};
}

void OfferByClipboard(const std::wstring& body) {
    const std::wstring way =
        CopyText(body)
            ? L"Er liegt deshalb auch in der Zwischenablage: Ist er in der neuen Nachricht nicht "
              L"vollständig, fügen Sie ihn mit Strg+V ein. Hat sich keine geöffnet, beginnen Sie im "
              L"E-Mail-Programm selbst eine."
            : L"Exportieren Sie die Notizen in eine Datei und hängen Sie diese an, oder wählen Sie "
              L"weniger Notizen aus.";
    ShowMessage(L"Der Text ist zu lang, um sicher im E-Mail-Programm anzukommen.\r\n" + way, kExclamation,
                L"Per E-Mail versenden");
}

}  // namespace

void SendNotesAsEMail(NoteStore& store, const AddressOpener& open) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const std::optional<Mail> mail = AskForMail(store, once);
    if (!mail || IsQuitting()) return;
    open(mail->address);
    if (IsTooLongForMail(mail->address) && !IsQuitting()) OfferByClipboard(mail->body);
}
