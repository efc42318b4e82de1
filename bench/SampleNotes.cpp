#include "bench/SampleNotes.h"

#include <string>

namespace {

constexpr double kTwips = 15;  // of a pixel
constexpr std::int32_t kColors[] = {kYellow, kGreen, kRed, kLightBlue};

NoteLook LookOf(int index, Looks looks) {
    constexpr int kSizes = kLargestFontSize - kSmallestFontSize + 1;
    NoteLook look;
    if (looks == Looks::TwelveFonts) {
        index %= 12;
        look.size = 8 + index / 4 * 4;
        look.bold = index & 1;
        look.italic = index & 2;
    } else if (looks != Looks::Plain) {
        look.size = kSmallestFontSize + index % kSizes;
        index /= kSizes;
        look.bold = index & 1;
        look.italic = index & 2;
        look.underlined = looks == Looks::Crowded && index & 4;
    }
    if (looks == Looks::Crowded) {
        look.alignment = index % 3;
        look.color = kColors[index % 4];
    }
    return look;
}

}  // namespace

std::vector<Note> SampleNotes(int count, Looks looks) {
    std::vector<Note> notes;
    for (int i = 0; i < count; ++i) {
        Note note;
        note.text = L"Notiz " + std::to_wstring(i + 1) + L"\r\nMilch und Brot holen\r\num fünf anrufen";
        note.creationTime = L"22.11.2026 10:00:00";
        note.look = LookOf(i, looks);
        note.foreground = looks == Looks::Crowded && i % 3 == 0;
        const int across = looks == Looks::Crowded ? 200 : 1040, down = looks == Looks::Crowded ? 200 : 700;
        note.place = {(10 + i * 37 % across) * kTwips, (10 + i * 29 % down) * kTwips, kNoteWidth * kTwips,
                      kNoteHeight * kTwips};
        notes.push_back(note);
    }
    return notes;
}
