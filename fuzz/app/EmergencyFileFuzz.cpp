// Files in which the program keeps notes exactly: damaged ones, and ones that somebody else made so well that
// their check sum is right.
#include <algorithm>

#include "app/EmergencyFile.h"
#include "base/ByteFields.h"
#include "exchange/KeptFile.h"
#include "fuzz/support/FuzzTarget.h"

namespace {

bool SameEntries(const UnsavedImage& one, const UnsavedImage& other) {
    return std::ranges::equal(one.entries, other.entries, [](const auto& a, const auto& b) {
        return a.PCName() == b.PCName() && a.IP() == b.IP() && a.Comment() == b.Comment();
    });
}

void Read(FuzzInput& input) {
    const std::uint8_t kind = input.Byte();
    std::string bytes(input.Rest());
    std::string behind;
    if (kind == 'e') {  // an emergency file: what is behind the notes comes first here
        const std::size_t end = std::min(bytes.find('\x1E'), bytes.size());
        behind = bytes.substr(0, end);
        bytes.erase(0, end + 1);
        const std::string digits = std::to_string(behind.size());
        behind += std::string(10 - digits.size(), '0') + digits + " Kivora unsaved 1\r\n";
    }
    if (kind != 'd') AddNumber(bytes, CheckSum(bytes));

    ByteSource file = ByteSource::OfMemory(bytes);
    const auto exact = ExactNotes(file);
    file.Rewind();
    const std::vector<Note> notes = NotesOfKeptFile(file);
    if (exact) {
        Require(notes == *exact, "the appendix comes before the records");
        const std::string kept = KeptFileBytes(*exact);
        ByteSource again = ByteSource::OfMemory(kept);
        Require(ExactNotes(again) == exact, "what was read is kept the same");
    }
    if (const auto image = ReadEmergencyBytes(bytes + behind)) {
        Require(exact && image->notes == *exact, "an emergency file is a kept one");
        const auto again = ReadEmergencyBytes(EmergencyBytes(*image));
        Require(again && again->notes == image->notes && again->autostart == image->autostart &&
                    SameEntries(*again, *image),
                "what was read is written the same");
    }
}

const FuzzTarget kTarget("EmergencyFile", Read);

}  // namespace
