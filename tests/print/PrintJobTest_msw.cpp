// Printing by the spooler of Windows. Under Wine its driver writes PostScript; tests/with-printer has a
// printer.
#include <windows.h>

#include <gtest/gtest.h>
#include <winspool.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "base/ByteSource.h"
#include "print/PrintSystem.h"
#include "tests/support/Events.h"

namespace {

class PrintingOnWindows : public testing::Test {
  protected:
    void SetUp() override {
        if (!std::getenv("PRINTED")) GTEST_SKIP() << "there is no printer";
        for (auto& [root, place] : roots) {
            RegOpenKeyExW(root, nullptr, 0, KEY_ALL_ACCESS, &place);
            RegOverridePredefKey(root, nullptr);
        }
        settings.printer = SystemPrinting().Printers().standard;
        settings.paper = SystemPrinting().PaperOf(settings.printer);
    }

    // What the printer's dialog gives when this is chosen in it.
    std::vector<unsigned char> Chosen(void (*choose)(DEVMODEW&)) {
        HANDLE printer = nullptr;
        if (!OpenPrinterW(settings.printer.data(), &printer, nullptr)) return {};
        const auto properties = [&](DEVMODEW* to, DEVMODEW* from, DWORD how) {
            return DocumentPropertiesW(nullptr, printer, settings.printer.data(), to, from, how);
        };
        std::vector<unsigned char> bytes(static_cast<std::size_t>(properties(nullptr, nullptr, 0)));
        auto* mode = reinterpret_cast<DEVMODEW*>(bytes.data());
        properties(mode, nullptr, DM_OUT_BUFFER);
        choose(*mode);
        properties(mode, mode, DM_IN_BUFFER | DM_OUT_BUFFER);
        ClosePrinter(printer);
        return bytes;
    }

    // The name of the newest document among them.
    static std::wstring Newest(const std::filesystem::path& folder) {
        std::wstring newest;
        for (const auto& file : std::filesystem::directory_iterator(folder)) {
            const std::wstring name = file.path().filename().native();
            if (name.starts_with(L"d")) newest = std::max(newest, name);
        }
        return newest;
    }

    // What arrives at the printer of a document with two pages.
    std::string Printed() const {
        const std::filesystem::path folder = std::filesystem::path("Z:\\") / std::getenv("PRINTED");
        const std::wstring before = Newest(folder);
        const PrintSystem::Started started = SystemPrinting().Start(settings, L"Notizen");
        if (!started.job) return "no job";
        PrintedPage page;
        page.rules.push_back({72, 144, 72});
        if (!started.job->Put(page) || !started.job->Put(page) || !started.job->Finish()) return "failed";

        std::string printed;
        RunUntil([&] {
            printed = ByteSource::OfFile(folder / Newest(folder)).ReadRest();
            return Newest(folder) != before && printed.find("%%EOF") != printed.npos;
        });
        return printed;
    }

    PrinterSettings settings;

  private:
    void TearDown() override {
        for (auto& [root, place] : roots) {
            if (!place) continue;
            RegOverridePredefKey(root, place);
            RegCloseKey(place);
        }
    }

    // Printers are entered in the real registry, not in the one that tests have.
    std::pair<HKEY, HKEY> roots[2] = {{HKEY_LOCAL_MACHINE, nullptr}, {HKEY_CURRENT_USER, nullptr}};
};

bool Has(const std::string& text, const char* part) { return text.find(part) != text.npos; }

}  // namespace

TEST_F(PrintingOnWindows, UsesThePrintersOwnPaper) {
    EXPECT_EQ(settings.printer, L"Probe");
    EXPECT_NEAR(settings.paper.width, 210, 1);
    EXPECT_NEAR(settings.paper.height, 297, 1);
    const std::string printed = Printed();
    EXPECT_TRUE(Has(printed, "%%Pages: 2"));
    EXPECT_TRUE(Has(printed, "*PageSize A4"));
    EXPECT_TRUE(Has(printed, "%%Orientation: Portrait"));
}

TEST_F(PrintingOnWindows, KeepsWhatThePrintersDialogWasTold) {
    struct {
        const char* what;
        void (*choose)(DEVMODEW&);
        const char* printed;
    } const told[] = {
        {"both sides",
         [](DEVMODEW& mode) {
             mode.dmFields |= DM_DUPLEX;
             mode.dmDuplex = DMDUP_HORIZONTAL;
         },
         "/Duplex true/Tumble true"},
        {"a size of its own",
         [](DEVMODEW& mode) {
             mode.dmFields = (mode.dmFields | DM_PAPERWIDTH | DM_PAPERLENGTH) & ~DM_PAPERSIZE;
             mode.dmPaperWidth = 1000;
             mode.dmPaperLength = 1500;
         },
         "%%BoundingBox: 0 0 283 425"},  // points
    };
    const std::string usual = Printed();
    for (const auto& row : told) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(Has(usual, row.printed));
        settings.driver = Chosen(row.choose);
        EXPECT_TRUE(Has(Printed(), row.printed));
    }
}
