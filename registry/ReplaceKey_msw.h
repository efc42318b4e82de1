#pragma once
#include "registry/KeepResult.h"

// What CompleteKey said last: while that is a failure, the key holds a part of two contents.
const KeepResult& LastCompletion();
