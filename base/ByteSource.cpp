#include "base/ByteSource.h"

#include <algorithm>

namespace {

constexpr std::size_t kBlock = 1 << 14;

}  // namespace

bool IsFile(const std::filesystem::path& path) {
    std::error_code unknown;
    return std::filesystem::is_regular_file(path, unknown);
}

void ByteSource::Rewind() {
    place_ = 0;
    if (file_ != -1) failure_ = {};
}

std::string ByteSource::Read(std::uint64_t count) {
    std::string bytes;
    count = std::min(count, size_ - std::min(place_, size_));
    bytes.reserve(static_cast<std::size_t>(count));
    while (bytes.size() < count) {
        if (place_ < blockPlace_ || place_ >= blockPlace_ + block_.size()) {
            if (file_ == -1) break;
            buffer_.resize(kBlock);
            block_ = std::string_view(buffer_).substr(0, ReadAt(place_, buffer_.data(), kBlock));
            blockPlace_ = place_;
            if (block_.empty()) break;
        }
        const std::string_view part = block_.substr(static_cast<std::size_t>(place_ - blockPlace_),
                                                    static_cast<std::size_t>(count) - bytes.size());
        bytes += part;
        place_ += part.size();
    }
    return bytes;
}
