#pragma once
// The printers of the platform: which there are, setting one up, and printing pages on one. On Linux CUPS is
// given up after two seconds when it does not answer. Everything is called, and calls back, on the thread of
// the windows.

#include <memory>
#include <string>

#include "print/Printers.h"

// One document on its way to one printer. Destroying it before Finish has succeeded withdraws it.
class PrintJob {
  public:
    virtual ~PrintJob() = default;
    // The measures of text without line breaks and tabs, as Put will print it; see MeasurePrinted.
    virtual MeasuredText Measure(std::wstring_view text, const PrintFont& font) = 0;
    // Adds a page. False when the job has failed.
    virtual bool Put(const PrintedPage& page) = 0;
    // True when the printing service has taken the whole document, or the whole file is on the disk.
    virtual bool Finish() = 0;
    // Why the job has failed, as a text for the user; empty when the program is quitting.
    virtual std::wstring Failure() const = 0;
};

class PrintSystem {
  public:
    virtual ~PrintSystem() = default;

    virtual PrinterList Printers() = 0;

    // The paper that this printer of the list is set to by itself; A4 when it does not tell.
    virtual PaperSize PaperOf(const std::wstring& printer) = 0;

    // The printer set-up dialog: lets the user change the settings; false, and they stay as they are, when
    // that is cancelled. It closes by itself when the program quits.
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
