#include <algorithm>

#include "base/FileName.h"
#include "base/Text.h"

namespace {

// A byte that is part of no UTF-8 sequence stands in the text as a surrogate, which real text cannot contain.
constexpr wchar_t kByteBase = 0xDC00;
constexpr wchar_t kReplacement = 0xFFFD;

bool IsEscapedByte(wchar_t character) { return character >= 0xDC80 && character <= 0xDCFF; }

// Length of the valid sequence at the beginning of the bytes, at least 1.
std::size_t SequenceLength(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    return std::min(length, bytes.size());
}

}  // namespace

std::wstring FileName(const std::filesystem::path& path) {
    const std::string& bytes = path.native();
    std::wstring name;
    name.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const std::string_view sequence =
            std::string_view(bytes).substr(i, SequenceLength(std::string_view(bytes).substr(i)));
        const std::wstring decoded = FromUtf8(sequence);
        if (decoded.size() == 1 && (decoded[0] != kReplacement || ToUtf8(decoded) == sequence)) {
            name += decoded;
            i += sequence.size();
        } else {
            name += static_cast<wchar_t>(kByteBase + static_cast<unsigned char>(bytes[i]));
            ++i;
        }
    }
    return name;
}

std::filesystem::path FilePath(const std::wstring& name) {
    std::string bytes;
    bytes.reserve(name.size());
    for (std::size_t i = 0; i < name.size();) {
        if (IsEscapedByte(name[i])) {
            bytes += static_cast<char>(name[i] - kByteBase);
            ++i;
            continue;
        }
        const auto end =
            std::find_if(name.begin() + static_cast<std::ptrdiff_t>(i), name.end(), IsEscapedByte);
        const auto length = static_cast<std::size_t>(end - name.begin()) - i;
        bytes += ToUtf8(std::wstring_view(name).substr(i, length));
        i += length;
    }
    return bytes;
}

std::string FileNameBytes(const std::wstring& name) { return FilePath(name).native(); }

std::wstring FileNameOfBytes(std::string_view bytes) { return FileName(bytes); }

std::wstring AbsoluteFileName(const std::wstring& name) {
    std::error_code failed;
    const std::filesystem::path path = FilePath(name);
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    return failed ? name : FileName(absolute);
}

std::wstring ProgramPath() {
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", failed);
    std::string name = path.native();
    // What the kernel appends when the program was replaced while it runs.
    const std::string replaced = " (deleted)";
    if (name.ends_with(replaced) && !std::filesystem::exists(path, failed)) {
        name.resize(name.size() - replaced.size());
    }
    return FileName(name);
}

std::wstring RegisteredProgram() { return ProgramPath(); }
