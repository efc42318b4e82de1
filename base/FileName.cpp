#include "base/FileName.h"

#include "base/Text.h"

std::wstring ShownFileName(const std::wstring& name) { return FromUtf8(ToUtf8(name)); }

namespace {

bool IsBetween(wchar_t character, unsigned first, unsigned last) {
    const auto code = static_cast<unsigned>(character);
    return code >= first && code <= last;
}

// Control characters, what Windows keeps for itself, halves of characters, and marks that nobody sees but
// that turn the reading direction around.
bool IsUnfitForNames(wchar_t character) {
    return IsBetween(character, 0, 0x1F) || IsBetween(character, 0x7F, 0x9F) ||
           std::wstring_view(L"<>:\"/\\|?*").find(character) != std::wstring_view::npos ||
           IsBetween(character, 0x200B, 0x200F) || IsBetween(character, 0x2028, 0x202E) ||
           IsBetween(character, 0x2060, 0x206F) || IsBetween(character, 0xD800, 0xDFFF) ||
           IsBetween(character, 0xFEFF, 0xFEFF) || IsBetween(character, 0xFFFE, 0xFFFF);
}

}  // namespace

std::wstring NameFromText(std::wstring_view text, std::size_t longest) {
    std::wstring name;
    for (const wchar_t character : text) {
        if (name.size() >= longest) break;
        if (!IsUnfitForNames(character) && character != L' ' && character != 0xA0) {
            name += character;
        } else if (!name.empty() && name.back() != L' ') {
            name += L' ';
        }
    }
    name.erase(name.find_last_not_of(L" .") + 1);
    return name;
}

std::wstring ProgramFolder() { return FileName(FilePath(ProgramPath()).parent_path()); }
