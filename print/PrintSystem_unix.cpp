#include "print/PrintSystem_unix.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "print/CupsService_unix.h"
#include "print/PaperFormats_unix.h"
#include "print/PdfFileDialog_unix.h"
#include "print/PdfPaper_unix.h"
#include "print/frmPrinterSetup_unix.h"

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// A job whose pages are collected in a PDF. Deliver brings the whole one to its place.
class PdfJob : public PrintJob {
  public:
    PdfJob(File file, const PaperSize& paper, const std::wstring& title)
        : file_(std::move(file)), paper_(file_.get(), paper, title) {}

    MeasuredText Measure(std::wstring_view text, const PrintFont& font) override {
        return paper_.Measure(text, font);
    }
    bool Put(const PrintedPage& page) override { return paper_.Put(page) || Full(); }
    bool Finish() override {
        if (!paper_.Finish() || std::fflush(file_.get()) != 0) return Full();
        return Deliver(file_.get());
    }
    std::wstring Failure() const override { return failure_; }

  protected:
    virtual bool Deliver(std::FILE* pdf) = 0;
    bool Full() {
        failure_ = L"Die Druckdaten konnten nicht gespeichert werden.\r\n" + FromUtf8(std::strerror(errno));
        return false;
    }
    std::wstring failure_;

  private:
    File file_;
    PdfPaper paper_;
};

// Writes to a file beside the one that was asked for, which it replaces only when it is complete.
class FileJob : public PdfJob {
  public:
    FileJob(File file, std::filesystem::path name, std::filesystem::path unfinished, const PaperSize& paper,
            const std::wstring& title)
        : PdfJob(std::move(file), paper, title), name_(std::move(name)), unfinished_(std::move(unfinished)) {}
    ~FileJob() override {
        std::error_code ignored;
        if (!unfinished_.empty()) std::filesystem::remove(unfinished_, ignored);
    }

  protected:
    bool Deliver(std::FILE*) override {
        if (const std::error_code failed = PutInPlace(unfinished_, name_)) {
            errno = failed.value();
            return Full();
        }
        unfinished_.clear();
        return true;
    }

  private:
    std::filesystem::path name_, unfinished_;
};

class PrinterJob : public PdfJob {
  public:
    PrinterJob(File file, std::unique_ptr<CupsJob> job, const PaperSize& paper, const std::wstring& title)
        : PdfJob(std::move(file), paper, title), job_(std::move(job)) {}

  protected:
    bool Deliver(std::FILE* pdf) override {
        std::rewind(pdf);
        const bool sent = job_->Send(pdf);
        failure_ = job_->Failure();
        return sent;
    }

  private:
    std::unique_ptr<CupsJob> job_;
};

PrintSystem::Started Failed(const std::wstring& text) {
    return {nullptr, text + L"\r\n" + FromUtf8(std::strerror(errno))};
}

PrintSystem::Started StartFile(const std::filesystem::path& name, const PaperSize& paper,
                               const std::wstring& title) {
    std::string unfinished = name.native() + ".XXXXXX";
    const int handle = mkstemp(unfinished.data());
    File file(handle < 0 ? nullptr : fdopen(handle, "wb"));
    if (!file) {
        return Failed(L"Die Datei " + ShownFileName(FileName(name)) + L" konnte nicht angelegt werden.");
    }
    // mkstemp makes the file private to the user; this one gets the access that new files usually have.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(handle, 0644 & ~mask);
    return {std::make_unique<FileJob>(std::move(file), name, unfinished, paper, title), {}};
}

}  // namespace

PrinterList UnixPrinting::Printers() {
    CupsPrinters found = FindCupsPrinters();
    PrinterList list{std::move(found.names), std::move(found.standard), {}};
    if (list.names.empty()) {
        list.hint = found.running ? L"Es ist kein Drucker installiert." : L"Der Druckdienst antwortet nicht.";
        list.hint += L" Gedruckt wird in eine PDF-Datei.";
    }
    list.names.push_back(kPrintToFile);
    if (list.standard.empty()) list.standard = kPrintToFile;
    return list;
}

PaperSize UnixPrinting::PaperOf(const std::wstring& printer) {
    return printer == kPrintToFile ? PaperSize() : CupsPaperOf(printer).value_or(PaperSize());
}

bool UnixPrinting::SetUp(PrinterSettings& settings) {
    auto* dialog = new frmPrinterSetup(Printers(), settings,
                                       [this](const std::wstring& printer) { return PaperOf(printer); });
    const bool confirmed = dialog->ShowModal() == 1;
    if (confirmed) settings = dialog->Settings();
    dialog->Destroy();
    return confirmed;
}

PrintSystem::Started UnixPrinting::Start(const PrinterSettings& settings, const std::wstring& title) {
    if (settings.printer == kPrintToFile) {
        const auto name = chooseFile_();
        return name ? StartFile(*name, settings.paper, title) : Started{};
    }
    // Any other paper is the printer's own, which it takes when it is asked for none.
    const PaperFormat* const format = FormatOf(settings.paper);
    auto job = std::make_unique<CupsJob>(settings.printer, title, format ? format->medium : "");
    if (!job->Failure().empty()) return {nullptr, job->Failure()};
    File file(std::tmpfile());
    if (!file) return Failed(L"Die Druckdaten konnten nicht gespeichert werden.");
    return {std::make_unique<PrinterJob>(std::move(file), std::move(job), settings.paper, title), {}};
}

PrintSystem& SystemPrinting() {
    static UnixPrinting printing(ChoosePdfFile);
    return printing;
}
