#pragma once
// The kinds of message boxes, and the buttons that answer them.

// 16 critical, 48 exclamation, 64 information; +4 for the buttons Yes and No instead of OK.
constexpr int kCritical = 16;
constexpr int kExclamation = 48;
constexpr int kInformation = 64;
constexpr int kYesNo = 4;

enum class MessageAnswer { OK = 1, Yes = 6, No = 7 };
