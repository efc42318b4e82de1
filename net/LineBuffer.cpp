#include "net/LineBuffer.h"

#include <algorithm>

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kShownOfLongLine = 256;
constexpr std::size_t kCapacityToKeep = 16 * 1024;

}  // namespace

void LineBuffer::Append(std::string_view bytes) {
    data_ += bytes;
    if (skipping_) SkipRest();
}

bool LineBuffer::HasLine() const {
    const std::size_t end = data_.find(kLineEnd, scanned_);
    if (end != std::string::npos) {
        scanned_ = end;
        return true;
    }
    // The last byte may be the first half of a line end.
    scanned_ = std::max(begin_, data_.empty() ? 0 : data_.size() - 1);
    return false;
}

LineBuffer::Took LineBuffer::Take(std::string& line) {
    const bool complete = HasLine();
    const std::size_t length = (complete ? scanned_ : data_.size()) - begin_;
    const bool halfEnd = !complete && length > 0 && data_.back() == '\r';
    if (length - (halfEnd ? 1 : 0) > longest_) {
        line.assign(data_, begin_, std::min(length - (halfEnd ? 1 : 0), kShownOfLongLine));
        skipping_ = true;
        SkipRest();
        return Took::TooLong;
    }
    if (!complete) return Took::Nothing;
    line.assign(data_, begin_, length);
    Consume(scanned_ + kLineEnd.size());
    return Took::Line;
}

void LineBuffer::Clear() {
    // What is being skipped may have been cut within its line end.
    const bool halfEnd = skipping_ && Size() > 0 && data_.back() == '\r';
    Consume(data_.size() - (halfEnd ? 1 : 0));
    data_.shrink_to_fit();
}

void LineBuffer::Consume(std::size_t end) {
    begin_ = scanned_ = end;
    if (begin_ == data_.size()) {
        data_.clear();
        begin_ = scanned_ = 0;
        if (data_.capacity() > kCapacityToKeep) data_.shrink_to_fit();
    } else if (begin_ > data_.size() / 2) {
        // Moved only when less is left than was taken, so that every byte is moved once on average.
        data_.erase(0, begin_);
        begin_ = scanned_ = 0;
    }
}

void LineBuffer::SkipRest() {
    if (HasLine()) {
        skipping_ = false;
        Consume(scanned_ + kLineEnd.size());
        return;
    }
    const bool halfEnd = data_.size() > begin_ && data_.back() == '\r';
    Consume(data_.size() - (halfEnd ? 1 : 0));
}
