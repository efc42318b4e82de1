#include <gtest/gtest.h>

#include "app/RecoveryText.h"
#include "model/StoredImage.h"
#include "registry/clsRegistry.h"

TEST(RecoveryText, SaysWhatCameBackFromWhereAndWhichNotesToLookAt) {
    const Note doubtful = {.text = L"Milch\r\nund Brot"};
    ASSERT_TRUE(WriteStoredImage(false, {&doubtful}, {}).Kept());
    const std::wstring root = kSettingsKey;
    const RecoveryReport report = {
        .event = RecoveryReport::Damaged,
        .detail = {},
        .setAside = L"/home/jemand/registry.sqlite.defekt",
        .fromFile = {root + L"Note0", root + L"Note1", root + L"AddressBookEntry0"},
        .fromState = {root + L"Note2"},
        .doubtful = {root + L"Note0", root + L"AddressBookEntry0"},
        .lost = 1};
    EXPECT_EQ(
        RecoveryText(report),
        L"Die Datei mit Ihren Notizen war beschädigt. Kivora hat sie zur Seite gelegt und Ihre Notizen "
        L"wiederhergestellt.\r\nAus der Datei selbst: 2 Notizen.\r\nAus der letzten Sicherung: eine "
        L"Notiz.\r\nNicht mehr zu lesen: 1 Eintrag.\r\n\r\nBei diesen Notizen kann etwas fehlen oder älter "
        L"sein:\r\n– " +
            ShortText(doubtful.text) +
            L"\r\n\r\nDie vorgefundene Datei liegt jetzt hier:\r\n/home/jemand/registry.sqlite.defekt");
    EXPECT_EQ(RecoveryText({.event = RecoveryReport::Missing, .fromState = report.fromState}),
              L"Die Datei mit Ihren Notizen war nicht mehr da. Kivora hat Ihre Notizen aus der letzten "
              L"Sicherung wiederhergestellt.\r\nAus der letzten Sicherung: eine Notiz.");
    EXPECT_EQ(RecoveryText({.event = RecoveryReport::Replaced, .fromState = report.fromState}),
              L"Die Datei mit Ihren Notizen wurde entfernt oder ersetzt, während Kivora lief. Kivora hat "
              L"alle Notizen neu geschrieben.");
    const std::vector<const Note*> nine(9, &doubtful);
    ASSERT_TRUE(WriteStoredImage(false, nine, {}).Kept());
    RecoveryReport many;
    many.lost = 2;
    many.isComplete = false;
    for (int i = 10; i > 0; --i) many.doubtful.push_back(root + L"Note" + std::to_wstring(i));
    const std::wstring text = RecoveryText(many), name = L"\r\n– " + ShortText(doubtful.text);
    EXPECT_NE(text.find(L"\r\nNicht mehr zu lesen: 2 Einträge.\r\nMöglicherweise fehlen weitere Notizen, von "
                        L"denen nichts mehr zu finden war.\r\n\r\n"),
              text.npos);
    EXPECT_NE(text.find(L"\r\n– (ohne Text)\r\n– (ohne Text)" + name), text.npos);
    EXPECT_TRUE(text.ends_with(name + L"\r\n– und 2 weitere"));
    Registry().DeleteKey(kSettingsKey);
}
