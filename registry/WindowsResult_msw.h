#pragma once
// What a Windows error says of something that was to be kept.

#include "registry/KeepResult.h"

KeepResult ResultOf(long error);
