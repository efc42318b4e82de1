#include "tests/exchange/SampleNotes.h"

#include <map>

namespace {

constexpr std::int32_t kLeft = 0, kRight = 1, kCentred = 2;

std::int32_t Twips(int pixels) { return pixels * 15; }

void AddNumber(std::string& bytes, std::uint32_t number, int width) {
    for (int i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

void AddText(std::string& bytes, const std::wstring& text) {
    static const std::map<wchar_t, char> beyondLatin1 = {
        {L'€', '\x80'}, {L'„', '\x84'}, {L'“', '\x93'}, {L'–', '\x96'}};
    AddNumber(bytes, static_cast<std::uint32_t>(text.size()), 2);
    for (const wchar_t c : text) bytes += c < 0x100 ? static_cast<char>(c) : beyondLatin1.at(c);
}

void AddFlag(std::string& bytes, bool flag) { AddNumber(bytes, flag ? 0xFFFF : 0, 2); }

const std::vector<ExportedNote>& Einkauf() {
    static const std::vector<ExportedNote> notes = {
        {.Text = L"Einkaufen\r\nMilch, Brot, Butter\r\nÄpfel (süße!), Käse\r\n6 Eier für den Kuchen",
         .CreationTime = L"21.11.2026, 09:15:00",
         .Left = Twips(40),
         .Top = Twips(40),
         .Width = Twips(250),
         .Height = Twips(165),
         .Color = kYellow,
         .FontNoteAlignment = kLeft,
         .FontNoteSize = 12},
        {.Text = L"Geburtstag von Oma Gisela\r\nSamstag, 15 Uhr\r\nBlumen & Kuchen nicht vergessen!",
         .CreationTime = L"18.11.2026, 19:42:31",
         .Left = Twips(40),
         .Top = Twips(240),
         .Width = Twips(290),
         .Height = Twips(150),
         .Color = kGreen,
         .FontNoteAlignment = kCentred,
         .FontNoteSize = 11,
         .FontNoteItalic = true},
        {.Text = L"Müll raus!\r\nDonnerstag früh",
         .CreationTime = L"16.11.2026, 07:03:12",
         .Left = Twips(40),
         .Top = Twips(430),
         .Width = Twips(310),
         .Height = Twips(140),
         .Color = kRed,
         .FontNoteAlignment = kCentred,
         .FontNoteSize = 18,
         .FontNoteBold = true},
        {.Text = L"Wochenmarkt\r\nSpargel 9,90 €/kg\r\nErdbeeren 4,50 €/kg\r\n\r\n(ab 12 Uhr billiger)",
         .CreationTime = L"14.11.2026, 11:30:45",
         .Left = Twips(40),
         .Top = Twips(610),
         .Width = Twips(220),
         .Height = Twips(150),
         .Color = kLightBlue,
         .FontNoteAlignment = kLeft,
         .FontNoteSize = 8}};
    return notes;
}

const std::vector<ExportedNote>& Buero() {
    static const std::vector<ExportedNote> notes = {
        {.Text = L"Rückruf Herr Müller\r\nTel. 0228 / 555 01 23\r\nzwischen 9 und 11 Uhr",
         .CreationTime = L"20.11.2026, 16:58:07",
         .Left = Twips(420),
         .Top = Twips(60),
         .Width = Twips(320),
         .Height = Twips(160),
         .Color = kYellow,
         .FontNoteAlignment = kLeft,
         .FontNoteSize = 14,
         .FontNoteUnderlined = true},
        {.Text = L"Angebot Größenänderung\r\n12 × 49,90 €\r\n598,80 €\r\nzzgl. MwSt.",
         .CreationTime = L"19.11.2026, 10:20:00",
         .Left = Twips(420),
         .Top = Twips(270),
         .Width = Twips(270),
         .Height = Twips(150),
         .Color = kLightBlue,
         .FontNoteAlignment = kRight,
         .FontNoteSize = 11},
        {.Text = L"Abgabe\r\nFreitag!",
         .CreationTime = L"20.11.2026, 08:00:59",
         .Left = Twips(420),
         .Top = Twips(470),
         .Width = Twips(280),
         .Height = Twips(165),
         .Color = kRed,
         .FontNoteAlignment = kCentred,
         .FontNoteSize = 25,
         .FontNoteBold = true,
         .Foreground = true},
        {.Text = L"Besprechung „Frühjahr“\r\n– Raum 2.07, 14:00 Uhr\r\n– \"Protokoll\" an alle\r\n– Kaffee "
                 L"& Kekse",
         .CreationTime = L"17.11.2026, 13:05:26",
         .Left = Twips(800),
         .Top = Twips(60),
         .Width = Twips(280),
         .Height = Twips(150),
         .Color = kGreen,
         .FontNoteAlignment = kLeft,
         .FontNoteSize = 10,
         .FontNoteBold = true,
         .FontNoteItalic = true}};
    return notes;
}

}  // namespace

std::string FileBytes(const std::vector<ExportedNote>& notes) {
    std::string bytes;
    for (const ExportedNote& note : notes) {
        AddText(bytes, note.Text);
        AddText(bytes, note.CreationTime);
        for (const std::int32_t number : {note.Left, note.Top, note.Width, note.Height, note.Color,
                                          note.FontNoteAlignment, note.FontNoteSize})
            AddNumber(bytes, static_cast<std::uint32_t>(number), 4);
        for (const bool flag :
             {note.FontNoteBold, note.FontNoteItalic, note.FontNoteUnderlined, note.Foreground})
            AddFlag(bytes, flag);
    }
    return bytes;
}

const std::vector<SampleFile>& SampleFiles() {
    static const std::vector<SampleFile> files = {{"einkauf.kvr", Einkauf()}, {"buero.kvr", Buero()}};
    return files;
}
