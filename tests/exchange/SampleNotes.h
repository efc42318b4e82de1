#pragma once
// Notes as export files have them, and the files.

#include <string>
#include <vector>

#include "exchange/ExportedNote.h"

// One of each look.
inline std::vector<ExportedNote> SampleNotes() {
    return {{.Text = L"Einkaufen\r\nMilch, Brot\r\nÄpfel (süße!), Käse 5 €",
             .CreationTime = L"21.11.2026, 09:15:00",
             .Left = 600,
             .Top = 600,
             .Width = 3750,
             .Height = 2475,
             .Color = kYellow,
             .FontNoteSize = 12},
            {.Text = L"Geburtstag von Oma Gisela\r\nBlumen & „Kuchen“ nicht vergessen!",
             .CreationTime = L"18.11.2026, 19:42:31",
             .Left = 600,
             .Top = 3600,
             .Width = 4350,
             .Height = 2250,
             .Color = kGreen,
             .FontNoteAlignment = kAlignCentre,
             .FontNoteSize = 11,
             .FontNoteItalic = true},
            {.Text = L"Müll raus!",
             .CreationTime = L"16.11.2026, 07:03:12",
             .Left = -600,
             .Width = 4650,
             .Height = 2100,
             .Color = kRed,
             .FontNoteAlignment = kAlignRight,
             .FontNoteSize = 25,
             .FontNoteBold = true,
             .Foreground = true},
            {.Text = L"Rückruf",
             .CreationTime = L"20.11.2026, 16:58:07",
             .Width = 3300,
             .Height = 2250,
             .Color = kLightBlue,
             .FontNoteSize = 8,
             .FontNoteUnderlined = true}};
}

// Of a file without an appendix: each record up to the first without a text.
inline std::vector<ExportedNote> RecordsOf(const std::string& bytes) {
    std::vector<ExportedNote> records;
    ByteSource file = ByteSource::OfMemory(bytes);
    ExportReader reader(file);
    for (ExportedNote record = reader.Next(); !record.Text.empty(); record = reader.Next())
        records.push_back(std::move(record));
    return records;
}

inline std::string FileBytes(const std::vector<ExportedNote>& notes) {
    std::string bytes;
    for (const ExportedNote& note : notes) WriteRecord(bytes, note);
    return bytes;
}
