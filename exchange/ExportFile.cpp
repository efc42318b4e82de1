#include "exchange/ExportFile.h"

bool IsFile(const std::filesystem::path& path) {
    std::error_code unknown;
    return std::filesystem::is_regular_file(path, unknown);
}

std::ifstream OpenExport(const std::filesystem::path& path) {
    std::ifstream file;
    // A pipe or a device may never end.
    if (IsFile(path)) {
        file.open(path, std::ios::binary);
    } else {
        file.setstate(std::ios::failbit);
    }
    return file;
}
