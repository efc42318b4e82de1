#include <gtest/gtest.h>
#include <langinfo.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <string>

#include "app/NoteServices.h"
#include "app/Platform.h"
#include "base/DataFolder.h"
#include "tests/mail/MailProgram.h"
#include "tests/support/Events.h"
#include "tests/support/Messages.h"

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

TEST(Platform, EndlessInputIsNotReadToItsEnd) {
    const std::string file = SharedDataFolder() / "endlos";
    std::ofstream(file) << std::string(1'000'000, 'x');
    ASSERT_TRUE(std::freopen(file.c_str(), "r", stdin));
    const std::size_t size = ReadInput(100'000).size();
    EXPECT_TRUE(size > 100'000 && size < 200'000) << size;
}

TEST(Platform, WhoChoosesALinkIsToldWhenNobodyOpensIt) {
    NoteServices services;
    const MessageRecorder told;
    {
        const MailProgram program;
        services.OpenLink(L"gibt-es-nicht:x");
        EXPECT_EQ(program.Got(), L"gibt-es-nicht:x");
    }
    const std::string path = std::getenv("PATH");
    setenv("PATH", "/", 1);
    services.OpenLink(L"gibt-es-nicht:x");
    setenv("PATH", path.c_str(), 1);
    ASSERT_EQ(told.messages.size(), 1u);
    EXPECT_TRUE(told.messages[0].starts_with(
        L"Adresse öffnen|16|Die Adresse gibt-es-nicht:x konnte nicht geöffnet werden."));
}
