// Any bytes as an export file, record by record.
#include "exchange/ExportedNote.h"
#include "fuzz/support/FuzzTarget.h"

namespace {

void Read(FuzzInput& input) {
    const std::size_t wanted = input.Number(255);
    const std::string bytes(input.Rest());
    ByteSource file = ByteSource::OfMemory(bytes), passed = ByteSource::OfMemory(bytes);
    ExportReader reader(file), passing(passed);
    for (std::size_t records = 0;; ++records) {
        Require(records <= bytes.size() / 40 + 1, "a file has no more records than fit into it");
        const ExportedNote record = reader.Next();
        Require(passing.PassOver(wanted) == record.Text.substr(0, wanted),
                "passing over reads the same texts");
        Require(record.Text.size() <= 0xFFFF && record.CreationTime.size() <= 0xFFFF,
                "texts have their limit");
        // A text that was cut off gets up to 65,535 NULs, which take their time; seldom is enough for them.
        if (file.Place() == file.Size() && record.Text.ends_with(L'\0') && wanted % 16 != 0) break;

        std::string written;
        Require(WriteRecord(written, record), "what was read can be written");
        ByteSource again = ByteSource::OfMemory(written);
        Require(ExportReader(again).Next() == record, "what was read is written the same");
        const Note note = ToNote(record);
        Require(ToNote(ToRecord(note)) == note, "a note is its own record's");
        if (record.Text.empty()) break;
    }
}

const FuzzTarget kTarget("ExportedNote", Read);

}  // namespace
