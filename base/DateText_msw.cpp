#include <windows.h>

#include "base/DateText.h"

std::wstring CurrentDateText() {
    wchar_t text[128] = L"";
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, text, 128);
    return text;
}

std::wstring CurrentTimeText() {
    wchar_t text[128] = L"";
    GetTimeFormatW(LOCALE_USER_DEFAULT, 0, nullptr, nullptr, text, 128);
    return text;
}
