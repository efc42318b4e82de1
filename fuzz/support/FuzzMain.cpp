// What libFuzzer calls. A promise that does not hold leaves as an exception, which libFuzzer reports with the
// input that broke it.
#include <cstddef>
#include <cstdint>

#include "fuzz/support/FuzzTarget.h"
#include "tests/support/Support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const PrivateFolders folders;
    FuzzInput input({reinterpret_cast<const char*>(data), size});
    FuzzTargets().front()->run(input);
    return 0;
}
