#include <gtest/gtest.h>

#include "base/FileName.h"

TEST(NameFromText, IsFitForEveryFileSystem) {
    const std::pair<std::wstring, std::wstring> rows[] = {
        {L"Milch und Brot", L"Milch und Brot"},
        {L"  Erste Zeile\r\n\tzweite  ", L"Erste Zeile zweite"},
        {L"../../etc/passwd", L".. .. etc passwd"},
        {L"C:\\a<b>|c?*\"d\"", L"C a b c d"},
        {L"Übergröße €", L"Übergröße €"},
        {L"Ende. . .", L"Ende"},
        {L"...", L""},
        {L"\r\n \t", L""},
        {L"", L""},
        {std::wstring(L"a\0b", 3), L"a b"},
        {L"fdp\x202Egnp.exe", L"fdp gnp.exe"},
        {L"a\x7F\x9F\x200B\x200F\x2028\x2060\x206F\xFEFF\xFFFF", L"a"},
        {L"~\xA1\x2010\x2027\x2070\xFFFD", L"~\xA1\x2010\x2027\x2070\xFFFD"},
        {std::wstring{L'a', static_cast<wchar_t>(0xDC80), L'b'}, L"a b"},
        {std::wstring(500, L'x'), std::wstring(20, L'x')},
        {std::wstring(19, L'x') + L" y", std::wstring(19, L'x')},
    };
    for (const auto& [text, name] : rows) EXPECT_EQ(NameFromText(text, 20), name);
}

TEST(FileName, IsMadeAbsoluteWithoutTheFile) {
    const std::filesystem::path here = std::filesystem::current_path();
    EXPECT_EQ(FilePath(AbsoluteFileName(L"no such file.kvr")), here / "no such file.kvr");
    const std::wstring absolute = FileName(here.root_path() / "nowhere" / "a.kvr");
    EXPECT_EQ(AbsoluteFileName(absolute), absolute);
}
