#include "app/RecoveryText.h"

#include <algorithm>
#include <string_view>

#include "base/FileName.h"
#include "model/Note.h"
#include "model/StoredImage.h"
#include "registry/clsRegistry.h"

namespace {

constexpr std::size_t kMostNamed = 8;

bool IsNote(const std::wstring& key) { return key.starts_with(std::wstring(kSettingsKey) + kNotePrefix); }

std::wstring Notes(std::size_t count) {
    return count == 1 ? L"eine Notiz" : std::to_wstring(count) + L" Notizen";
}

std::size_t CountNotes(const std::vector<std::wstring>& keys) {
    return static_cast<std::size_t>(std::count_if(keys.begin(), keys.end(), IsNote));
}

const wchar_t* WhatHappened(RecoveryReport::Event event) {
    switch (event) {
        case RecoveryReport::Damaged:
            return L"Die Datei mit Ihren Notizen war beschädigt. Kivora hat sie zur Seite gelegt und Ihre "
                   L"Notizen wiederhergestellt.";
        case RecoveryReport::Missing:
            return L"Die Datei mit Ihren Notizen war nicht mehr da. Kivora hat Ihre Notizen aus der letzten "
                   L"Sicherung wiederhergestellt.";
        case RecoveryReport::Replaced:
            return L"Die Datei mit Ihren Notizen wurde entfernt oder ersetzt, während Kivora lief. Kivora "
                   L"hat alle Notizen neu geschrieben.";
    }
    return L"";
}

// The first words of the notes that may be affected.
std::wstring Named(const std::vector<std::wstring>& keys) {
    std::wstring names;
    std::size_t named = 0, more = 0;
    for (const std::wstring& key : keys) {
        if (!IsNote(key)) continue;
        if (named == kMostNamed) {
            ++more;
            continue;
        }
        ++named;
        const std::wstring text = ShortText(AsText(Registry().GetValue(key + L"\\Text", REG_TYPE_SZ)));
        names += L"\r\n– " + (text.empty() ? L"(ohne Text)" : text);
    }
    if (more) names += L"\r\n– und " + std::to_wstring(more) + L" weitere";
    return names;
}

}  // namespace

std::wstring RecoveryText(const RecoveryReport& report) {
    std::wstring text = WhatHappened(report.event);
    const std::size_t fromFile = CountNotes(report.fromFile), fromState = CountNotes(report.fromState);
    const bool cameBack = report.event != RecoveryReport::Replaced;
    if (cameBack && fromFile > 0) text += L"\r\nAus der Datei selbst: " + Notes(fromFile) + L".";
    if (cameBack && fromState > 0) text += L"\r\nAus der letzten Sicherung: " + Notes(fromState) + L".";
    if (report.lost > 0)
        text += L"\r\nNicht mehr zu lesen: " + std::to_wstring(report.lost) +
                (report.lost == 1 ? L" Eintrag." : L" Einträge.");
    if (!report.isComplete)
        text += L"\r\nMöglicherweise fehlen weitere Notizen, von denen nichts mehr zu finden war.";
    if (const std::wstring names = Named(report.doubtful); !names.empty())
        text += L"\r\n\r\nBei diesen Notizen kann etwas fehlen oder älter sein:" + names;
    if (!report.setAside.empty())
        text += L"\r\n\r\nDie vorgefundene Datei liegt jetzt hier:\r\n" + ShownFileName(report.setAside);
    return text;
}
