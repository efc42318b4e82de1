#include "notes/frmFind.h"

#include <wx/button.h>
#include <wx/radiobut.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "dialogs/Clipboard.h"
#include "dialogs/ControlNames.h"
#include "dialogs/DialogPlace.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "model/KeepReason.h"
#include "model/NoteColor.h"
#include "notes/BoxText.h"
#include "notes/BringBack.h"
#include "notes/NoteDrop.h"
#include "notes/PropertiesLook.h"

namespace {

const wchar_t* ColorName(std::int32_t code) {
    constexpr const wchar_t* kNames[] = {L"gelb", L"grün", L"rot", L"blau"};
    const auto found = std::find(kNoteColors.begin(), kNoteColors.end(), code);
    return found == kNoteColors.end() ? L"" : kNames[found - kNoteColors.begin()];
}

// The notes of the store, the one written last first, as far as their dates can be read.
std::vector<SearchedNote> NotesOf(const NoteStore& store) {
    std::vector<std::pair<std::int64_t, const frmNote*>> order;
    for (const NotePtr& note : store.Notes())
        order.emplace_back(WrittenWhen(note->CreationTime()), note.get());
    std::reverse(order.begin(), order.end());
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::vector<SearchedNote> notes;
    notes.reserve(order.size());
    for (const auto& [when, note] : order)
        notes.push_back({std::to_wstring(note->NoteKey()), note->CreationTime(), note->Content()});
    return notes;
}

// Those of the bin. A key is the file and, so that it stays when others leave the file, what tells the text.
std::vector<SearchedNote> NotesOf(std::vector<BinnedNote> binned) {
    std::vector<SearchedNote> notes;
    std::wstring file;
    std::unordered_map<std::size_t, int> alike;
    for (BinnedNote& each : binned) {
        if (file != each.file) alike.clear();
        file = each.file;
        const std::size_t text = std::hash<std::wstring>()(each.note.text);
        std::wstring key = file + L"/" + std::to_wstring(text) + L"." + std::to_wstring(alike[text]++);
        notes.push_back({std::move(key), each.deleted, std::move(each.note)});
    }
    return notes;
}

BinnedNote BinnedNoteOf(const SearchedNote& note) {
    return {note.key.substr(0, note.key.rfind(L'/')), note.date, note.note};
}

std::wstring Counted(std::size_t count) {
    return std::to_wstring(count) + (count == 1 ? L" Notiz" : L" Notizen");
}

}  // namespace

frmFind::frmFind(NoteStore& store, NoteBin& bin)
    : frmDialog(Alone(), L"Notizen finden", L"ch2_find.html", true), store_(store), bin_(bin) {
    auto* content = new wxBoxSizer(wxVERTICAL);
    const int gap = FromDIP(kDialogGap);
    content->Add(CreateSearch(), wxSizerFlags().Expand());
    content->AddSpacer(gap);
    content->Add(CreateFound(), wxSizerFlags(1).Expand());
    SetContent(content, CreateActions());
    Bind(wxEVT_CHAR_HOOK, &frmFind::OnKey, this);
    SetDropTarget(NoteDropTarget(store_.Host()).release());
    ShowPage(false);
    txtSuchen->SetFocus();
}

wxSizer* frmFind::CreateSearch() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = FromDIP(kDialogGap);
    row->Add(new wxStaticText(this, wxID_ANY, L"&Suchen:"), wxSizerFlags().CentreVertical());
    row->AddSpacer(gap);
    txtSuchen = new wxTextCtrl(this, wxID_ANY);
    txtSuchen->Bind(wxEVT_TEXT, [this](wxCommandEvent&) {
        Choice choice = Chosen();
        choice.first = 0;
        search_.Find(txtSuchen->GetValue().ToStdWstring());
        ShowFound(choice);
    });
    row->Add(txtSuchen, wxSizerFlags(1).CentreVertical());
    const auto page = [&](wxRadioButton*& option, const wchar_t* caption, long style, bool bin) {
        option = new wxRadioButton(this, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, style);
        option->Bind(wxEVT_RADIOBUTTON, [this, bin](wxCommandEvent&) { ShowPage(bin); });
        row->AddSpacer(2 * gap);
        row->Add(option, wxSizerFlags().CentreVertical());
    };
    page(optNotizen, L"&Notizen", wxRB_GROUP, false);
    page(optPapierkorb, L"&Papierkorb", 0, true);
    return row;
}

wxSizer* frmFind::CreateFound() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const int gap = FromDIP(kDialogGap);
    lstGefunden = FindList::Create(this, [this](int row) { return RowOf(row); });
    lstGefunden->OnChoice = [this] {
        if (!std::exchange(choosing_, true)) CallAfter([this] { ShowChoice(); });
    };
    lstGefunden->OnDoubleClick = [this] { Confirm(); };
    lstGefunden->OnTyped = [this](wchar_t character) { Type(character); };
    column->Add(&lstGefunden->Window(), wxSizerFlags(3).Expand());
    column->AddSpacer(gap);
    txtText = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, RoomForText(*this, 40, 5),
                             wxTE_MULTILINE | wxTE_READONLY);
    PadText(*txtText, FromDIP(kDialogGap));
    NameControl(*txtText, L"Text der Notiz");
    // Else the box takes what is dropped on it, and nothing becomes of it.
    txtText->SetDropTarget(NoteDropTarget(store_.Host()).release());
    column->Add(txtText, wxSizerFlags(1).Expand());
    column->AddSpacer(gap);
    lblAnzahl = new wxStaticText(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                 wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    column->Add(lblAnzahl, wxSizerFlags().Expand());
    return column;
}

wxSizer* frmFind::CreateActions() {
    const auto create = [this](const wchar_t* caption, void (frmFind::*action)()) {
        auto* button = new wxButton(this, wxID_ANY, caption);
        button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
        return button;
    };
    cmdKopieren = create(L"&Kopieren", &frmFind::Copy);
    cmdLöschen = create(L"&Löschen", &frmFind::Delete);
    wxSizer* const row = CreateButtons(L"&Wiederherstellen", L"S&chließen");
    row->Insert(0, cmdLöschen);
    row->InsertSpacer(0, FromDIP(kDialogGap));
    row->Insert(0, cmdKopieren);
    return row;
}

void frmFind::Open(NoteStore& store, NoteBin& bin, const std::wstring& words) {
    static OneDialog once;
    static wxWeakRef<frmFind> window;
    if (!once.BroughtForward()) {
        window = new frmFind(store, bin);
        once.Hold(*window);
        window->Begin();
    }
    window->Look(words);
}

void frmFind::Look(const std::wstring& words) {
    if (!words.empty()) {
        optNotizen->SetValue(true);
        ShowPage(false);
        txtSuchen->SetValue(words);
    }
    txtSuchen->SetFocus();
    txtSuchen->SelectAll();
}

bool frmFind::InBin() const { return optPapierkorb->GetValue(); }

void frmFind::ShowPage(bool bin) {
    (bin ? optPapierkorb : optNotizen)->SetValue(true);
    cmdOK->SetLabel(bin ? L"&Wiederherstellen" : L"&Zeigen");
    cmdLöschen->Show(!bin);
    lstGefunden->CallDate(bin ? L"Gelöscht" : L"Geschrieben");
    NameControl(lstGefunden->Window(), bin ? L"Gelöschte Notizen" : L"Notizen");
    Layout();
    TellOfUnreadableBin(FillPage());
    ShowFound({});
}

// The result says why there is nothing, when the bin cannot be read.
KeepResult frmFind::FillPage() {
    unreadable_ = 0;
    if (!InBin()) {
        search_.Search(NotesOf(store_));
        return {};
    }
    NoteBin::Content content = bin_.Read();
    unreadable_ = content.unreadable;
    search_.Search(NotesOf(std::move(content.notes)));
    return content.read;
}

void frmFind::Follow() {
    if (!std::exchange(following_, true)) CallAfter([this] { Reload(); });
}

void frmFind::Reload() {
    following_ = false;
    if (IsQuitting()) return;
    const Choice choice = Chosen();
    FillPage();
    ShowFound(choice);
}

frmFind::Choice frmFind::Chosen() const {
    const auto key = [this](int row) { return search_.Found(static_cast<std::size_t>(row)).key; };
    const auto there = [this](int row) { return row >= 0 && row < static_cast<int>(search_.CountFound()); };
    Choice choice;
    const std::vector<int> rows = lstGefunden->Chosen();
    for (const int row : rows) {
        if (there(row)) choice.keys.push_back(key(row));
    }
    if (!rows.empty()) choice.first = rows.front();
    if (const int current = lstGefunden->Current(); there(current)) choice.current = key(current);
    return choice;
}

void frmFind::ShowFound(const Choice& choice) {
    const std::unordered_set<std::wstring_view> keys(choice.keys.begin(), choice.keys.end());
    const int count = static_cast<int>(search_.CountFound());
    std::vector<int> rows;
    int current = -1;
    for (int row = 0; row < count; ++row) {
        const std::wstring& key = search_.Found(static_cast<std::size_t>(row)).key;
        if (keys.contains(key)) rows.push_back(row);
        if (key == choice.current) current = row;
    }
    if (rows.empty() && count > 0) rows.push_back(std::min(choice.first, count - 1));
    if (!rows.empty() && !std::binary_search(rows.begin(), rows.end(), current)) current = rows.front();
    lstGefunden->Show(count, rows, current);
    ShowChoice();
}

void frmFind::ShowChoice() {
    choosing_ = false;
    const std::vector<int> rows = lstGefunden->Chosen();
    std::wstring count = Counted(search_.CountFound());
    if (search_.CountFound() < search_.Count())
        count = std::to_wstring(search_.CountFound()) + L" von " + Counted(search_.Count());
    if (rows.size() > 1) count += L", " + std::to_wstring(rows.size()) + L" gewählt";
    if (unreadable_ == 1) count += L", eine Datei im Papierkorb ist nicht lesbar";
    if (unreadable_ > 1)
        count += L", " + std::to_wstring(unreadable_) + L" Dateien im Papierkorb sind nicht lesbar";
    lblAnzahl->SetLabel(count);

    const int current = lstGefunden->Current();
    const bool one = std::binary_search(rows.begin(), rows.end(), current);
    const wxString text =
        one ? BoxText(search_.Found(static_cast<std::size_t>(current)).note.text) : wxString();
    if (text != shown_) txtText->ChangeValue(text);
    shown_ = text;
    for (wxButton* const button : {cmdOK, cmdKopieren, cmdLöschen}) button->Enable(!rows.empty());
}

FindList::Row frmFind::RowOf(int row) const {
    if (row >= static_cast<int>(search_.CountFound())) return {};
    const SearchedNote& found = search_.Found(static_cast<std::size_t>(row));
    std::wstring line = FirstLine(found.note.text);
    if (line.empty()) line = L"(ohne Text)";
    return {std::move(line), found.date, ColorName(found.note.look.color), NoteIcon(found.note.look.color)};
}

std::vector<SearchedNote> frmFind::ChosenRows() const {
    std::vector<SearchedNote> chosen;
    for (const int row : lstGefunden->Chosen())
        chosen.push_back(search_.Found(static_cast<std::size_t>(row)));
    return chosen;
}

std::vector<frmNote*> frmFind::ChosenNotes() const {
    std::unordered_set<std::int32_t> keys;
    for (const SearchedNote& chosen : ChosenRows()) keys.insert(std::stoi(chosen.key));
    std::vector<frmNote*> notes;
    for (const NotePtr& note : store_.Notes()) {
        if (keys.contains(note->NoteKey())) notes.push_back(note.get());
    }
    return notes;
}

void frmFind::OnKey(wxKeyEvent& event) {
    const bool plain = event.GetModifiers() == wxMOD_NONE;
    const int code = event.GetKeyCode();
    const bool inList = event.GetEventObject() == &lstGefunden->Window();
    if (event.GetModifiers() == wxMOD_CONTROL && OnCommandKey(event)) return;
    if (plain && inList && code == WXK_DELETE) {
        if (!InBin()) Delete();
    } else if (plain && inList && code == WXK_UP && lstGefunden->Current() <= 0) {
        txtSuchen->SetFocus();
    } else if (plain && event.GetEventObject() == txtSuchen && (code == WXK_DOWN || code == WXK_PAGEDOWN)) {
        lstGefunden->Window().SetFocus();
    } else {
        event.Skip();
    }
}

// With Ctrl; false for what is not meant for the window.
bool frmFind::OnCommandKey(const wxKeyEvent& event) {
    const wxObject* const where = event.GetEventObject();
    const auto* const box = dynamic_cast<const wxTextCtrl*>(where);
    switch (event.GetKeyCode()) {
        case 'A':
            if (where != &lstGefunden->Window()) return false;
            ChooseAll();
            return true;
        case 'C':
            if (box && !box->GetStringSelection().empty()) return false;
            Copy();
            return true;
        case 'F':
            Look({});
            return true;
        case 'Z':
            BringBackLast(store_, bin_);
            return true;
        case WXK_TAB:
        case WXK_PAGEUP:
        case WXK_PAGEDOWN:
            ShowPage(!InBin());
            return true;
        default:
            return false;
    }
}

void frmFind::Type(wchar_t character) {
    txtSuchen->SetFocus();
    txtSuchen->SetInsertionPointEnd();
    txtSuchen->WriteText(wxString(character));
}

void frmFind::ChooseAll() {
    std::vector<int> rows(search_.CountFound());
    std::iota(rows.begin(), rows.end(), 0);
    lstGefunden->Show(static_cast<int>(rows.size()), rows, lstGefunden->Current());
    ShowChoice();
}

void frmFind::Confirm() {
    if (InBin())
        BringBackChosen();
    else
        ShowNotes();
}

void frmFind::ShowNotes() {
    const std::vector<frmNote*> notes = ChosenNotes();
    for (frmNote* const note : notes) {
        note->Untouched(false);
        if (note->Minimized()) note->Minimized(false);
        note->BringToFront();
    }
    if (notes.empty()) return;
    // Dialogs may have to stay above notes.
    const wxRect shown = notes.back()->WindowRect();
    if (GetRect().Intersects(shown))
        SetPosition(DialogPlace(GetSize(), DialogArea(shown), shown, FromDIP(kDialogMargin)));
    notes.back()->TakeFocus();
}

void frmFind::Copy() {
    std::wstring texts;
    for (const SearchedNote& chosen : ChosenRows())
        texts.append(texts.empty() ? L"" : L"\r\n\r\n").append(chosen.note.text);
    if (!texts.empty() && !CopyText(texts))
        TellMessage(L"Die Zwischenablage nimmt zurzeit nichts an.", kCritical, L"Kopieren");
}

void frmFind::Delete() {
    const std::vector<frmNote*> notes = ChosenNotes();
    const KeepResult binned = store_.DeleteTogether(notes);
    if (binned.Kept()) return;
    TellMessage((notes.size() == 1 ? std::wstring(L"Die Notiz wurde nicht gelöscht, denn sie konnte")
                                   : L"Die Notizen wurden nicht gelöscht, denn sie konnten") +
                    L" nicht im Papierkorb aufgehoben werden.\r\n" +
                    ReasonText(binned, L"die Datei im Papierkorb"),
                kCritical, L"Papierkorb");
}

void frmFind::BringBackChosen() {
    std::vector<BinnedNote> notes;
    for (const SearchedNote& chosen : ChosenRows()) notes.push_back(BinnedNoteOf(chosen));
    if (!notes.empty()) BringBack(store_, bin_, notes);
}
