#include "app/frmInfo.h"

#include <wx/button.h>
#include <wx/hyperlink.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "app/Platform.h"
#include "base/Homepage.h"
#include "dialogs/OneDialog.h"
#include "dialogs/OpenAddress.h"
#include "res/Resources.h"

frmInfo::frmInfo() : frmDialog(Alone(), L"Info", L"index.html") {
    auto* name = new wxStaticText(this, wxID_ANY, L"Kivora");
    name->SetFont(name->GetFont().Bold().Scaled(1.6F));
    auto* version = new wxStaticText(this, wxID_ANY, L"Version " + wxString::FromUTF8(KIVORA_VERSION));
    auto* about = new wxStaticText(this, wxID_ANY,
                                   L"Notizen auf dem Bildschirm\n\n"
                                   L"© die Autoren von Kivora\n"
                                   L"Frei verwendbar unter den Bedingungen der MIT-Lizenz.\n\n"
                                   L"Benutzt " +
                                       UsedLibraries() + L".");
    auto* homepage = new wxHyperlinkCtrl(this, wxID_ANY, kHomepage, kHomepage);
    homepage->Bind(wxEVT_HYPERLINK, [](wxHyperlinkEvent&) { OpenAddress(kHomepage); });

    auto* texts = new wxBoxSizer(wxVERTICAL);
    texts->Add(name);
    texts->Add(version, wxSizerFlags().Border(wxBOTTOM, FromDIP(kDialogMargin)));
    texts->Add(about, wxSizerFlags().Border(wxBOTTOM, FromDIP(kDialogMargin)));
    texts->Add(homepage);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    // The icon is made for 16 pixels and would be drawn at that size, however large the picture is.
    const double scale = GetContentScaleFactor();
    wxBitmap icon = LoadPicture(kProgramIcon).GetBitmap(wxSize(48, 48) * scale);
    icon.SetScaleFactor(scale);
    content->Add(new wxStaticBitmap(this, wxID_ANY, icon),
                 wxSizerFlags().Border(wxRIGHT, FromDIP(kDialogMargin)));
    content->Add(texts);
    SetContent(content, CreateButtons(L"&OK", L""));
    cmdOK->SetFocus();
}

void frmInfo::Open() {
    static OneDialog once;
    if (once.BroughtForward()) return;
    auto* box = new frmInfo;
    once.Hold(*box);
    box->Begin();
}
