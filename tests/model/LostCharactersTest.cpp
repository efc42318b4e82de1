#include <gtest/gtest.h>

#include "model/LostCharacters.h"

TEST(LostCharacters, AreThoseBeyondTheCodePage) {
    const std::pair<const wchar_t*, bool> rows[] = {
        {L"", false},           {L"Käse „5 €“\r\n\t–", false}, {L"??", false},
        {L"Wort \u03A9", true}, {L"\U0001F600", true},         {L"\uFFFD", true},
    };
    for (const auto& [text, lost] : rows) EXPECT_EQ(LosesCharacters(text), lost) << text;
}

TEST(LostCharacters, QuestionNamesAHandfulOfNotes) {
    EXPECT_EQ(LossQuestion({L"Ω\r\nMilch"}, L"exportieren"),
              L"Diese Notiz enthält Zeichen, die sich nicht exportieren lassen:\r\n\r\n„Ω Milch“\r\n\r\n"
              L"An ihrer Stelle wird „?“ stehen.\r\nMöchten Sie trotzdem fortfahren?");
    EXPECT_EQ(
        LossQuestion({L"1", L"2", L"3", L"4", std::wstring(60, L'5'), L"6", L"7"}, L"per E-Mail senden"),
        L"Diese Notizen enthalten Zeichen, die sich nicht per E-Mail senden lassen:\r\n\r\n„1“\r\n„2“"
        L"\r\n„3“\r\n„4“\r\n„" +
            std::wstring(55, L'5') +
            L" ...“\r\nund 2 weitere\r\n\r\nAn ihrer Stelle wird „?“ stehen.\r\nMöchten Sie trotzdem "
            L"fortfahren?");
    EXPECT_EQ(LossQuestion(std::vector<std::wstring>(5, L"x"), L"drucken").find(L"weitere"),
              std::wstring::npos);
}
