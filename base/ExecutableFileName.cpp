#include "base/ExecutableFileName.h"

#include <cwctype>

std::wstring ExecutableFileName(const std::wstring& folder, const std::wstring& name) {
    std::wstring full = folder;
    if (!full.ends_with(L'\\')) full += L'\\';
    full += name;
    std::wstring ending = name.size() < 4 ? L"" : name.substr(name.size() - 4);
    for (wchar_t& letter : ending) letter = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(letter)));
    if (ending != L".EXE") full += L".exe";
    return full;
}
