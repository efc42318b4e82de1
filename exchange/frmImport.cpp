#include "exchange/frmImport.h"

#include <wx/button.h>
#include <wx/dnd.h>
#include <wx/listbox.h>
#include <wx/settings.h>
#include <wx/statbox.h>
#include <wx/textctrl.h>

#include "base/FileName.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "exchange/ExportPath.h"
#include "exchange/ImportFile.h"
#include "exchange/PatientRead.h"
#include "notes/BoxText.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/PropertiesLook.h"

namespace {

// No note keeps more than this, and a text box takes very long to wrap a long line.
constexpr std::size_t kPreviewedCharacters = 4096;

class FileDrop : public wxFileDropTarget {
  public:
    explicit FileDrop(wxTextCtrl& box) : box_(box) {}
    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& names) override {
        if (names.empty()) return false;
        box_.SetValue(names[0]);
        return true;
    }

  private:
    wxTextCtrl& box_;
};

long AlignmentStyle(std::int32_t code) {
    if (code == kAlignRight) return wxTE_RIGHT;
    return code == kAlignCentre ? wxTE_CENTRE : wxTE_LEFT;
}

}  // namespace

bool WaitsOnFor(const std::filesystem::path& file) {
    const std::wstring text = L"Die Datei " + ShownFileName(FileName(file)) +
                              L" antwortet nicht.\r\n\r\nSoll weiter auf sie gewartet werden?";
    return ShowMessage(text, kExclamation | kYesNo, L"Importieren") == MessageAnswer::Yes && !IsQuitting();
}

frmImport::frmImport() : frmDialog(L"Importieren", L"ch3_import.html", true) {
    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(CreateFile(), wxSizerFlags().Expand());
    content->AddSpacer(FromDIP(kDialogGap));

    const auto records = [this] {
        std::vector<NoteChoice::Entry> entries;
        const std::filesystem::path file = File();
        for (std::wstring& text : Read<std::vector<std::wstring>>([file] { return ListNotes(file); })) {
            entries.push_back({std::move(text), static_cast<std::int32_t>(entries.size())});
        }
        return entries;
    };
    Frame2 = new NoteChoice(this, records, {.caption = L"Enthaltene Notizen", .refresh = false});
    static_cast<NoteChoiceControls&>(*this) = *Frame2;
    auto* notes = new wxBoxSizer(wxHORIZONTAL);
    notes->Add(Frame2, wxSizerFlags(1).Expand());
    notes->AddSpacer(FromDIP(kDialogGap));
    notes->Add(CreatePreview(), wxSizerFlags(1).Expand());
    content->Add(notes, wxSizerFlags(1).Expand());
    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));

    txtDatei->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { OnFileChanged(); });
    Frame2->OnClick = [this](int row) { ShowPreview(row); };
    Frame2->OnChange = [this] { cmdOK->Enable(Frame2->AnyMarked()); };
    AcceptDroppedFiles(*this);
    OnFileChanged();
    txtDatei->SetFocus();
}

wxSizer* frmImport::CreateFile() {
    auto* frame = new wxStaticBoxSizer(wxHORIZONTAL, this, L"Datei");
    Frame1 = frame->GetStaticBox();
    txtDatei = new wxTextCtrl(Frame1, wxID_ANY);
    cmdDurchsuchen = new wxButton(Frame1, wxID_ANY, L"Durchsuchen...");
    cmdDurchsuchen->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Browse(); });
    const int gap = FromDIP(kDialogGap);
    frame->Add(txtDatei, wxSizerFlags(1).CentreVertical().Border(wxALL, gap));
    frame->Add(cmdDurchsuchen, wxSizerFlags().CentreVertical().Border(wxTOP | wxRIGHT | wxBOTTOM, gap));
    return frame;
}

wxSizer* frmImport::CreatePreview() {
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"Vorschau");
    Frame3 = frame->GetStaticBox();
    txtNotiz = new wxTextCtrl(Frame3, wxID_ANY, wxString(), wxDefaultPosition, RoomForText(*this, 34, 9),
                              wxTE_MULTILINE | wxTE_READONLY);
    PadText(*txtNotiz, FromDIP(kDialogGap));
    frame->Add(txtNotiz, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(kDialogGap)));
    return frame;
}

void frmImport::AcceptDroppedFiles(wxWindow& window) {
    // Boxes would take the file's address as text.
    window.SetDropTarget(new FileDrop(*txtDatei));
    for (wxWindow* child : window.GetChildren()) AcceptDroppedFiles(*child);
}

std::vector<bool> frmImport::ChosenRecords() const {
    std::vector<bool> chosen(lstNotizen->GetCount());
    for (const std::int32_t record : Frame2->Marked()) chosen[static_cast<std::size_t>(record)] = true;
    return chosen;
}

std::filesystem::path frmImport::File() const { return TypedPath(txtDatei->GetValue().ToStdWstring()); }

void frmImport::Browse() {
    if (browsing_) return;
    browsing_ = true;
    const std::optional<std::wstring> chosen = ChooseFile(*this, dlgImport);
    if (IsQuitting()) return;
    browsing_ = false;
    if (chosen) txtDatei->SetValue(*chosen);
}

// What the function reads from the file; nothing when that does not answer and the user does not want to
// wait.
template <class Result>
Result frmImport::Read(std::function<Result()> read) {
    if (File().empty()) return {};
    reading_ = true;
    std::optional<Result> result = ReadPatiently<Result>(std::move(read), [this] {
        cmdOK->Disable();
        return WaitsOnFor(File());
    });
    reading_ = false;
    return std::move(result).value_or(Result());
}

void frmImport::OnFileChanged() {
    if (reading_) return;  // whoever reads looks whether it is still the same
    std::filesystem::path listed;
    do {
        listed = File();
        Frame2->Refill();
    } while (listed != File() && !IsQuitting());
    const bool any = !lstNotizen->IsEmpty();
    lstNotizen->Enable(any);
    txtNotiz->Enable(any);
    if (any) {
        ShowPreview(0);
    } else {
        ShowNoPreview();
    }
}

void frmImport::ShowPreview(int row) {
    if (row < 0 || reading_) return;
    const auto index = static_cast<std::size_t>(row);
    // The file may have changed since it was listed.
    const std::filesystem::path file = File();
    const auto note = Read<std::optional<Note>>([file, index] { return NoteAt(file, index); });
    cmdOK->Enable(Frame2->AnyMarked());
    if (file != File() && !IsQuitting()) return OnFileChanged();
    if (note) {
        ShowNote(*note);
    } else {
        ShowNoPreview();
    }
}

void frmImport::ShowNote(const Note& note) {
    const std::int32_t color = DisplayColor(note.look.color);
    ShowLook(note.look);
    // A colour that no note has would be painted black, and so is the text.
    txtNotiz->SetBackgroundColour(color ? ToColour(color) : *wxWHITE);
    txtNotiz->SetForegroundColour(*wxBLACK);
    txtNotiz->ChangeValue(BoxText(std::wstring_view(note.text).substr(0, kPreviewedCharacters)));
}

void frmImport::ShowLook(const NoteLook& look) {
    txtNotiz->SetWindowStyleFlag((txtNotiz->GetWindowStyleFlag() & ~(wxTE_RIGHT | wxTE_CENTRE)) |
                                 AlignmentStyle(look.alignment));
    txtNotiz->SetFont(NoteFont(look));
}

void frmImport::ShowNoPreview() {
    ShowLook({.size = kSmallestFontSize, .italic = true});
    txtNotiz->SetBackgroundColour(wxNullColour);
    txtNotiz->SetForegroundColour(wxNullColour);
    txtNotiz->ChangeValue(L"Keine Vorschau möglich.");
}
