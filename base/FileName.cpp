#include "base/FileName.h"

#include "base/basText.h"

std::wstring ShownFileName(const std::wstring& name) { return FromUtf8(ToUtf8(name)); }

std::wstring AbsoluteFileName(const std::wstring& name) {
    std::error_code failed;
    const std::filesystem::path path = FilePath(name);
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    return failed ? name : FileName(absolute);
}
