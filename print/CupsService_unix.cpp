#include "print/CupsService_unix.h"

#include <cups/cups.h>
#include <cups/pwg.h>
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>

#include "base/Text.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kConnectLimit = 500;  // milliseconds
// For one operation. libcups sends several requests for one and repeats some; each that is sent when the time
// is over still takes one step.
constexpr std::chrono::milliseconds kAnswerLimit{800};
constexpr double kStep = 0.1;           // seconds
constexpr double kPerMillimetre = 100;  // CUPS counts hundredths

// The functions of libcups by their own names.
struct Cups {
    void* library = dlopen("libcups.so.2", RTLD_NOW | RTLD_LOCAL);
    bool complete = library != nullptr;

    template <class Function>
    Function* Load(Function*, const char* name) {
        void* symbol = library ? dlsym(library, name) : nullptr;
        complete = complete && symbol;
        return reinterpret_cast<Function*>(symbol);
    }
#define KIVORA_CUPS(name) decltype(&::name) name = Load(static_cast<decltype(&::name)>(nullptr), #name)
    KIVORA_CUPS(cupsServer);
    KIVORA_CUPS(ippPort);
    KIVORA_CUPS(cupsEncryption);
    KIVORA_CUPS(httpConnect2);
    KIVORA_CUPS(httpSetTimeout);
    KIVORA_CUPS(httpClose);
    KIVORA_CUPS(cupsSetPasswordCB2);
    KIVORA_CUPS(ippNewRequest);
    KIVORA_CUPS(ippDelete);
    KIVORA_CUPS(cupsDoRequest);
    KIVORA_CUPS(cupsGetDests2);
    KIVORA_CUPS(cupsFreeDests);
    KIVORA_CUPS(cupsGetOption);
    KIVORA_CUPS(pwgMediaForPWG);
    KIVORA_CUPS(pwgMediaForLegacy);
    KIVORA_CUPS(pwgMediaForPPD);
    KIVORA_CUPS(cupsAddOption);
    KIVORA_CUPS(cupsFreeOptions);
    KIVORA_CUPS(cupsCreateJob);
    KIVORA_CUPS(cupsStartDocument);
    KIVORA_CUPS(cupsWriteRequestData);
    KIVORA_CUPS(cupsFinishDocument);
    KIVORA_CUPS(cupsCancelJob2);
    KIVORA_CUPS(cupsLastError);
    KIVORA_CUPS(cupsLastErrorString);
#undef KIVORA_CUPS
};

const wchar_t* const kNoAnswer =
    L"Der Druckdienst antwortet nicht. Es wurde nichts gedruckt.\r\nVersuchen Sie es später noch einmal, "
    L"oder wählen Sie unter \"Einstellung...\" den Drucker \"In Datei drucken (PDF)\".";

const char* NoPassword(const char*, http_t*, const char*, const char*, void*) { return nullptr; }

// Null where libcups is missing or lacks one of the functions.
const Cups* Library() {
    static const Cups cups;
    if (!cups.complete) return nullptr;
    cups.cupsSetPasswordCB2(NoPassword, nullptr);
    return &cups;
}

class Connection {
  public:
    explicit Connection(const Cups& cups)
        : cups_(cups),
          http_(cups.httpConnect2(cups.cupsServer(), cups.ippPort(), nullptr, AF_UNSPEC,
                                  cups.cupsEncryption(), 1, kConnectLimit, nullptr)) {
        Renew();
        if (http_) cups_.httpSetTimeout(http_, kStep, WaitOn, this);
    }
    ~Connection() {
        if (http_) cups_.httpClose(http_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    explicit operator bool() const { return http_ != nullptr; }
    operator http_t*() const { return http_; }
    // To be called when another operation begins.
    void Renew() { deadline_ = Clock::now() + kAnswerLimit; }

  private:
    static int WaitOn(http_t*, void* self) {
        return Clock::now() < static_cast<Connection*>(self)->deadline_;
    }

    const Cups& cups_;
    http_t* http_;
    Clock::time_point deadline_;
};

// Calls something with each printer; false when CUPS does not answer.
bool EachPrinter(const std::function<void(const Cups&, const cups_dest_t&)>& call) {
    const Cups* cups = Library();
    if (!cups) return false;
    const Connection connection(*cups);
    if (!connection) return false;
    // One request first: listing the printers sends several, and each would wait for a CUPS that hangs.
    cups->ippDelete(cups->cupsDoRequest(connection, cups->ippNewRequest(IPP_OP_CUPS_GET_DEFAULT), "/"));
    const ipp_status_t answer = cups->cupsLastError();
    if (answer >= IPP_STATUS_ERROR_BAD_REQUEST && answer != IPP_STATUS_ERROR_NOT_FOUND) return false;
    cups_dest_t* printers = nullptr;
    const int count = cups->cupsGetDests2(connection, &printers);
    for (int i = 0; i < count; ++i) call(*cups, printers[i]);
    cups->cupsFreeDests(count, printers);
    return true;
}

}  // namespace

CupsPrinters FindCupsPrinters() {
    CupsPrinters found;
    found.running = EachPrinter([&](const Cups&, const cups_dest_t& printer) {
        // Instances are printers with other defaults, and we set everything ourselves.
        if (printer.instance && !printer.is_default) return;
        const std::wstring name = FromUtf8(printer.name);
        if (found.names.empty() || printer.is_default) found.standard = name;
        if (!printer.instance) found.names.push_back(name);
    });
    return found;
}

std::optional<PaperSize> CupsPaperOf(const std::wstring& printer) {
    std::optional<PaperSize> paper;
    EachPrinter([&](const Cups& cups, const cups_dest_t& each) {
        if (each.instance || FromUtf8(each.name) != printer) return;
        for (const char* const option : {"media", "PageSize"}) {
            const char* const name = cups.cupsGetOption(option, each.num_options, each.options);
            const pwg_media_t* medium = name ? cups.pwgMediaForPWG(name) : nullptr;
            if (name && !medium) medium = cups.pwgMediaForLegacy(name);
            if (name && !medium) medium = cups.pwgMediaForPPD(name);
            if (!medium || medium->width <= 0 || medium->length <= 0) continue;
            paper = {medium->width / kPerMillimetre, medium->length / kPerMillimetre};
            return;
        }
    });
    return paper;
}

CupsJob::CupsJob(const std::wstring& printer, const std::wstring& title, const std::string& paper)
    : printer_(printer), queue_(ToUtf8(printer)), title_(ToUtf8(title)) {
    // Without such a printer CUPS might take one of a similar name.
    const CupsPrinters known = FindCupsPrinters();
    if (!known.running) {
        failure_ = kNoAnswer;
        return;
    }
    if (std::find(known.names.begin(), known.names.end(), printer) == known.names.end()) {
        failure_ = L"Der Drucker \"" + printer_ + L"\" ist nicht mehr vorhanden.";
        return;
    }
    const Cups& cups = *Library();
    const Connection connection(cups);
    if (!connection) {
        failure_ = kNoAnswer;
        return;
    }
    cups_option_t* options = nullptr;
    const int count = paper.empty() ? 0 : cups.cupsAddOption("media", paper.c_str(), 0, &options);
    id_ = cups.cupsCreateJob(connection, queue_.c_str(), title_.c_str(), count, options);
    if (id_ == 0) Fail();
    cups.cupsFreeOptions(count, options);
}

CupsJob::~CupsJob() {
    if (id_ == 0) return;
    const Connection connection(*Library());
    if (connection) Library()->cupsCancelJob2(connection, queue_.c_str(), id_, 0);
}

void CupsJob::Fail() {
    const Cups& cups = *Library();
    switch (cups.cupsLastError()) {
        case IPP_STATUS_ERROR_SERVICE_UNAVAILABLE:
        case IPP_STATUS_ERROR_TIMEOUT:
            failure_ = kNoAnswer;
            break;
        case IPP_STATUS_ERROR_NOT_ACCEPTING_JOBS:
            failure_ = L"Der Drucker \"" + printer_ + L"\" nimmt keine Druckaufträge an.";
            break;
        default:
            failure_ = L"Der Drucker \"" + printer_ + L"\" hat den Druckauftrag abgelehnt.\r\n" +
                       FromUtf8(cups.cupsLastErrorString());
    }
}

bool CupsJob::Send(std::FILE* file) {
    const Cups& cups = *Library();
    Connection connection(cups);
    if (!connection) {
        failure_ = kNoAnswer;
        return false;
    }
    bool good = cups.cupsStartDocument(connection, queue_.c_str(), id_, title_.c_str(), CUPS_FORMAT_PDF, 1) ==
                HTTP_STATUS_CONTINUE;
    std::array<char, 1 << 16> piece;
    std::size_t count = 0;
    while (good && (count = std::fread(piece.data(), 1, piece.size(), file)) > 0) {
        good = cups.cupsWriteRequestData(connection, piece.data(), count) == HTTP_STATUS_CONTINUE;
        connection.Renew();
    }
    good = good && !std::ferror(file) &&
           cups.cupsFinishDocument(connection, queue_.c_str()) < IPP_STATUS_ERROR_BAD_REQUEST;
    if (good) {
        id_ = 0;
    } else {
        Fail();
    }
    return good;
}
