// Printing by the spooler of Windows.
#include <windows.h>

#include <commdlg.h>
#include <winspool.h>
#include <wx/app.h>
#include <wx/fontutil.h>
#include <wx/window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

#include "dialogs/CancelPopup_msw.h"
#include "dialogs/Wait.h"
#include "notes/NoteFont.h"
#include "print/PrintSystem.h"

namespace {

constexpr double kPointsPerInch = 72;
constexpr double kMillimetresPerInch = 25.4;
constexpr double kRuleWidth = 0.5;  // points
const wchar_t* const kFailed = L"Der Druckauftrag konnte nicht gedruckt werden.";

std::wstring StandardPrinter() {
    DWORD size = 0;
    GetDefaultPrinterW(nullptr, &size);
    std::wstring name(size, L'\0');
    if (!GetDefaultPrinterW(name.data(), &size)) return {};
    return name.c_str();
}

// The paper of a printer with these settings, if Windows tells it.
std::optional<PaperSize> PaperOf(const std::wstring& printer, const DEVMODEW& mode) {
    const HDC dc = CreateICW(L"WINSPOOL", printer.c_str(), nullptr, &mode);
    if (!dc) return std::nullopt;
    const auto millimetres = [dc](int size, int dotsPerInch) {
        return GetDeviceCaps(dc, size) * kMillimetresPerInch / GetDeviceCaps(dc, dotsPerInch);
    };
    const PaperSize paper{millimetres(PHYSICALWIDTH, LOGPIXELSX), millimetres(PHYSICALHEIGHT, LOGPIXELSY)};
    DeleteDC(dc);
    return paper;
}

// A DEVMODEW and what the printer's driver adds, as the user or Windows has set it; empty when there is no
// such printer.
std::vector<BYTE> OwnModeOf(std::wstring printer) {
    HANDLE handle = nullptr;
    if (!OpenPrinterW(printer.data(), &handle, nullptr)) return {};
    const LONG size = DocumentPropertiesW(nullptr, handle, printer.data(), nullptr, nullptr, 0);
    std::vector<BYTE> bytes(static_cast<std::size_t>(std::max<LONG>(size, 0)));
    auto* mode = reinterpret_cast<DEVMODEW*>(bytes.data());
    if (!bytes.empty() &&
        DocumentPropertiesW(nullptr, handle, printer.data(), mode, nullptr, DM_OUT_BUFFER) != IDOK)
        bytes.clear();
    ClosePrinter(handle);
    return bytes;
}

// What the printer's dialog was told, else its own settings.
std::vector<BYTE> DeviceModeOf(const PrinterSettings& settings) {
    return settings.driver.empty() ? OwnModeOf(settings.printer) : settings.driver;
}

// Draws on the device context of a printer, which it owns. GDI counts in dots of the printer from the first
// place where it can print; pages count in points from the corner of the paper.
class SpoolerJob : public PrintJob {
  public:
    explicit SpoolerJob(HDC dc)
        : dc_(dc),
          scaleX_(GetDeviceCaps(dc, LOGPIXELSX) / kPointsPerInch),
          scaleY_(GetDeviceCaps(dc, LOGPIXELSY) / kPointsPerInch),
          originX_(GetDeviceCaps(dc, PHYSICALOFFSETX)),
          originY_(GetDeviceCaps(dc, PHYSICALOFFSETY)) {}
    ~SpoolerJob() override {
        if (!finished_) AbortDoc(dc_);
        SelectFont(nullptr);
        DeleteDC(dc_);
    }

    MeasuredText Measure(std::wstring_view text, const PrintFont& font) override {
        Use(font);
        MeasuredText measured;
        std::vector<int> ends(text.size());
        SIZE size{};
        if (!text.empty())
            GetTextExtentExPointW(dc_, text.data(), static_cast<int>(text.size()), 0, nullptr, ends.data(),
                                  &size);
        for (const int end : ends) measured.ends.push_back(end / scaleX_);
        TEXTMETRICW metric{};
        GetTextMetricsW(dc_, &metric);
        measured.ascent = metric.tmAscent / scaleY_;
        measured.descent = metric.tmDescent / scaleY_;
        // GDI does not tell how far slanted letters lean out of the width that it gives.
        if (font.look.italic) measured.left = measured.right = font.size / 4;
        return measured;
    }

    bool Put(const PrintedPage& page) override {
        if (StartPage(dc_) <= 0) return Failed();
        // StartPage sets the device context back.
        SetBkMode(dc_, TRANSPARENT);
        SetTextAlign(dc_, TA_BASELINE | TA_LEFT);
        for (const PrintedLine& line : page.lines) {
            for (const PrintedText& part : line.parts) {
                Use(part.font);
                TextOutW(dc_, X(part.x), Y(part.baseline), part.text.data(),
                         static_cast<int>(part.text.size()));
            }
        }
        for (const PrintedPage::Rule& rule : page.rules) {
            const int thickness = std::max(1, static_cast<int>(kRuleWidth * scaleY_));
            PatBlt(dc_, X(rule.left), Y(rule.y), X(rule.right) - X(rule.left), thickness, BLACKNESS);
        }
        return EndPage(dc_) > 0 || Failed();
    }

    bool Finish() override {
        finished_ = true;
        return EndDoc(dc_) > 0 || Failed();
    }

    std::wstring Failure() const override { return failure_; }

  private:
    int X(double points) const { return static_cast<int>(std::lround(points * scaleX_)) - originX_; }
    int Y(double points) const { return static_cast<int>(std::lround(points * scaleY_)) - originY_; }

    bool Failed() {
        failure_ = kFailed;
        return false;
    }

    void Use(const PrintFont& font) {
        if (font_ && font == used_) return;
        used_ = font;
        LOGFONTW wanted = NoteFont(font.look).GetNativeFontInfo()->lf;
        wanted.lfHeight = -static_cast<LONG>(std::lround(font.size * scaleY_));
        SelectFont(CreateFontIndirectW(&wanted));
    }

    // Takes the font over, and with it the one before is deleted; null selects that of Windows.
    void SelectFont(HFONT font) {
        const HGDIOBJ before = SelectObject(dc_, font ? font : GetStockObject(SYSTEM_FONT));
        if (font_) DeleteObject(before);
        font_ = font;
    }

    const HDC dc_;
    const double scaleX_, scaleY_;
    const int originX_, originY_;
    HFONT font_ = nullptr;
    PrintFont used_;
    bool finished_ = false;
    std::wstring failure_;
};

class Spooler : public PrintSystem {
  public:
    PrinterList Printers() override;
    PaperSize PaperOf(const std::wstring& printer) override;
    bool SetUp(PrinterSettings& settings) override;
    Started Start(const PrinterSettings& settings, const std::wstring& title) override;
};

PrinterList Spooler::Printers() {
    constexpr DWORD kWhich = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    DWORD size = 0, count = 0;
    EnumPrintersW(kWhich, nullptr, 4, nullptr, 0, &size, &count);
    std::vector<BYTE> bytes(size);
    PrinterList list;
    if (size > 0 && EnumPrintersW(kWhich, nullptr, 4, bytes.data(), size, &size, &count)) {
        const auto* printers = reinterpret_cast<const PRINTER_INFO_4W*>(bytes.data());
        for (DWORD i = 0; i < count; ++i) list.names.push_back(printers[i].pPrinterName);
    }
    list.standard = StandardPrinter();
    const bool known = std::find(list.names.begin(), list.names.end(), list.standard) != list.names.end();
    if (!known) list.standard = list.names.empty() ? L"" : list.names.front();
    return list;
}

PaperSize Spooler::PaperOf(const std::wstring& printer) {
    const std::vector<BYTE> mode = OwnModeOf(printer);
    if (mode.empty()) return {};
    return ::PaperOf(printer, *reinterpret_cast<const DEVMODEW*>(mode.data())).value_or(PaperSize());
}

HGLOBAL Global(const void* data, std::size_t size) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(memory), data, size);
    GlobalUnlock(memory);
    return memory;
}

bool Spooler::SetUp(PrinterSettings& settings) {
    const std::vector<BYTE> mode = DeviceModeOf(settings);
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = wxTheApp->GetTopWindow() ? GetActiveWindow() : nullptr;
    dialog.Flags = PD_PRINTSETUP;
    if (!mode.empty()) dialog.hDevMode = Global(mode.data(), mode.size());
    const EndedWithWaits endedWithWaits([&] { CancelPopupOf(dialog.hwndOwner); });
    const bool confirmed = PrintDlgW(&dialog) && !IsQuitting();
    if (confirmed && dialog.hDevNames) {
        const auto* names = static_cast<const DEVNAMES*>(GlobalLock(dialog.hDevNames));
        settings.printer = reinterpret_cast<const wchar_t*>(names) + names->wDeviceOffset;
        GlobalUnlock(dialog.hDevNames);
    }
    if (confirmed && dialog.hDevMode) {
        const auto* chosen = static_cast<const DEVMODEW*>(GlobalLock(dialog.hDevMode));
        // No more than 31 characters of the name stand here.
        if (!dialog.hDevNames) settings.printer = chosen->dmDeviceName;
        const auto* bytes = reinterpret_cast<const BYTE*>(chosen);
        settings.driver.assign(bytes, bytes + chosen->dmSize + chosen->dmDriverExtra);
        settings.paper = ::PaperOf(settings.printer, *chosen).value_or(settings.paper);
        GlobalUnlock(dialog.hDevMode);
    }
    GlobalFree(dialog.hDevMode);
    GlobalFree(dialog.hDevNames);
    return confirmed;
}

PrintSystem::Started Spooler::Start(const PrinterSettings& settings, const std::wstring& title) {
    const std::vector<BYTE> mode = DeviceModeOf(settings);
    const HDC dc = CreateDCW(L"WINSPOOL", settings.printer.c_str(), nullptr,
                             mode.empty() ? nullptr : reinterpret_cast<const DEVMODEW*>(mode.data()));
    if (!dc) return {nullptr, kFailed};
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = title.c_str();
    if (StartDocW(dc, &document) <= 0) {
        const bool cancelled = GetLastError() == ERROR_CANCELLED || GetLastError() == ERROR_PRINT_CANCELLED;
        DeleteDC(dc);
        return {nullptr, cancelled ? L"" : kFailed};
    }
    return {std::make_unique<SpoolerJob>(dc), {}};
}

}  // namespace

PrintSystem& SystemPrinting() {
    static Spooler spooler;
    return spooler;
}
