#include "print/PrintNotes.h"

#include <wx/button.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "notes/NoteStore.h"
#include "print/frmPrint.h"
#include "print/frmPrintProgress.h"

namespace {

const wchar_t* const kTitle = L"Drucken";

// From the dialog to the end of the job.
OneDialog printing;

// What the user wants printed.
struct Order {
    std::vector<Note> notes;
    PrintRules rules;
    PrinterSettings settings;
};

std::wstring TitleOf(const Order& order) {
    return order.notes.size() == 1 ? L"Kivora: 1 Notiz"
                                   : L"Kivora: " + std::to_wstring(order.notes.size()) + L" Notizen";
}

// Asks the user, beginning with these settings, and keeps the ones that are chosen in the set-up.
std::optional<Order> AskForOrder(NoteStore& store, PrintSystem& system, const PrinterSettings& settings,
                                 const std::wstring& hint, std::optional<PrinterSettings>& chosen) {
    const OneDialog::Opened<frmPrint> dialog(printing, store, system, settings, hint);
    if (dialog->ShowModal() != 1) return std::nullopt;

    if (dialog->WasSetUp()) chosen = dialog->Settings();
    auto notes = ChosenNotes(store, dialog->fraNotes->Marked(), L"Drucken");
    if (!notes) return std::nullopt;
    return Order{std::move(*notes), dialog->Rules(), dialog->Settings()};
}

enum class PrintEnd { Done, Cancelled, Failed };

PrintEnd PrintPages(PrintJob& job, const Order& order, frmPrintProgress& progress) {
    PageLayout layout(order.notes, order.rules, order.settings.paper,
                      [&](std::wstring_view text, const PrintFont& font) { return job.Measure(text, font); });
    const auto stopped = [&] { return progress.Cancelled() || IsQuitting(); };
    progress.Value(0);
    while (!stopped()) {
        const std::optional<PrintedPage> page = layout.NextPage();
        if (!page) {
            progress.Value(100);
            if (stopped()) break;
            return job.Finish() ? PrintEnd::Done : PrintEnd::Failed;
        }
        if (!job.Put(*page)) return PrintEnd::Failed;
        progress.Value(static_cast<int>(std::floor(layout.Progress() * 99)));
    }
    return PrintEnd::Cancelled;
}

void Print(const Order& order, PrintSystem& system) {
    PrintSystem::Started started = system.Start(order.settings, TitleOf(order));
    if (IsQuitting()) return;
    if (!started.job) {
        if (!started.failure.empty()) ShowMessage(started.failure, kCritical, kTitle);
        return;
    }
    const OneDialog::Opened<frmPrintProgress> progress(printing);
    progress->Show();
    const PrintEnd end = PrintPages(*started.job, order, *progress);
    progress->Hide();
    const std::wstring failure = started.job->Failure();
    started.job.reset();  // withdrawn before the message says so
    if (IsQuitting()) return;
    if (end == PrintEnd::Failed) ShowMessage(failure, kCritical, kTitle);
    if (end == PrintEnd::Cancelled) {
        ShowMessage(L"Der Druckvorgang wurde vom Benutzer abgebrochen.", kInformation, kTitle);
    }
}

}  // namespace

bool PrintNotes(NoteStore& store, PrintSystem& system) {
    if (printing.BroughtForward()) return true;
    const PrinterList printers = system.Printers();
    if (printers.names.empty()) {
        ShowMessage(L"Die Druckfunktion wird deaktiviert, da kein Drucker(treiber) installiert ist.",
                    kCritical, kTitle);
        return false;
    }
    // What the user chooses in the set-up holds for this run, as long as there is that printer. Else the
    // printer is taken as it is set now, which may be otherwise than the last time.
    static std::optional<PrinterSettings> chosen;
    const auto& names = printers.names;
    if (chosen && std::find(names.begin(), names.end(), chosen->printer) == names.end()) chosen.reset();
    const PrinterSettings settings =
        chosen ? *chosen : PrinterSettings{printers.standard, system.PaperOf(printers.standard)};
    const OneDialog::Operation underWay(printing);
    const std::optional<Order> order = AskForOrder(store, system, settings, printers.hint, chosen);
    if (order && !IsQuitting()) Print(*order, system);
    return true;
}
