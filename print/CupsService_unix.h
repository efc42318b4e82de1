#pragma once
// CUPS: its printers, and handing it documents. libcups is loaded when it is first needed. Every call waits
// for an answer and gives up after two seconds at most; libcups never asks for a password on the terminal. It
// keeps its last error for each thread, so everything is called on the same one, that of the windows.

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "print/PageLayout.h"

struct CupsPrinters {
    bool running = false;  // the service answers
    std::vector<std::wstring> names;
    std::wstring standard;  // one of them, unless there are none
};

// Not running, and without names, when libcups is missing or CUPS does not answer in time.
CupsPrinters FindCupsPrinters();

// The paper that a printer is set to by itself, or by its user, upright; nothing when nobody tells.
std::optional<PaperSize> CupsPaperOf(const std::wstring& printer);

// A job of CUPS. Destroying it before Send has succeeded withdraws it.
class CupsJob {
  public:
    // paper: name of the medium, such as "iso_a4_210x297mm"; empty for the printer's own. When Failure is
    // empty then, CUPS has taken the job in and waits for its document.
    CupsJob(const std::wstring& printer, const std::wstring& title, const std::string& paper);
    ~CupsJob();
    CupsJob(const CupsJob&) = delete;
    CupsJob& operator=(const CupsJob&) = delete;

    // Sends a PDF from where the file stands to its end. False with a Failure.
    bool Send(std::FILE* file);

    // What went wrong, as a text for the user; else empty.
    const std::wstring& Failure() const { return failure_; }

  private:
    void Fail();

    std::wstring printer_;
    std::string queue_, title_;
    int id_ = 0;
    std::wstring failure_;
};
