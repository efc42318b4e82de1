#include <gtest/gtest.h>
#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "app/Platform.h"
#include "tests/support/Events.h"

// GTK's own texts can be German and all characters be typed, whatever the environment says.
TEST(Platform, EveryLocaleTakesTextAndTranslations) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const char* const names[] = {"LC_ALL",   "LC_CTYPE", "LC_MESSAGES", "LANG",
                                 "LANGUAGE", "GDK_GL",   "GTK_THEME"};
    std::map<std::string, std::optional<std::string>> kept;
    for (const char* name : names) {
        if (const char* value = std::getenv(name)) kept[name] = value;
    }
    const std::pair<const char*, const char*> rows[] = {
        {"C", ""}, {"POSIX", ""}, {"gibt-es-nicht", ""}, {"C.UTF-8", "C"}, {"", ""}};
    for (const auto& [lang, messages] : rows) {
        SCOPED_TRACE(lang);
        for (const char* name : names) unsetenv(name);
        setenv("LANG", lang, 1);
        setenv("LC_MESSAGES", messages, 1);
        PrepareEnvironment();
        EXPECT_STRNE(std::setlocale(LC_MESSAGES, nullptr), "C");
        EXPECT_STREQ(nl_langinfo(CODESET), "UTF-8");
    }
    SettleDown();
    EXPECT_TRUE(RunUntil([] { return std::getenv("LANGUAGE") == std::string("de"); }));
    for (const char* name : names) {
        unsetenv(name);
        if (kept[name]) setenv(name, kept[name]->c_str(), 1);
    }
    std::setlocale(LC_ALL, before.c_str());
}
