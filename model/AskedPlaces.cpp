#include "model/AskedPlaces.h"

#include <algorithm>

void AskedPlaces::Ask(const PixelRect& rect) {
    Add(places_, {rect.x, rect.y});
    Add(sizes_, {rect.width, rect.height});
}

PixelRect AskedPlaces::Now(const std::optional<PixelRect>& shown) {
    if (shown) {
        Answered(places_, {shown->x, shown->y});
        Answered(sizes_, {shown->width, shown->height});
    }
    const PixelPoint place = places_.back(), size = sizes_.back();
    return {place.x, place.y, size.x, size.y};
}

void AskedPlaces::Add(Requests& requests, PixelPoint request) {
    if (request != requests.back()) requests.push_back(request);
}

// The first request that asked for it: a window that goes to and fro comes to the same place again.
void AskedPlaces::Answered(Requests& requests, PixelPoint answer) {
    const auto asked = std::find(requests.begin(), requests.end(), answer);
    if (asked == requests.end()) {
        requests = {answer};
    } else {
        requests.erase(requests.begin(), asked);
    }
}
