#include "tray/TipText.h"

std::wstring WithMarkedAmpersands(const std::wstring& tip, std::size_t most) {
    std::wstring marked;
    for (const wchar_t character : tip) {
        // Windows drops the first as a mark and draws the two that are left as one.
        const std::wstring shown = character == L'&' ? L"&&&" : std::wstring(1, character);
        if (marked.size() + shown.size() > most) break;
        marked += shown;
    }
    return marked;
}
