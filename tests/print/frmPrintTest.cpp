#include <wx/dcclient.h>
#include <wx/listbox.h>
#include <wx/settings.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

#include "print/frmPrint.h"
#include "print/frmPrintProgress.h"
#include "tests/print/PrintOrders.h"

namespace {

// Printers that exist only here. They write down what they get.
class PaperTray : public PrintSystem {
  public:
    class Job : public PrintJob {
      public:
        explicit Job(PaperTray& tray) : tray_(tray) {}
        ~Job() override { tray_.ended = true; }
        MeasuredText Measure(std::wstring_view text, const PrintFont& font) override {
            MeasuredText measured{{}, font.size, font.size / 4};
            for (std::size_t i = 1; i <= text.size(); ++i) {
                measured.ends.push_back(font.size / 2 * static_cast<double>(i));
            }
            return measured;
        }
        bool Put(const PrintedPage& page) override {
            tray_.pages.push_back(page);
            if (tray_.onPage) tray_.onPage();
            return tray_.takes;
        }
        bool Finish() override { return tray_.finished = tray_.works; }
        std::wstring Failure() const override { return L"Papier alle."; }

      private:
        PaperTray& tray_;
    };

    PrinterList Printers() override { return printers; }
    PaperSize PaperOf(const std::wstring&) override { return own; }
    bool SetUp(PrinterSettings& settings) override {
        if (onSetUp) onSetUp();
        settings.printer = L"Zwei";
        settings.paper = {100, 100};
        return true;
    }
    Started Start(const PrinterSettings& settings, const std::wstring& title) override {
        used = settings;
        this->title = title;
        return {std::make_unique<Job>(*this), {}};
    }

    PrinterList printers{{L"Eins", L"Zwei"}, L"Eins", {}};
    PaperSize own{148, 210};
    std::function<void()> onPage;
    std::function<void()> onSetUp;
    bool takes = true, works = true;
    PrinterSettings used;
    std::wstring title;
    std::vector<PrintedPage> pages;
    bool finished = false, ended = false;
};

class FrmPrint : public PrintFixture {
  protected:
    PaperTray tray;
};

}  // namespace

TEST_F(FrmPrint, StartsWithTheUsualRulesAndPrintsByThem) {
    Add(L"eins\r\nzwei");
    Add(L"drei");
    EXPECT_TRUE(Print(tray, [](frmPrint& dialog) {
        EXPECT_EQ(dialog.GetTitle(), L"Drucken");
        EXPECT_EQ(dialog.lblDrucker->GetLabelText(), L"Eins");
        ASSERT_EQ(dialog.lstNotizen->GetCount(), 2u);
        EXPECT_EQ(dialog.lstNotizen->GetString(0), L"eins zwei");
        EXPECT_EQ(dialog.txtDateSize->GetValue(), 12);
        const PrintRules rules = dialog.Rules();
        EXPECT_EQ((std::vector{rules.left, rules.right, rules.top, rules.bottom}),
                  (std::vector<double>{15, 15, 20, 20}));
        EXPECT_FALSE(rules.size);
        Press(dialog.cmdOK);
    }));
    EXPECT_EQ(tray.used.printer, L"Eins");
    EXPECT_EQ(tray.used.paper.width, 148);
    EXPECT_EQ(tray.title, L"Kivora: 2 Notizen");
    EXPECT_TRUE(tray.finished);
    ASSERT_EQ(tray.pages.size(), 1u);
    EXPECT_EQ(tray.pages[0].lines.size(), 6u);  // two dates, three lines and the number of the page
    EXPECT_NEAR(tray.pages[0].lines[0].left, 15 * 72 / 25.4, 0.01);
    EXPECT_TRUE(messages.empty());
    EXPECT_FALSE(OpenDialog<DialogWindow>());
}

TEST_F(FrmPrint, EnablesWhatMeansSomething) {
    Add(L"eins");
    Print(tray, [](frmPrint& dialog) {
        EXPECT_FALSE(dialog.txtDateSize->IsEnabled());
        Choose(dialog.optSchriftgradUser);
        EXPECT_TRUE(dialog.txtDateSize->IsEnabled());
        dialog.txtDateSize->SetValue(20);
        EXPECT_EQ(dialog.Rules().size, 20);
        Choose(dialog.optSchriftgradNotiz);
        EXPECT_FALSE(dialog.txtDateSize->IsEnabled());
        EXPECT_FALSE(dialog.Rules().size);
        Check(dialog.chkDatumZeit, false);
        EXPECT_TRUE(dialog.Rules().formatting && !dialog.Rules().dates);
        Check(dialog.chkFormatierung, false);
        EXPECT_FALSE(dialog.Rules().formatting);
        int margin = 6;
        for (wxSpinCtrl* box : {dialog.txtLinks, dialog.txtRechts, dialog.txtOben, dialog.txtUnten})
            box->SetValue(margin++);
        const PrintRules rules = dialog.Rules();
        EXPECT_EQ((std::vector{rules.left, rules.right, rules.top, rules.bottom}),
                  (std::vector<double>{6, 7, 8, 9}));
        Press(dialog.cmdKeine);
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdRefresh);
        EXPECT_TRUE(dialog.cmdOK->IsEnabled());
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_FALSE(tray.ended);
}

TEST_F(FrmPrint, ShowsAndUsesThePrinterOfTheSetUp) {
    Add(L"eins");
    Print(tray, [this](frmPrint& dialog) {
        tray.onSetUp = [&] {
            for (wxButton* button : {dialog.cmdEinstellung, dialog.cmdOK}) Press(button);
            EXPECT_EQ(dialog.State(), DialogState::Waiting);
            EXPECT_TRUE(PrintNotes(store, tray)) << "it is open already";
        };
        Press(dialog.cmdEinstellung);
        EXPECT_EQ(dialog.lblDrucker->GetLabelText(), L"Zwei");
        // The paper of this set-up is too small for such margins.
        dialog.updwnLinks->SetValue(80);
        Press(dialog.cmdOK);
        EXPECT_EQ(messages.size(), 1u);
        EXPECT_TRUE(dialog.IsShown());
        dialog.updwnLinks->SetValue(5);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(tray.used.printer, L"Zwei");
    EXPECT_EQ(tray.used.paper.width, 100);
    // The choice holds for the run, but not longer than there is such a printer.
    Print(tray, [](frmPrint& dialog) {
        EXPECT_EQ(dialog.lblDrucker->GetLabelText(), L"Zwei");
        Press(dialog.cmdAbbrechen);
    });
    tray.printers = {{L"Drei"}, L"Drei", L"Sonst ist keiner da."};
    Print(tray, [](frmPrint& dialog) {
        EXPECT_EQ(dialog.lblDrucker->GetLabelText(), L"Drei");
        EXPECT_TRUE(wxWindow::FindWindowByLabel(L"Sonst ist keiner da.", &dialog));
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(FrmPrint, CancelAndQuittingEndAtTheNextPage) {
    Add(std::wstring(250, L'\n'));
    for (const bool quitting : {true, false}) {
        SCOPED_TRACE(quitting);
        tray.pages.clear();
        tray.ended = false;
        int shown = -1;
        tray.onPage = [&] {
            auto* progress = OpenDialog<frmPrintProgress>();
            ASSERT_TRUE(progress);
            EXPECT_GE(progress->Value(), shown);
            shown = progress->Value();
            if (tray.pages.size() != 3) return;
            const wxSize bar = progress->picProgress->GetClientSize();
            wxClientDC drawn(progress->picProgress);
            for (const bool end : {false, true}) {
                wxColour colour;
                drawn.GetPixel(end ? bar.x - 3 : 2, bar.y / 2, &colour);
                EXPECT_EQ(colour == wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT), !end);
            }
            if (quitting)
                EndAllWaits();
            else
                Press(progress->cmdAbbrechen);
        };
        Print(tray, [](frmPrint& dialog) { Press(dialog.cmdOK); });
        ResetWaits();
        EXPECT_EQ(tray.pages.size(), 3u);
        EXPECT_GT(shown, 0);  // of three pages out of many
        EXPECT_FALSE(tray.finished);
        EXPECT_TRUE(tray.ended);
        EXPECT_FALSE(OpenDialog<DialogWindow>());
        EXPECT_EQ(messages.size(), quitting ? 0u : 1u);
    }
    EXPECT_EQ(messages.back(), L"Drucken|64|Der Druckvorgang wurde vom Benutzer abgebrochen.");
}

TEST_F(FrmPrint, TellsWhatWentWrong) {
    Add(L"eins");
    tray.works = false;
    Print(tray, [](frmPrint& dialog) { Press(dialog.cmdOK); });
    tray.takes = false;
    tray.works = true;
    Print(tray, [](frmPrint& dialog) { Press(dialog.cmdOK); });
    EXPECT_FALSE(tray.finished);
    frmNote& gone = Add(L"zwei");
    Print(tray, [&](frmPrint& dialog) {
        store.DeleteNote(gone);
        Press(dialog.cmdOK);
    });
    tray.printers = {};
    EXPECT_FALSE(PrintNotes(store, tray));
    EXPECT_EQ(messages,
              (std::vector<std::wstring>{
                  L"Drucken|16|Papier alle.", L"Drucken|16|Papier alle.",
                  L"Notiz existiert nicht|16|Eine zum Drucken vorgesehene Notiz existiert nicht mehr."
                  L"\r\nDer Vorgang wird abgebrochen.",
                  L"Drucken|16|Die Druckfunktion wird deaktiviert, da kein Drucker(treiber) installiert "
                  L"ist."}));
}
