#include "base/basMessage.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <utility>

#include "base/frmDialog.h"

namespace {

MessageObserver& Observer() {
    static MessageObserver observer;
    return observer;
}

const char* IconOf(int flags) {
    switch (flags & ~kYesNo) {
        case kCritical:
            return wxART_ERROR;
        case kExclamation:
            return wxART_WARNING;
        default:
            return wxART_INFORMATION;
    }
}

// A dialog like all others, so that quitting the program unwinds it like all others.
class frmMessage : public frmDialog {
  public:
    frmMessage(const wxString& text, int flags, const wxString& title) : frmDialog(title, L"") {
        auto* content = new wxBoxSizer(wxHORIZONTAL);
        const wxSize iconSize = FromDIP(wxSize(32, 32));
        content->Add(new wxStaticBitmap(
                         this, wxID_ANY,
                         wxArtProvider::GetBitmapBundle(wxArtID::FromAscii(IconOf(flags)),
                                                        wxArtClient::FromAscii(wxART_MESSAGE_BOX), iconSize)),
                     wxSizerFlags().Top());
        content->AddSpacer(FromDIP(kDialogMargin));
        auto* label = new wxStaticText(this, wxID_ANY, wxString());
        label->SetLabelText(text);
        label->Wrap(FromDIP(440));
        content->Add(label, wxSizerFlags(1).CentreVertical());
        const bool question = flags & kYesNo;
        SetContent(content, CreateButtons(question ? L"&Ja" : L"OK", question ? L"&Nein" : L""));
        SetEscapeId(question ? wxID_CANCEL : wxID_OK);
        cmdOK->SetFocus();
    }
};

}  // namespace

MessageAnswer ShowMessage(const std::wstring& text, int flags, const std::wstring& title) {
    if (Observer()) return Observer()(text, flags, title);
    wxString shown(text);
    shown.Replace(L"\r\n", L"\n");
    auto* box = new frmMessage(shown, flags, title);
    const bool confirmed = box->ShowModal() == 1;
    box->Destroy();
    if (!(flags & kYesNo)) return MessageAnswer::OK;
    return confirmed ? MessageAnswer::Yes : MessageAnswer::No;
}

void SetMessageObserver(MessageObserver observer) { Observer() = std::move(observer); }
