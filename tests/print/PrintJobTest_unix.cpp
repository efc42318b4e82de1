// Jobs on their way through a real printing service, and PDFs as other programs read them.
#include <wx/spinctrl.h>
#include <wx/stattext.h>

#include <sstream>

#include "base/Text.h"
#include "print/PaperFormats_unix.h"
#include "print/PrintSystem_unix.h"
#include "print/frmPrintProgress.h"
#include "print/frmPrinterSetup_unix.h"
#include "tests/print/CupsServer_unix.h"
#include "tests/print/PrintOrders.h"
#include "tests/support/Controls.h"
#include "tests/support/Files.h"
#include "tests/support/SmallDisk_unix.h"

namespace {

namespace fs = std::filesystem;

CupsServer& Server() {
    static CupsServer server(CUPS_SCRIPT);
    return server;
}

// The printing of the program, with a printer of the test's choice and without a dialog for file names.
class Printing : public UnixPrinting {
  public:
    Printing() : UnixPrinting([this] { return file; }) {}
    bool SetUp(PrinterSettings& settings) override {
        settings = {printer, {}};
        return true;
    }
    std::wstring printer;
    std::optional<fs::path> file;
};

const std::wstring kNoAnswer =
    L"Drucken|16|Der Druckdienst antwortet nicht. Es wurde nichts gedruckt.\r\nVersuchen Sie es später noch "
    L"einmal, oder wählen Sie unter \"Einstellung...\" den Drucker \"In Datei drucken (PDF)\".";

class PrintJobs : public PrintFixture {
  protected:
    static void SetUpTestSuite() {
        Server().Start();
        AddPrinters();
    }
    static void TearDownTestSuite() {
        Server().Stop();
        Server().Forget();
    }
    static void AddPrinters() {
        for (const std::string name : {"Andere", "Eins", "Zwei"})
            Server().Run("lpadmin -p " + name + " -E -v file:/dev/null -m raw");
        Server().Run("lpadmin -d Eins");
    }

    // Prints everything on the printer; `before` runs when the user is about to confirm.
    void PrintOn(const std::wstring& printer, std::function<void(frmPrint&)> before = {}) {
        printing.printer = printer;
        Print(printing, [=](frmPrint& dialog) {
            Press(dialog.cmdEinstellung);
            EXPECT_EQ(dialog.lblDrucker->GetLabelText(), printer);
            if (before) before(dialog);
            Press(dialog.cmdOK);
        });
    }

    Printing printing;
    const fs::path folder = fs::path(std::getenv("XDG_DATA_HOME")) / "print";
    PrintJobs() { fs::create_directories(folder); }
    ~PrintJobs() override { fs::remove_all(folder); }
};

// Where other programs paint the pages of a PDF, 72 points an inch.
std::vector<std::vector<wxPoint>> InkOf(const fs::path& pdf) {
    std::vector<std::vector<wxPoint>> pages;
    std::istringstream stream(ShellOutput("pdftoppm -r 72 -gray '" + pdf.string() + "'"));
    std::string magic;
    for (int width = 0, height = 0, white = 0; stream >> magic >> width >> height >> white;) {
        stream.get();
        pages.emplace_back();
        for (int at = 0; at < width * height; ++at)
            if (stream.get() < 128) pages.back().emplace_back(at % width, at / width);
    }
    return pages;
}

}  // namespace

TEST_F(PrintJobs, TakeThePaperThatThePrinterIsSetTo) {
    const struct {
        const char* media;
        double width, height;
        bool named;
    } rows[] = {{"iso_a5_148x210mm", 148, 210, true},
                {"na_letter_8.5x11in", 215.9, 279.4, true},
                {"na_legal_8.5x14in", 215.9, 355.6, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.media);
        Server().Run(std::string("lpadmin -p Zwei -o media-default=") + row.media);
        const PaperSize paper = printing.PaperOf(L"Zwei");
        EXPECT_EQ(paper.width, row.width);
        EXPECT_EQ(paper.height, row.height);
        EXPECT_EQ(FormatOf(paper) != nullptr, row.named);
        // The set-up offers it, whatever it is, and keeps it.
        auto* dialog = new frmPrinterSetup(printing.Printers(), {L"Eins", {300, 200}},
                                           [&](const std::wstring& name) { return printing.PaperOf(name); });
        EXPECT_TRUE(dialog->optQuerformat->GetValue());
        EXPECT_EQ(dialog->Settings().paper.width, 300);
        Click(*dialog->lstDrucker, 2);
        EXPECT_EQ(dialog->Settings().printer, L"Zwei");
        EXPECT_NEAR(dialog->Settings().paper.height, row.height, 0.5);
        dialog->optQuerformat->SetValue(true);
        EXPECT_NEAR(dialog->Settings().paper.width, row.height, 0.5);
        dialog->Destroy();
    }
    Server().Run("lpadmin -p Zwei -R media-default");
    EXPECT_EQ(printing.PaperOf(kPrintToFile).height, 297);
}

TEST_F(PrintJobs, BeginWithWhatTheUserHasSet) {
    Server().SetOptions("Dest Eins media=iso-a3\nDest Zwei PageSize=A5\nDefault Zwei/klein PageSize=A6\n");
    EXPECT_EQ(printing.Printers().standard, L"Zwei");
    EXPECT_EQ(printing.PaperOf(L"Eins").width, 297);
    EXPECT_EQ(printing.PaperOf(L"Zwei").width, 148);
    Server().SetOptions("");
}

TEST_F(PrintJobs, GoToThePrinterShownUnderATitle) {
    Add(L"Käse & Brot");
    Server().Run("cupsdisable Zwei");
    PrintOn(L"Zwei");
    EXPECT_TRUE(messages.empty());
    const std::string jobs = Server().Run("lpstat -W not-completed -o");
    Server().Run("cupsenable Zwei");
    EXPECT_NE(jobs.find("Zwei-"), std::string::npos) << jobs;
    EXPECT_EQ(jobs.find("Eins-"), std::string::npos) << jobs;
    const fs::path pdf = Server().Documents().back();
    const std::string name = pdf.filename();  // "d00001-001"; how it was ordered says "c00001"
    const fs::path order = pdf.parent_path() / ("c" + name.substr(1, name.find('-') - 1));
    EXPECT_TRUE(RunUntil([&] { return Content(order).find("iso_a4_210x297mm") != std::string::npos; }));
    EXPECT_EQ(ShellOutput("pdftotext -raw -enc UTF-8 '" + pdf.string() + "' -"),
              "21.11.2026, 09:05:00\nKäse & Brot\n1\n\f");
    EXPECT_NE(ShellOutput("pdfinfo '" + pdf.string() + "'").find("Kivora: 1 Notiz"), std::string::npos);
}

TEST_F(PrintJobs, KeepStrangeCharactersInsideTheMargins) {
    std::wstring tower = L"Turm: Z";
    tower.append(60, wchar_t{0x0301});
    Add(tower + L"\r\n" + std::wstring(300, L'W') + L"\r\n\t\t" + std::wstring(90, L'\t') + L"x\r\n" +
        std::wstring(400, wchar_t{0x05D0}) + L" \x0001\x2028\x2029\x0085 " +
        std::wstring(40, wchar_t{0xFDFD}));
    store.Notes()[0]->FontNoteItalic(true);
    store.Notes()[0]->FontNoteSize(25);
    printing.file = folder / "seltsam.pdf";
    PrintOn(kPrintToFile, [](frmPrint& dialog) {
        dialog.updwnLinks->SetValue(80);
        dialog.updwnRechts->SetValue(80);
    });
    ASSERT_TRUE(messages.empty());
    const auto pages = InkOf(*printing.file);
    EXPECT_FALSE(pages.empty());
    for (const std::vector<wxPoint>& page : pages) {
        EXPECT_FALSE(page.empty());
        for (const wxPoint& ink : page)
            ASSERT_TRUE(ink.x >= 225 && ink.x <= 369 && ink.y >= 55 && ink.y <= 786) << ink.x << "," << ink.y;
    }
}

TEST_F(PrintJobs, UnderlinedTextHasALineBelowAndNotesHaveOneBetweenThem) {
    frmNote& note = Add(L"nnnnnnnnnn", L"");
    Add(L"nnnnnnnnnn", L"");
    printing.file = folder / "a.pdf";
    std::size_t ink[2];
    for (const bool underlined : {false, true}) {
        note.FontNoteUnderlined(underlined);
        PrintOn(kPrintToFile);
        ASSERT_EQ(InkOf(*printing.file).size(), 1u);
        ink[underlined] = InkOf(*printing.file)[0].size();
    }
    EXPECT_GT(ink[1], ink[0] + 20);
    const auto page = InkOf(*printing.file)[0];
    EXPECT_TRUE(std::any_of(page.begin(), page.end(), [](const wxPoint& at) { return at.x > 500; }));
}

// Waiting for the service without a limit would never end: it goes on only when the row is over.
TEST_F(PrintJobs, FailWithOneClearMessage) {
    Add(L"eins");
    const struct {
        const char* name;
        std::function<void()> harm, mend;
        std::wstring message, hint;
    } rows[] = {
        {"gone", [] { Server().Run("sh -c 'for i in Andere Eins Zwei; do lpadmin -x $i; done'"); },
         [] { AddPrinters(); }, L"Drucken|16|Der Drucker \"Zwei\" ist nicht mehr vorhanden.",
         L"Es ist kein Drucker installiert."},
        {"refused", [] { Server().Run("cupsreject Zwei"); }, [] { Server().Run("cupsaccept Zwei"); },
         L"Drucken|16|Der Drucker \"Zwei\" nimmt keine Druckaufträge an.", L""},
        {"service stopped", [] { Server().Stop(); }, [] { Server().Start(); }, kNoAnswer,
         L"Der Druckdienst antwortet nicht."},
        {"service hanging", [] { Server().Signal(SIGSTOP); }, [] { Server().Signal(SIGCONT); }, kNoAnswer,
         L"Der Druckdienst antwortet nicht."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        messages.clear();
        const std::size_t documents = Server().Documents().size();
        PrintOn(L"Zwei", [&](frmPrint&) { row.harm(); });
        EXPECT_EQ(messages, std::vector{row.message});
        // Opening the dialog offers what is left.
        const PrinterList list = printing.Printers();
        const bool any = row.hint.empty();
        EXPECT_EQ(list.hint, any ? L"" : row.hint + L" Gedruckt wird in eine PDF-Datei.");
        EXPECT_EQ(list.standard, any ? L"Eins" : kPrintToFile);
        EXPECT_EQ(list.names.back(), kPrintToFile);
        row.mend();
        EXPECT_LE(Server().Documents().size(), documents);
    }
}

TEST_F(PrintJobs, WhatHappensToTheServiceMeanwhileIsToldOf) {
    Add(std::wstring(30000, L'\n'));
    for (const bool stopped : {true, false}) {
        const WhenShown<frmPrintProgress> user([=](frmPrintProgress&) {
            if (stopped)
                Server().Stop();
            else
                Server().Run("cancel -a -x");
        });
        PrintOn(L"Eins");
        if (stopped) Server().Start();
        Server().Run("cancel -a");
    }
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], kNoAnswer);
    EXPECT_TRUE(
        messages[1].starts_with(L"Drucken|16|Der Drucker \"Eins\" hat den Druckauftrag abgelehnt.\r\nJob #"));
}

TEST_F(PrintJobs, CancelledOnesAreWithdrawn) {
    Add(std::wstring(30000, L'\n'));
    const std::size_t documents = Server().Documents().size();
    PrintOn(L"Eins", [](frmPrint&) {
        wxTheApp->CallAfter([] {
            ASSERT_TRUE(RunUntil([] { return OpenDialog<frmPrintProgress>() != nullptr; }));
            Press(OpenDialog<frmPrintProgress>()->cmdAbbrechen);
        });
    });
    EXPECT_EQ(messages,
              std::vector<std::wstring>{L"Drucken|64|Der Druckvorgang wurde vom Benutzer abgebrochen."});
    EXPECT_EQ(Server().Documents().size(), documents);
    EXPECT_EQ(Server().Run("lpstat -W not-completed -o"), "");
}

TEST_F(PrintJobs, FilesAreReplacedOnlyByWholeOnes) {
    Add(std::wstring(30000, L'\n'));
    const fs::path old = folder / "alt.pdf";
    std::ofstream(old) << "alt";
    printing.file = old;
    {
        const WhenShown<frmPrintProgress> user(
            [](frmPrintProgress& progress) { Press(progress.cmdAbbrechen); });
        PrintOn(kPrintToFile);
    }
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_EQ(Content(old), "alt");
    PrintOn(kPrintToFile);
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_EQ(Content(old).substr(0, 5), "%PDF-");
    const std::string whole = Content(old);
    messages.clear();
    {
        const SmallDisk disk(whole.size() - 1);
        PrintOn(kPrintToFile);
    }
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Drucken|16|Die Druckdaten konnten nicht gespeichert werden.\r\n"));
    EXPECT_TRUE(Content(old) == whole);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);

    printing.file = folder / "gibt es nicht" / "a.pdf";
    PrintOn(kPrintToFile);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_NE(messages[1].find(L"konnte nicht angelegt werden."), std::wstring::npos);
    printing.file.reset();  // the user cancelled
    PrintOn(kPrintToFile);
    EXPECT_EQ(messages.size(), 2u);
}
