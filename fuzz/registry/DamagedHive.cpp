#include "fuzz/registry/DamagedHive.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "base/DataFolder.h"
#include "registry/RegistryHive.h"
#include "registry/clsRegistry.h"

namespace fs = std::filesystem;

fs::path EmptyHiveFolder() {
    Hive().Close();
    const fs::path folder = DataFolder();
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

void SaveSomeNotes() {
    RegistryTransaction image;
    // Up to one that does not fit one page. Few, since each run reads, sums and writes them several times.
    for (std::size_t i = 0; i < kSavedNotes; ++i) {
        const std::wstring note = L"HKLM\\Software\\Kivora\\1.5\\Note" + std::to_wstring(i) + L"\\";
        Registry().SetValue(note + L"X", REG_TYPE_DWORD, 100.0 * static_cast<double>(i));
        Registry().SetValue(note + L"Text", REG_TYPE_SZ, std::wstring(i * i * 200, L'ä'));
    }
    Require(image.Commit().Kept(), "notes can be kept");
    Hive().Close();
}

std::string Damaged(std::string bytes, FuzzInput& input) {
    while (!input.Empty() && !bytes.empty()) {
        const std::uint8_t kind = input.Byte();
        std::size_t at = input.Byte();
        at = (at << 8 | input.Byte()) % bytes.size();
        if (kind == 'x') {
            bytes.resize(at);
        } else if (kind == '0') {
            const std::size_t count = std::min<std::size_t>(input.Byte() * 16U, bytes.size() - at);
            std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, '\0');
        } else {
            bytes[at] = static_cast<char>(input.Byte());
        }
    }
    return bytes;
}

std::string BytesOfFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteFile(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}
