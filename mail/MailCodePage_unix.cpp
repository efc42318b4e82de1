#include "base/Text.h"
#include "mail/MailCodePage.h"

namespace {

// Linux starts no program with a longer argument, the zero at its end included.
constexpr std::size_t kLongestArgument = 128 * 1024;

}  // namespace

std::string ToMail(std::wstring_view text) { return ToUtf8(text); }

bool MailHasAllCharacters() { return true; }

bool IsTooLongForMail(std::wstring_view address) { return ToUtf8(address).size() >= kLongestArgument; }
