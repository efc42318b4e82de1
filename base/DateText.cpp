#include "base/DateText.h"

std::vector<std::wstring> TimeForms(const std::wstring& time) {
    std::vector<std::wstring> forms = {time};
    const std::size_t date = time.find_first_of(L", ");
    if (date == time.npos) return forms;
    const std::size_t minutes = time.find_first_of(L":.", date);
    const std::size_t seconds = minutes == time.npos ? minutes : time.find_first_of(L":.", minutes + 1);
    if (seconds != time.npos) {
        // What follows them is "AM" or "PM".
        const std::size_t after = time.find_first_not_of(L"0123456789", seconds + 1);
        forms.push_back(time.substr(0, seconds) + (after == time.npos ? L"" : time.substr(after)));
    }
    forms.push_back(time.substr(0, date));
    return forms;
}
