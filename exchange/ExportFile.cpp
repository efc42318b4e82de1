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

std::fstream OpenForExport(const std::filesystem::path& path) {
    std::fstream file;
    std::error_code unknown;
    // Whoever reads a pipe or a device may take nothing for ever.
    if (std::filesystem::exists(path, unknown) && !IsFile(path)) {
        file.setstate(std::ios::failbit);
        return file;
    }
    // Appending creates a file and leaves one alone that has appeared meanwhile.
    if (!IsFile(path)) std::ofstream(path, std::ios::binary | std::ios::app);
    file.open(path, std::ios::binary | std::ios::in | std::ios::out);
    return file;
}
