#include "base/ExecutableFileName.h"

#include "base/CaseFold.h"

std::wstring ExecutableFileName(const std::wstring& folder, const std::wstring& name) {
    std::wstring full = folder;
    if (!full.ends_with(L'\\')) full += L'\\';
    full += name;
    if (!InCapitals(name).ends_with(L".EXE")) full += L".exe";
    return full;
}
