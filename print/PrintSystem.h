#pragma once
// The printers of the platform: which there are, setting one up, and printing pages on one. Nothing here
// waits for a printer or a service for longer than two seconds.

#include <memory>
#include <string>
#include <vector>

#include "print/PageLayout.h"

// Where and on what to print.
struct PrinterSettings {
    std::wstring printer;  // its device name, as people see it
    PaperSize paper;       // as it is read, so wider than high in landscape format
};

struct PrinterList {
    std::vector<std::wstring> names;
    std::wstring standard;  // one of them, unless there are none
    std::wstring hint;      // what the user should know when the list is short; may be empty
};

// One document on its way to one printer. Destroying it before Finish withdraws it.
class PrintJob {
  public:
    virtual ~PrintJob() = default;
    virtual MeasuredText Measure(std::wstring_view text, const PrintFont& font) = 0;
    // False when the job has failed; Failure tells why.
    virtual bool Put(const PrintedPage& page) = 0;
    virtual bool Finish() = 0;
    virtual std::wstring Failure() const = 0;
};

class PrintSystem {
  public:
    virtual ~PrintSystem() = default;

    virtual PrinterList Printers() = 0;

    // The printer set-up: lets the user change the settings; false when that is cancelled. It closes by
    // itself when the program quits.
    virtual bool SetUp(PrinterSettings& settings) = 0;

    // Begins a document. Without a job the failure is a text for the user, empty when the user cancelled.
    struct Started {
        std::unique_ptr<PrintJob> job;
        std::wstring failure;
    };
    virtual Started Start(const PrinterSettings& settings, const std::wstring& title) = 0;
};

// That of the platform.
PrintSystem& SystemPrinting();
