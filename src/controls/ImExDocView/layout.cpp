#include "controls/ImExDocView/layout.h"

#include "runtime/RuntimeError.h"

namespace imex {

namespace {

constexpr int kBorder = 5;      // left of the browser and above it
constexpr int kBelow = 40;      // what the browser is lower than the viewer
constexpr int kFromCentre = 47; // of each button
constexpr int kFromBottom = 2;

/// Half of a number that is not negative, rounded half to even.
int half(int number) {
  const int floor = number / 2;
  return number % 2 == 0 || floor % 2 == 0 ? floor : floor + 1;
}

} // namespace

ViewerLayout viewerLayout(QSize inner, QSize okButton) {
  const QSize browser(inner.width() - 2 * kBorder, inner.height() - kBelow);
  if (browser.width() < 0 || browser.height() < 0)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, "ImExDocView");
  const int left = half(inner.width()) - half(okButton.width());
  const int top = inner.height() - (okButton.height() + kFromBottom);
  return {QRect(QPoint(kBorder, kBorder), browser), QRect(QPoint(left - kFromCentre, top), okButton),
          QRect(QPoint(left + kFromCentre, top), okButton)};
}

} // namespace imex
