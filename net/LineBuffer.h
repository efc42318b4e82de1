#pragma once
// Cuts what arrives on a connection into lines. A line ends at the first CR LF, which is not part of it; how
// the bytes were split on their way does not matter. A line that is too long is never held as a whole.

#include <cstddef>
#include <string>
#include <string_view>

class LineBuffer {
  public:
    enum class Took { Nothing, Line, TooLong };

    // longest: of a line, in bytes.
    explicit LineBuffer(std::size_t longest) : longest_(longest) {}

    void Append(std::string_view bytes);

    // Takes the next line that is complete. TooLong comes once for a line that exceeds the limit, as soon as
    // that is known; `line` then gets its beginning, and the rest is skipped whenever it comes.
    Took Take(std::string& line);

    bool HasLine() const;

    // Forgets everything held.
    void Clear();

    // Bytes held, and the memory that they take.
    std::size_t Size() const { return data_.size() - begin_; }
    std::size_t Capacity() const { return data_.capacity(); }

  private:
    void Consume(std::size_t end);
    void SkipRest();

    std::size_t longest_;
    std::string data_;
    std::size_t begin_ = 0;            // of what was not taken yet
    mutable std::size_t scanned_ = 0;  // no line ends before this place
    bool skipping_ = false;            // until the end of a line that was too long
};
