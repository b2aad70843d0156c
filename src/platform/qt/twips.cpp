#include "platform/qt/twips.h"

#include <QWidget>

#include <algorithm>
#include <cmath>
#include <limits>

namespace imex::platform {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kLargest = (1 << 20) - 1; // pixels of a header's section

} // namespace

double twipsPerPixel(const QWidget& widget) {
  const int dotsPerInch = widget.logicalDpiX();
  return dotsPerInch > 0 ? kTwipsPerInch / dotsPerInch : 15;
}

int pixelsOf(int twips, double twipsPerPixel) {
  constexpr double kHalfTwip = 0.5; // what rounding may have added
  return static_cast<int>(std::clamp(std::ceil((twips - kHalfTwip) / twipsPerPixel), 0.0, kLargest));
}

int twipsOf(double pixels, double twipsPerPixel) {
  constexpr double kMost = std::numeric_limits<int>::max();
  constexpr double kLeast = std::numeric_limits<int>::min();
  return static_cast<int>(std::clamp(std::nearbyint(pixels * twipsPerPixel), kLeast, kMost));
}

} // namespace imex::platform
