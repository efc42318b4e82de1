#include "registry/HiveSeal.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/ByteFields.h"
#include "registry/HivePlace.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kHeader = 100;

struct Seal {
    std::uint64_t bytes = 0, image = 0;  // a hash of the file, and the image's total
    std::uint32_t changes = 0;           // SQLite's count of transactions that changed the first page

    std::string Text() const {
        char text[64];
        std::snprintf(text, sizeof text, "%016" PRIx64 " %016" PRIx64 " %08" PRIx32 "\n", bytes, image,
                      changes);
        return text;
    }
};

// FNV-1a over words of eight bytes: no changed byte is lost.
std::uint64_t HashOf(const std::string& bytes) {
    std::uint64_t state = kSumStart ^ bytes.size();
    for (std::size_t at = 0; at < bytes.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, std::min<std::size_t>(8, bytes.size() - at));
        state = SumWith(state, word);
    }
    return state;
}

std::uint32_t Number(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

// A log that has not been brought into the file: what it is to be is not known from the file alone.
bool HasLog(const fs::path& file) {
    std::error_code none;
    const auto size = fs::file_size(Beside(file, "-wal"), none);
    return !none && size > 0;
}

fs::path SealOf(const fs::path& file) { return Beside(file, ".siegel"); }

}  // namespace

void SealHive(const fs::path& file, const HiveImage& image) {
    std::string bytes;
    if (!ReadWhole(file, bytes) || bytes.size() < kHeader || HasLog(file) ||
        !MakeEmptyFile(SealOf(file)).Kept())
        return;
    if (std::FILE* const seal = std::fopen(SealOf(file).c_str(), "wbe")) {
        std::fputs(Seal{HashOf(bytes), image.Total(), Number(bytes, 24)}.Text().c_str(), seal);
        std::fclose(seal);
    }
}

SealedFile LookAtSeal(const fs::path& file) {
    std::string text, bytes;
    Seal seal;
    if (!ReadWhole(SealOf(file), text) || text.empty() || HasLog(file) ||
        std::sscanf(text.c_str(), "%" SCNx64 " %" SCNx64 " %" SCNx32, &seal.bytes, &seal.image,
                    &seal.changes) != 3 ||
        seal.Text() != text || !ReadWhole(file, bytes) || HashOf(bytes) == seal.bytes)
        return {};
    SealedFile sealed;
    // SQLite keeps the count in two places.
    if (bytes.size() < kHeader || Number(bytes, 24) != Number(bytes, 92))
        sealed.isBroken = true;
    else if (Number(bytes, 24) == seal.changes)
        sealed.brokenIf = seal.image;
    return sealed;
}

bool SealedFile::IsBroken(const HiveImage& image) const {
    return isBroken || (brokenIf && image.IsWhole() && image.Total() == *brokenIf);
}

void RemoveSeal(const fs::path& file) {
    std::error_code ignored;
    fs::remove(SealOf(file), ignored);
}
