#include "platform/macos/DisplayRules.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr double kLargestBytes = 1024.0 * 1024 * 1024;
constexpr double kBytesOfPixel = 4;

bool isSame(const Display& display, const Display& other) {
    return display.number ? display.number == other.number : display == other;
}

} // namespace

QRectF frameFromAbove(const QRectF& frame, double firstScreenHeight) {
    return {frame.x(), firstScreenHeight - frame.y() - frame.height(), frame.width(), frame.height()};
}

std::optional<qsizetype> placeOf(const Display& display, const QList<Display>& connected) {
    const auto found = std::find_if(connected.begin(), connected.end(),
                                    [&display](const Display& other) { return isSame(display, other); });
    return found == connected.end() ? std::nullopt : std::optional<qsizetype>(found - connected.begin());
}

std::optional<int> decodedSide(double width, double height) {
    const bool hasSize = width >= 1 && height >= 1;
    const bool fits = hasSize && width * height * kBytesOfPixel <= kLargestBytes;
    return fits ? std::optional(static_cast<int>(std::max(width, height))) : std::nullopt;
}

} // namespace quorvane
