#pragma once
// Bytes that are read one after the other, of a file or of memory. A file is read in blocks, so a large one
// takes no more memory than a small one.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

// False for folders, pipes and devices, and where there is nothing.
bool IsFile(const std::filesystem::path& path);

class ByteSource {
  public:
    // Memory has to outlive the source. Only what IsFile can be opened: from a pipe or a device the bytes may
    // never come, or never end. A file has the bytes that it had when it was opened.
    static ByteSource OfMemory(std::string_view bytes) { return ByteSource(bytes); }
    static ByteSource OfFile(const std::filesystem::path& file) { return ByteSource(file); }
    ~ByteSource() { Close(); }
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    // Why the file could not be opened, or not be read to where it was to be; its end is no failure.
    std::error_code Failure() const { return failure_; }

    // In bytes; 0 where the file could not be opened.
    std::uint64_t Size() const { return size_; }

    // Where the next byte is read: the bytes before it. It may be behind the end.
    std::uint64_t Place() const { return place_; }
    void Pass(std::uint64_t count) { place_ += count; }
    // Begins anew, also where the disk has failed.
    void Rewind();

    // The next bytes; fewer at the end, and where the disk does not give them.
    std::string Read(std::uint64_t count);
    // All that there are from here on.
    std::string ReadRest() { return Read(size_); }

  private:
    explicit ByteSource(std::string_view bytes) : size_(bytes.size()), block_(bytes) {}
    explicit ByteSource(const std::filesystem::path& file) { Open(file); }

    // These depend on the operating system. ReadAt gives the number of bytes that it read; 0 at the end and
    // after a failure.
    void Open(const std::filesystem::path& file);
    void Close();
    std::size_t ReadAt(std::uint64_t place, char* bytes, std::size_t count);

    std::intptr_t file_ = -1;  // a descriptor or a handle; -1 is neither
    std::error_code failure_;
    std::uint64_t size_ = 0, place_ = 0;
    std::string_view block_;  // what is at hand of the bytes, and where that begins
    std::uint64_t blockPlace_ = 0;
    std::string buffer_;  // the block of a file
};
