#include "app/Startup.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/log.h>

#include <optional>

#include "addressbook/frmAddressbook.h"
#include "app/FirstHint.h"
#include "app/KeptCommands.h"
#include "app/KivoraApp.h"
#include "app/Platform.h"
#include "app/frmSplash.h"
#include "app/frmStart.h"
#include "base/FileName.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "exchange/Association.h"
#include "exchange/ExportNotes.h"
#include "exchange/ImportNotes.h"
#include "exchange/KeptNotes.h"
#include "mail/SendAsEMail.h"
#include "model/KeepReason.h"
#include "net/SendNotes.h"
#include "net/frmFlood.h"
#include "notes/NoteDrop.h"
#include "notes/basNotes.h"
#include "print/PrintNotes.h"

Program::Program(std::unique_ptr<RunningCopy> role, const NetworkAccess::Options& network)
    : role_(std::move(role)), keeping_(Store()), network_(Store(), network) {}
Program::~Program() = default;

void Program::Reside() {
    InitApplication();
    if (!IsQuitting()) wxTheApp->MainLoop();
    Unload();
}

void Program::InitApplication() {
    frmSplash::ShowForAMoment();
    if (IsQuitting()) return;
    RegisterFileExtensions();
    LoadNotes();
    const bool firstStart = IsFirstStart();
    start_ = new frmStart(Store(), [this] { QuitApplication(); });
    start_->AddCommand(MenuItem::mnuNotizImport, [this] { ImportNotes(Store()); });
    start_->AddCommand(MenuItem::mnuNotizExport, [this] { ExportNotes(Store()); });
    start_->AddCommand(MenuItem::mnuNotizDruck, [this] { Print(); });
    start_->AddCommand(MenuItem::mnuNotizSenden, [this] { SendNotesAsEMail(Store()); });
    start_->AddCommand(MenuItem::mnuNotizSendOverNetwork, [this] {
        SendNotesOverNetwork(network_, Store());
        if (!IsQuitting()) receiving_->BookChanged();
    });
    start_->AddCommand(MenuItem::mnuNotizAdressbuch, [this] {
        network_.Listen();
        ShowAddressBook(false);
        if (IsQuitting()) return;
        Store().SaveNotes();
        receiving_->BookChanged();
    });
    services_.OpenMenu = [this](frmNote* note, std::optional<wxPoint> at) {
        start_->ShowPopupMenu(note, at);
    };
    services_.DescribeMenu = [this](const frmNote& note) { return start_->DescribeMenu(&note); };
    services_.RunMenu = [this](frmNote& note, int id) { start_->RunFromTrayMenu(&note, id); };
    services_.ImportFile = [this](const std::wstring& fileName) { ReceiveFile(fileName); };
    Notification::TakeDrops([this] { return NoteDropTarget(services_); });
    start_->notIcon.ShowIcon();
    network_.OnFlood = [this](const FloodGuard::Flood& flood) { AskAboutFlood(network_, flood); };
    receiving_.emplace(network_, [this] { ShowState(); });
    receiving_->From(ReadReceiveFrom());
    keeping_.OnTrouble([this](Trouble trouble) {
        trouble_ = trouble;
        ShowState();
    });
    commands_.emplace(
        Store(), *receiving_,
        CopyCommands::Dialogs{.find = [this](const std::wstring& words) { services_.Find(words); },
                              .print = [this] { Print(); }});
    keeping_.OnReadLate = [this] { receiving_->From(ReadReceiveFrom()); };
    keeping_.TakeInLeftWork();
    Store().ShowNotes([this, firstStart] { HasComeUp(firstStart); });
    if (role_) {
        role_->Listen([this](const Command& command) {
            CommandAnswer answer{1, L"Der Befehl ist fehlgeschlagen.\n"};
            Guarded([&] { answer = CarryOut(command); });
            return answer;
        });
    }
}

void Program::HasComeUp(bool firstStart) {
    SettleDown();
    if (firstStart && Store().CountNotes() == 0) {
        Store().SaveNotes();  // from now on there is something
        start_->GreetNewcomer();
    }
    keeping_.Tell(Keeping::Boxes::Unwaited);
    if (SeesNotesOfAllUsers())
        TellMessage(
            L"Kivora läuft mit den Rechten eines Administrators und zeigt deshalb nicht Ihre Notizen, "
            L"sondern solche, die für alle Benutzer dieses Computers gelten: Was Sie jetzt schreiben, "
            L"sehen auch die anderen, und löschen können sie es nicht.\r\n\r\nBeenden Sie Kivora und "
            L"starten Sie es ohne diese Rechte, dann sind Ihre eigenen Notizen wieder da.",
            kExclamation, L"Notizen aller Benutzer");
}

CommandAnswer Program::CarryOut(const Command& command) {
    if (command.name.empty()) {
        ReceiveFile(command.arguments[0]);
        return {};
    }
    return commands_->CarryOut(command);
}

void Program::Print() {
    if (!PrintNotes(Store())) start_->RemoveCommand(MenuItem::mnuNotizDruck);
}

void Program::ShowState() {
    if (!start_ || !receiving_) return;
    start_->ShowState({trouble_, receiving_->Now().from, receiving_->Now().portTaken});
}

void Program::LoadNotes() {
    Store().OnLongText = KeepLongNote;
    keeping_.Load();
}

void Program::ReceiveFile(const std::wstring& fileName) {
    const bool imported = ImportNotes(Store(), fileName);
    Store().SaveNotes();
    Store().ApplyForeground();
    if (imported) return;
    // Who handed it over says nothing more once it is taken. The next file does not wait for the answer.
    failed_.push_back(fileName);
    wxTheApp->CallAfter([this] { Guarded([&] { ReportFailure(); }); });
}

void Program::ReportFailure() {
    if (failed_.empty() || IsQuitting()) return;
    const std::wstring file = std::move(failed_.front());
    failed_.pop_front();
    ShowImportFailure(file);
}

bool Program::ImportFiles(const std::vector<std::wstring>& files) {
    files_.assign(files.begin(), files.end());
    LoadNotes();
    if (role_) {
        role_->Listen([this](const Command& command) {
            if (!command.name.empty()) return CarryOutAlone(command);
            files_.push_back(command.arguments[0]);
            return CommandAnswer();
        });
    }
    keeping_.Tell(Keeping::Boxes::Waited);
    bool all = ImportQueuedFiles();
    if (role_) role_->Finish();
    all = ImportQueuedFiles() && all;
    Store().SaveNotes();
    Unload();
    return all && failed_.empty();
}

bool Program::ImportQueuedFiles() {
    bool all = true;
    while (!files_.empty()) {
        const std::wstring file = std::move(files_.front());
        files_.pop_front();
        // Before the message, because that may stay for long and what it says has to be true meanwhile.
        if (const std::optional<std::wstring> reason = WhyNotImported(Store(), file)) {
            all = false;
            ShowImportFailure(file, *reason);
        } else {
            ShowMessage(L"Die Notizen aus " + ShownFileName(file) + L" wurden erfolgreich importiert.",
                        kInformation, L"Importieren erfolgreich");
        }
    }
    return all;
}

std::vector<std::wstring> Program::Unreported() const {
    std::vector<std::wstring> files(failed_.begin(), failed_.end());
    files.insert(files.end(), files_.begin(), files_.end());
    return files;
}

void Program::ReportSilentCopy(std::vector<std::wstring> files) {
    while (!files.empty() && !IsQuitting()) {
        ShowMessage(L"Die Datei " + ShownFileName(files.front()) +
                        L" konnte nicht importiert werden.\r\nKivora reagiert nicht.",
                    kCritical, L"Fehler");
        files.erase(files.begin());
        while (!files.empty() && HandOver(files.front())) files.erase(files.begin());
    }
    Unload();
}

void Program::PrintFiles(const std::vector<std::wstring>& files) {
    for (const std::wstring& file : files) ImportNotes(Store(), file);
    PrintNotes(Store());
    Unload();
}

void Program::QuitApplication() {
    if (!IsQuitting() && keeping_.MayQuit()) EndAtOnce();
}

void Program::EndAtOnce() {
    if (IsQuitting()) return;
    // The other copies have been told that these files are taken.
    if (role_) role_->Finish();
    for (; !files_.empty(); files_.pop_front())
        if (WhyNotImported(Store(), files_.front())) failed_.push_back(files_.front());
    keeping_.KeepAtOnce(Unreported());
    EndAllWaits();
    if (wxEventLoopBase* loop = wxTheApp->GetMainLoop()) loop->ScheduleExit(0);
}

void Program::DisplayHasDied() {
    if (!IsQuitting()) keeping_.KeepWithoutDisplay(Unreported());
}

void Program::Unload() {
    receiving_.reset();
    network_.Stop();
    stateTimer_.reset();
    Store().UnloadAllNotes();
    if (start_) {
        start_->notIcon.HideIcon();
        start_->Destroy();
        start_ = nullptr;
    }
}

int RunProgram(const StartRequest& request, std::unique_ptr<RunningCopy> role, char* programName) {
    const bool runningCopy = role != nullptr;
    // Lives longer than the windows, which wxWidgets destroys when it ends.
    std::optional<Program> program;
    auto* app = new KivoraApp([&] {
        program.emplace(std::move(role));
        const EndRequests endRequests([&] { Guarded([&] { program->EndAtOnce(); }); });
        WhenDisplayDies([&] { Guarded([&] { program->DisplayHasDied(); }); });
        if (request.kind != StartRequest::Resident) SettleDown();
        if (request.kind == StartRequest::Print) {
            program->PrintFiles(request.files);
        } else if (request.kind == StartRequest::Resident) {
            program->Reside();
        } else if (runningCopy) {
            return program->ImportFiles(request.files) ? 0 : 1;
        } else {
            program->ReportSilentCopy(request.files);
            return 1;
        }
        return 0;
    });
    wxApp::SetInstance(app);
    // The arguments are read already, and wxWidgets would find options of its own among them.
    int count = 1;
    char* arguments[] = {programName, nullptr};
    bool started = false;
    {
        const wxLogNull quiet;  // we say it ourselves
        started = wxEntryStart(count, arguments);
    }
    if (!started) {
        PrintError(L"Kivora braucht einen Bildschirm, aber DISPLAY nennt keinen, der erreichbar ist.\n");
        return 1;
    }
    StyleWindows();
    const int result = app->CallOnInit() ? app->OnRun() : 1;
    app->OnExit();
    wxEntryCleanup();
    return result;
}
