#include "base/Text.h"
#include "mail/MailCodePage.h"

namespace {

// The shell of Windows cuts or refuses addresses of little more than that.
constexpr std::size_t kLongestAddress = 2000;

}  // namespace

std::string ToMail(std::wstring_view text) { return ToAnsi(text); }

bool MailHasAllCharacters() { return false; }

bool IsTooLongForMail(std::wstring_view address) { return address.size() > kLongestAddress; }
