#include <locale.h>

#include <ctime>
#include <memory>
#include <string_view>

#include "base/DateText.h"
#include "base/Text.h"

namespace {

std::wstring Now(const char* localForm, const char* germanForm) {
    const std::time_t seconds = std::time(nullptr);
    std::tm now{};
    localtime_r(&seconds, &now);

    // The locale of the environment, whatever GTK has made of the process's own.
    const locale_t locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", nullptr);
    const std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)> owner(locale, &freelocale);
    const char* variable = nullptr;
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
        variable = std::getenv(name);
        if (variable && *variable) break;
    }
    const std::string_view name = variable ? variable : "";
    const bool set = !name.empty() && name != "POSIX" && name != "C" && !name.starts_with("C.");

    char text[128];
    const std::size_t size = locale && set ? strftime_l(text, sizeof text, localForm, &now, locale)
                                           : std::strftime(text, sizeof text, germanForm, &now);
    return FromUtf8({text, size});
}

}  // namespace

std::wstring CurrentDateText() { return Now("%x", "%d.%m.%Y"); }

std::wstring CurrentTimeText() { return Now("%X", "%H:%M:%S"); }
