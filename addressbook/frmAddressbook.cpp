#include "addressbook/frmAddressbook.h"

#include <wx/button.h>

#include <algorithm>
#include <unordered_map>

#include "addressbook/frmAddressbookEntryEdit.h"
#include "addressbook/frmAddressbookEntryNew.h"
#include "base/CaseFold.h"
#include "base/SortKey.h"
#include "dialogs/ControlNames.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"

namespace {

enum Column { kCheckBox = 0, kName, kAddress, kComment, kColumns };

OneDialog editing;  // the dialogs that the list opens

}  // namespace

frmAddressbook::frmAddressbook(bool selecting)
    : frmDialog(L"Netzwerk-Adressbuch", L"ch4_networkaddressbook.html", true) {
    lvwEntries = EntryList::Create(this, {L"Name", L"IP-Adresse/ Rechnername", L"Kommentar"}, 20, 14);
    NameControl(lvwEntries->Window(), L"Einträge");
    lvwEntries->OnCheck = [this] { UpdateButtons(); };
    lvwEntries->OnHeading = [this](int column) { SortBy(column); };
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(&lvwEntries->Window(), wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogMargin));
    content->Add(CreateColumnOfButtons(), wxSizerFlags());
    SetContent(content, CreateButtons(L"&OK", selecting ? L"Ab&brechen" : L"&Schließen"));
    if (!selecting) {
        cmdOK->Hide();
        cmdAbbrechen->SetDefault();
    }
    RefreshList();
    lvwEntries->Window().SetFocus();
}

wxSizer* frmAddressbook::CreateColumnOfButtons() {
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](wxButton*& button, const wxString& caption, auto&& action) {
        button = new wxButton(this, wxID_ANY, caption);
        button->Bind(wxEVT_BUTTON, [action](wxCommandEvent&) { action(); });
        buttons->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(kDialogGap)));
    };
    add(cmdNeu, L"&Neu...", [this] { OnNeu(); });
    add(cmdBearbeiten, L"Be&arbeiten...", [this] { OnBearbeiten(); });
    add(cmdLöschen, L"&Löschen", [this] { OnLöschen(); });
    buttons->AddSpacer(FromDIP(kDialogMargin));
    add(cmdAlle, L"&Alle", [this] { CheckAll(true); });
    add(cmdKeine, L"&Keine", [this] { CheckAll(false); });
    return buttons;
}

void frmAddressbook::WriteRow(int row, const clsAddressBookEntry& entry) {
    lvwEntries->SetText(row, kName, entry.PCName());
    lvwEntries->SetText(row, kAddress, entry.IP());
    lvwEntries->SetText(row, kComment, entry.Comment());
}

void frmAddressbook::RefreshList() {
    for (int row = lvwEntries->Count() - 1; row >= 0; --row) {
        if (!AddressBookEntryExists(lvwEntries->Text(row, kName))) lvwEntries->Delete(row);
    }
    std::unordered_map<std::wstring, int> rows;
    for (int row = 0; row < lvwEntries->Count(); ++row) rows[InCapitals(lvwEntries->Text(row, kName))] = row;
    for (const clsAddressBookEntry& entry : AddressBook()) {
        const auto found = rows.find(InCapitals(entry.PCName()));
        if (found == rows.end()) lvwEntries->Append();
        WriteRow(found != rows.end() ? found->second : lvwEntries->Count() - 1, entry);
    }
    Sort();
    UpdateButtons();
}

void frmAddressbook::SortBy(int column) {
    if (column < 0 || column >= kColumns) return;
    ascending_ = column != sortColumn_ || !ascending_;
    sortColumn_ = column;
    Sort();
}

void frmAddressbook::Sort() {
    if (sortColumn_ < 0) return;
    struct Row {
        std::wstring key;
        clsAddressBookEntry entry;
        bool checked;
    };
    std::vector<Row> rows;
    for (int row = 0; row < lvwEntries->Count(); ++row) {
        rows.push_back(
            {SortKey(lvwEntries->Text(row, sortColumn_)),
             {lvwEntries->Text(row, kName), lvwEntries->Text(row, kAddress), lvwEntries->Text(row, kComment)},
             lvwEntries->IsChecked(row)});
    }
    std::stable_sort(rows.begin(), rows.end(), [this](const Row& left, const Row& right) {
        return ascending_ ? left.key < right.key : right.key < left.key;
    });
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const Row& sorted = rows[static_cast<std::size_t>(row)];
        WriteRow(row, sorted.entry);
        lvwEntries->Check(row, sorted.checked);
    }
    if (sortColumn_ != kCheckBox) lvwEntries->ShowSorted(sortColumn_, ascending_);
}

void frmAddressbook::CheckAll(bool on) {
    for (int row = 0; row < lvwEntries->Count(); ++row) lvwEntries->Check(row, on);
    UpdateButtons();
}

void frmAddressbook::UpdateButtons() {
    bool anyChecked = false;
    for (int row = 0; row < lvwEntries->Count() && !anyChecked; ++row) {
        anyChecked = lvwEntries->IsChecked(row);
    }
    cmdBearbeiten->Enable(anyChecked);
    cmdLöschen->Enable(anyChecked);
}

std::vector<clsAddressBookEntry> frmAddressbook::CheckedEntries() const {
    std::vector<clsAddressBookEntry> entries;
    for (int row = 0; row < lvwEntries->Count(); ++row) {
        if (!lvwEntries->IsChecked(row)) continue;
        if (const clsAddressBookEntry* entry = GetAddressBookEntry(lvwEntries->Text(row, kName)))
            entries.push_back(*entry);
    }
    return entries;
}

void frmAddressbook::OnNeu() {
    if (editing.BroughtForward()) return;
    {
        const OneDialog::Opened<frmAddressbookEntryNew> dialog(editing);
        if (dialog->ShowModal() == 1) AddAddressBookEntry(dialog->Entry());
    }
    if (!IsQuitting()) RefreshList();
}

void frmAddressbook::OnBearbeiten() {
    const std::vector<clsAddressBookEntry> entries = CheckedEntries();
    if (entries.empty() || editing.BroughtForward()) return;
    {
        const OneDialog::Opened<frmAddressbookEntryEdit> dialog(editing);
        dialog->ShowModal(entries);
    }
    if (!IsQuitting()) RefreshList();
}

void frmAddressbook::OnLöschen() {
    if (editing.BroughtForward()) return;
    for (const clsAddressBookEntry& entry : CheckedEntries()) RemoveAddressBookEntry(entry.PCName());
    RefreshList();
}

std::vector<clsAddressBookEntry> ShowAddressBook(bool selecting) {
    static OneDialog once;
    if (once.BroughtForward()) return {};
    const OneDialog::Opened<frmAddressbook> list(once, selecting);
    if (list->ShowModal() != 1) return {};
    return list->CheckedEntries();
}
