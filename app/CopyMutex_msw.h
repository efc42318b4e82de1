#pragma once
// The mutex by which copies of the program see each other: one for each user of the computer, in all of the
// user's logon sessions and whatever rights the copies were started with.

#include <windows.h>

#include <string>

// "Global" is the namespace that all sessions share; the user's security identifier follows.
std::wstring CopyMutexName();

// Makes this process the holder and returns the mutex, to be closed by the caller; null when another copy
// holds it. Where Windows makes no mutex at all, `none` is set: every copy is a first one then.
HANDLE ClaimCopyMutex(bool& none);

// Whether any copy holds it.
bool IsCopyMutexHeld();
