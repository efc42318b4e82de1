// Any bytes as the journal of a key that was being rewritten.
#include "base/ByteFields.h"
#include "fuzz/support/FuzzTarget.h"
#include "registry/RewriteJournal.h"

namespace {

void Read(FuzzInput& input) {
    std::string bytes(input.Rest());
    for (const bool summed : {false, true}) {
        if (summed) AddNumber(bytes, CheckSum(bytes));
        const auto journal = JournalOf(bytes);
        if (!journal) continue;
        const auto again = JournalOf(BytesOf(*journal));
        Require(again && again->mark == journal->mark && BytesOf(*again) == BytesOf(*journal),
                "what was read is written the same");
    }
}

const FuzzTarget kTarget("RewriteJournal", Read);

}  // namespace
