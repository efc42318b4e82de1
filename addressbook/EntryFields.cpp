#include "addressbook/EntryFields.h"

#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include "addressbook/AddressKeys.h"
#include "addressbook/NameLookup.h"
#include "dialogs/DialogLayout.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "model/Note.h"

namespace {

void FilterKey(wxKeyEvent& event) {
    const wxChar character = event.GetUnicodeKey();
    // Keys that move or command are not typed characters.
    const bool typed = character != WXK_NONE && character >= 32 && character != WXK_DELETE &&
                       !event.ControlDown() && !event.AltDown();
    if (!typed || IsAddressKey(character)) event.Skip();
}

}  // namespace

EntryFields::EntryFields(wxWindow* parent) : wxPanel(parent) {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](const wchar_t* label, int gapBelow) {
        sizer->Add(new wxStaticText(this, wxID_ANY, label), wxSizerFlags().Border(wxBOTTOM, FromDIP(2)));
        auto* box =
            new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, {RoomForText(*this, 40, 1).x, -1});
        box->SetMaxLength(kLongestStoredText);
        sizer->Add(box, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(gapBelow)));
        return box;
    };
    txtPCName = add(L"&Name des Computers:", kDialogGap);
    txtIP = add(L"Netzwerkname oder &IP-Adresse des Computers:", kDialogGap);
    txtComment = add(L"&Kommentar:", 0);
    txtIP->Bind(wxEVT_CHAR, &FilterKey);
    SetSizer(sizer);
}

clsAddressBookEntry EntryFields::Entry() const {
    return {txtPCName->GetValue().ToStdWstring(), txtIP->GetValue().ToStdWstring(),
            txtComment->GetValue().ToStdWstring()};
}

void EntryFields::Entry(const clsAddressBookEntry& entry) {
    txtPCName->ChangeValue(entry.PCName());
    txtIP->ChangeValue(entry.IP());
    txtComment->ChangeValue(entry.Comment());
}

void ShowDuplicateEntry(const std::wstring& pcName) {
    ShowMessage(L"Es existiert bereits ein Eintrag für den Computer \"" + pcName +
                    L"\".\r\nGeben Sie bitte einen anderen Computernamen an.",
                kCritical, L"Eintrag existiert bereits.");
}

bool AcceptAddress(const std::wstring& address, const std::function<bool()>& abandoned) {
    {
        const wxBusyCursor busy;
        if (!ResolveHostAddress(address, abandoned).empty()) return true;
    }
    if (IsQuitting() || abandoned()) return false;
    return ShowMessage(L"Der Computer mit der Adresse " + address +
                           L" ist nicht erreichbar.\r\nMöchten Sie die Adresse dennoch übernehmen?",
                       kExclamation + kYesNo, L"Computer nicht erreichbar") == MessageAnswer::Yes;
}
