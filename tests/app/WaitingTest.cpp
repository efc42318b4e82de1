// What may happen while the program waits for its user or for another computer. Each pair is a run of the
// whole program, at whose end nothing may be lost, there twice or still open.
#include <wx/textctrl.h>

#include <map>

#include "dialogs/Message.h"
#include "print/PrintNotes.h"
#include "tests/app/AllDialogs.h"
#include "tests/app/ProgramRun.h"
#include "tests/notes/NoteRecorder.h"

namespace {

using enum MenuItem;

auto Command(MenuItem item) {
    return [item](ProgramRun& run) { run.Choose(item); };
}

// Waits in a dialog of this kind, once it is filled.
template <class Dialog>
auto In(std::function<void(Dialog&)> fill = [](Dialog&) {}) {
    return [fill](ProgramRun&) {
        Dialog* const dialog = OpenDialog<Dialog>();
        if (dialog) fill(*dialog);
        return dialog != nullptr;
    };
}

// Waits in what this button of the dialog leads to; done: that is there.
template <class Dialog>
auto Behind(
    wxButton* Dialog::*button, bool (*done)(), std::function<void(Dialog&)> fill = [](Dialog&) {}) {
    return [=](ProgramRun& run) {
        if (done()) return true;
        if (Dialog* const dialog = OpenDialog<Dialog>(); dialog == OpenDialog<DialogWindow>()) {
            if (dialog) fill(*dialog);
            run.LaterPress(button);
        } else {
            run.GoOn();
        }
        return false;
    };
}

template <class Dialog>
bool IsOpen() {
    return OpenDialog<Dialog>() != nullptr;
}

bool IsAskedToOverwrite() {
    const auto* box = OpenDialog<frmMessage>();
    return box && box->GetTitle() == L"Datei existiert bereits";
}

void Write(frmProperties& dialog) { dialog.txtMessage->SetValue(kWritten); }
void FillExport(frmExport& dialog) { dialog.txtPfad->SetValue(FileName(TestFile("hinaus.kvr"))); }
void FillImport(frmImport& dialog) { dialog.txtDatei->SetValue(FileName(TestFile("herein.kvr"))); }
void FillMail(frmSendAsEMail& dialog) { dialog.Frame1->MarkAll(true); }
void FillSending(frmSendOverNetwork& dialog) { dialog.txtEmpfänger->SetValue(L"127.0.0.1"); }
void FillEntry(frmAddressbookEntryNew& dialog) {
    dialog.txtPCName->SetValue(L"Flur");
    dialog.txtIP->SetValue(L"127.0.0.1");
}
void FillEntry(frmAddressbookEntryEdit& dialog) { dialog.txtComment->SetValue(L"geändert"); }
void CheckAll(frmAddressbook& dialog) { Press(dialog.cmdAlle); }

// Where there is no printer, the message that says so; then printing is no longer offered.
bool IsPrinting() { return IsOpen<frmPrint>() || IsOpen<frmMessage>(); }
bool IsOfferedWithAPrinter(ProgramRun& run) {
    const std::vector<TrayMenuEntry> menu = run.Start().DescribeMenu(nullptr);
    const auto print = std::ranges::find(menu, IdOf(mnuNotizDruck), &TrayMenuEntry::id);
    return print->enabled == !SystemPrinting().Printers().names.empty();
}
bool IsSettingUp() {
    return OpenDialog<DialogWindow>() && OpenDialog<DialogWindow>() != OpenDialog<frmPrint>();
}

void Connect(ProgramRun& run) {
    run.peer.emplace(RawConnection::To(run.port));
    run.peer->Send("NOTE_NEW\r\nNOTE_TEXT empfangen\r\n");
}
bool Finished(ProgramRun& run) {
    if (!run.Heard(3)) return false;
    return run.Heard(4) || !run.peer->Send("NOTE_FINISHED\r\n");
}

// As if very much had come before.
void Flood(ProgramRun& run) {
    frmNote& note = *run.Store().Notes()[0];
    note.Hide();
    note.Text(std::wstring(kMostUntouchedCharacters, L'x'));
    note.Untouched(true);
    Connect(run);
    run.peer->Send("NOTE_FINISHED\r\n");
}
bool IsAskedAboutFlood(ProgramRun& run) {
    if (IsOpen<frmFlood>()) run.Store().Notes()[0]->Text(kFirst);
    return IsOpen<frmFlood>();
}

void BreakBin(ProgramRun& run) {
    run.Store().OnDelete = [keep = run.Store().OnDelete](const Note& note) {
        return note.text == kWritten ? KeepResult{KeepFailure::DiskFull} : keep(note);
    };
    run.Choose(mnuNotizNeu);
}
bool IsAskedToQuit(ProgramRun& run) {
    if (IsOpen<frmUnsaved>()) return true;
    if (In<frmProperties>(Write)(run)) run.Later([&run] { run.Choose(mnuNotizEnde); });
    return false;
}

// By the names of all dialogs, and what waits besides.
const std::map<std::string, Waiting> kWaiting = {
    {"note", {.open = Command(mnuNotizNeu), .waits = In<frmProperties>(Write), .written = kWritten}},
    {"note, edited",
     {.open =
          [](ProgramRun& run) {
              run.Store().Host().RunFromTrayMenu(*run.Store().Notes()[0], IdOf(mnuNotizBearbeiten));
          },
      .waits = In<frmProperties>(Write),
      .written = kWritten,
      .edited = true}},
    {"export", {.open = Command(mnuNotizExport), .waits = In<frmExport>(FillExport), .exported = true}},
    {"export, loss question",
     {.open = Command(mnuNotizExport),
      .waits = Behind<frmExport>(&frmExport::cmdOK, IsOpen<frmMessage>, FillExport),
      .exported = true}},
    {"question",
     {.open =
          [](ProgramRun& run) {
              std::ofstream(TestFile("hinaus.kvr"));
              run.Choose(mnuNotizExport);
          },
      .waits = Behind<frmExport>(&frmExport::cmdOK, IsAskedToOverwrite, FillExport),
      .exported = true}},
    {"export, file chooser",
     {.open = Command(mnuNotizExport),
      .waits =
          Behind<frmExport>(&frmExport::cmdSearch, [] { return FileDialogOnScreen::Find() != nullptr; })}},
    {"import",
     {.open = Command(mnuNotizImport), .waits = In<frmImport>(FillImport), .notes = {L"eingelesen"}}},
    {"print",
     {.open = Command(mnuNotizDruck),
      .waits = [](ProgramRun&) { return IsPrinting(); },
      .over = IsOfferedWithAPrinter}},
    {"printer set-up",
     {.open = Command(mnuNotizDruck), .waits = Behind<frmPrint>(&frmPrint::cmdEinstellung, IsSettingUp)}},
    {"e-mail", {.open = Command(mnuNotizSenden), .waits = In<frmSendAsEMail>(FillMail)}},
    {"network", {.open = Command(mnuNotizSendOverNetwork), .waits = In<frmSendOverNetwork>(FillSending)}},
    {"sending",
     {.open = Command(mnuNotizSendOverNetwork),
      .waits = Behind<frmSendOverNetwork>(&frmSendOverNetwork::cmdOK, IsOpen<frmSendOverNetworkProgress>,
                                          FillSending)}},
    {"receiving",
     {.open = Connect,
      .waits = [](ProgramRun& run) { return run.Heard(3); },
      .notes = {L"empfangen"},
      .over = Finished}},
    {"address book", {.open = Command(mnuNotizAdressbuch), .waits = In<frmAddressbook>()}},
    {"address book, picking",
     {.open = Command(mnuNotizSendOverNetwork),
      .waits = Behind<frmSendOverNetwork>(&frmSendOverNetwork::cmdAdressbuch, IsOpen<frmAddressbook>)}},
    {"new entry",
     {.open = Command(mnuNotizAdressbuch),
      .waits =
          [](ProgramRun& run) {
              return In<frmAddressbookEntryNew>([](auto& dialog) { FillEntry(dialog); })(run) ||
                     Behind<frmAddressbook>(&frmAddressbook::cmdNeu, IsOpen<frmAddressbookEntryNew>)(run);
          },
      .addresses = {L"Büro ", L"Flur "}}},
    {"edited entries",
     {.open = Command(mnuNotizAdressbuch),
      .waits =
          [](ProgramRun& run) {
              return In<frmAddressbookEntryEdit>([](auto& dialog) { FillEntry(dialog); })(run) ||
                     Behind<frmAddressbook>(&frmAddressbook::cmdBearbeiten, IsOpen<frmAddressbookEntryEdit>,
                                            CheckAll)(run);
          },
      .addresses = {L"Büro geändert"}}},
    {"find",
     {.open =
          [](ProgramRun& run) {
              run.HandOverCommand({L"--find", {L"zwei", L"Ω"}});
          },
      .waits = In<frmFind>([](frmFind& dialog) { EXPECT_EQ(dialog.txtSuchen->GetValue(), kRare); })}},
    {"info", {.open = Command(mnuNotizInfo), .waits = In<frmInfo>()}},
    {"flood", {.open = Flood, .waits = IsAskedAboutFlood}},
    {"unsaved", {.open = BreakBin, .waits = IsAskedToQuit, .written = kWritten, .binFails = true}},
    {"message",
     {.open = [](ProgramRun&) { ShowMessage(L"Text", kInformation, L"Titel"); }, .waits = In<frmMessage>()}},
    {"menu of the icon",
     {.open = [](ProgramRun& run) { run.Start().ShowPopupMenu(nullptr); },
      .waits = [](ProgramRun&) { return MenuOnScreen::Find().has_value(); }}},
    {"menu of a note",
     {.open = [](ProgramRun& run) { run.Store().Host().ShowPopupMenu(*run.Store().Notes()[0], {}); },
      .waits = [](ProgramRun&) { return MenuOnScreen::Find().has_value(); },
      .deleted = true}},
};

const Happening kHappenings[] = {
    {"a note is deleted", [](ProgramRun& run) { run.Store().DeleteNote(*run.Store().Notes()[0]); }, {}, true},
    {"a note arrives",
     [](ProgramRun& run) { EXPECT_TRUE(run.Store().AddNoteIfKept({.text = L"angekommen"}).Kept()); },
     {L"angekommen"}},
    {"all notes are minimized",
     [](ProgramRun& run) {
         run.Choose(mnuMinimizeAll);
         EXPECT_EQ(run.Store().CountVisibleNotes(), 0u);
     }},
    {"a file is handed over, and dropped on a note",
     [](ProgramRun& run) {
         run.HandOver(TestFile("kopie.kvr"));
         run.Store().Host().ImportFiles({FileName(TestFile("kopie.kvr"))});
     },
     {L"übergeben", L"übergeben"}},
    {.name = "quit", .happens = Command(mnuNotizEnde), .ends = true},
    {.name = "a signal ends it",
     .happens = [](ProgramRun& run) { run.TheProgram().EndAtOnce(); },
     .ends = true},
    {.name = "the display dies", .happens = [](ProgramRun& run) { run.DisplayDies(); }, .ends = true},
};

class WhileItWaits : public testing::TestWithParam<std::pair<const std::string, Waiting>> {};

TEST_P(WhileItWaits, AnythingMayHappen) {
    for (const Happening& happening : kHappenings) {
        SCOPED_TRACE(happening.name);
        ProgramRun(GetParam().second, happening).Go();
        if (HasFailure()) return;  // each further one might wait for what does not come
    }
}

INSTANTIATE_TEST_SUITE_P(All, WhileItWaits, testing::ValuesIn(kWaiting), [](const auto& each) {
    std::string name;
    for (const char c : each.param.first) {
        if (std::isalnum(static_cast<unsigned char>(c))) name += c;
    }
    return name;
});

TEST(WaitingDialogs, AreAllInTheTable) {
    NoteRecorder recorder;
    NoteStore store(recorder);
    for (const NamedDialog& dialog : AllDialogs(store, {})) {
        // Printing waits for nobody: it lets events run between two pages.
        EXPECT_TRUE(kWaiting.contains(dialog.name) || dialog.name == "printing") << dialog.name;
    }
}

}  // namespace
