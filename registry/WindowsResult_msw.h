#pragma once
// What Windows's functions for the registry return, as a result.

#include "registry/KeepResult.h"

inline KeepResult ResultOf(long error) {
    return FailureOf({static_cast<int>(error), std::system_category()});
}
