#pragma once
// The printing service of the system: its printers, and handing it documents. Its library is loaded when it
// is first needed. Every question is answered within two seconds, and none is asked on the terminal.

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

struct CupsPrinters {
    bool running = false;  // the service answers
    std::vector<std::wstring> names;
    std::wstring standard;  // one of them, unless there are none
};

CupsPrinters FindCupsPrinters();

// A job at the service. Destroying it before it was sent withdraws it.
class CupsJob {
  public:
    // paper: name of the medium for the printer. Without Failure the printer has taken the job in.
    CupsJob(const std::wstring& printer, const std::wstring& title, const std::string& paper);
    ~CupsJob();
    CupsJob(const CupsJob&) = delete;
    CupsJob& operator=(const CupsJob&) = delete;

    // Sends a PDF from where the file stands. `meanwhile` is called from time to time and ends the sending by
    // returning false.
    bool Send(std::FILE* file, const std::function<bool()>& meanwhile);

    // What went wrong, as a text for the user.
    const std::wstring& Failure() const { return failure_; }

  private:
    void Fail();

    std::wstring printer_;
    std::string queue_, title_;
    int id_ = 0;
    std::wstring failure_;
};
