#pragma once
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// All bytes of a file; empty when it is none.
inline std::string Content(const std::filesystem::path& file) {
    if (!std::filesystem::is_regular_file(file)) return {};
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
