// Names are text here already.
#include "base/FileName.h"

std::wstring FileName(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path FilePath(const std::wstring& name) { return name; }
