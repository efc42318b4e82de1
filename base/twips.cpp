#include "base/twips.h"

#include <cmath>
#include <limits>

std::int32_t RoundToEven(double value) {
    constexpr double low = std::numeric_limits<std::int32_t>::min();
    constexpr double high = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) return 0;
    if (value <= low) return std::numeric_limits<std::int32_t>::min();
    if (value >= high) return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::nearbyint(value));
}
