#pragma once
// Printing by CUPS, or into a PDF file, which needs no printer at all.

#include <filesystem>
#include <functional>
#include <optional>

#include "print/PrintSystem.h"

// What stands in the list of printers for the file.
inline const wchar_t* const kPrintToFile = L"In Datei drucken (PDF)";

class UnixPrinting : public PrintSystem {
  public:
    using FileChooser = std::function<std::optional<std::filesystem::path>()>;

    // chooseFile: asks the user for the name of the PDF; nothing when that is cancelled.
    explicit UnixPrinting(FileChooser chooseFile) : chooseFile_(std::move(chooseFile)) {}

    PrinterList Printers() override;
    PaperSize PaperOf(const std::wstring& printer) override;
    bool SetUp(PrinterSettings& settings) override;
    Started Start(const PrinterSettings& settings, const std::wstring& title) override;

  private:
    FileChooser chooseFile_;
};
