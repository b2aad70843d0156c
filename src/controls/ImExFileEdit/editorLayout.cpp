#include "controls/ImExFileEdit/editorLayout.h"

#include <algorithm>
#include <cmath>

namespace imex {

namespace {

constexpr int kSideMargins = 16;
constexpr int kAroundGrid = 58; // pixels for the edit line and the buttons
constexpr double kBelowButtons = 1.5;
constexpr int kHalfGap = 2; // between the buttons, on either side of the centre line

int centre(int controlWidth) {
  return roundHalfToEven(controlWidth / 2.0);
}

double unboundedCellWidth(double textPixels, double twipsPerPixel) {
  return std::nearbyint((textPixels + kBesideText) * twipsPerPixel);
}

} // namespace

int roundHalfToEven(double value) {
  return static_cast<int>(std::nearbyint(value)); // the default rounding mode
}

int partWidth(int controlWidth) {
  return controlWidth - kSideMargins;
}

int gridHeight(int controlHeight) {
  return controlHeight - kAroundGrid;
}

int buttonTop(int controlHeight, int buttonHeight) {
  return roundHalfToEven(controlHeight - buttonHeight - kBelowButtons);
}

int saveLeft(int controlWidth, int buttonWidth) {
  return centre(controlWidth) - kHalfGap - buttonWidth;
}

int cancelLeft(int controlWidth) {
  return centre(controlWidth) + kHalfGap;
}

int requiredMeasure(int pixels) {
  if (pixels < 0)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, "ImExFileEdit");
  return pixels;
}

int cellWidthAtMost(double textPixels, double twipsPerPixel) {
  return static_cast<int>(std::min(unboundedCellWidth(textPixels, twipsPerPixel), double{Integer::kMax}));
}

Integer cellWidth(double textPixels, double twipsPerPixel) {
  const double twips = unboundedCellWidth(textPixels, twipsPerPixel);
  if (twips > Integer::kMax)
    throw RuntimeError(ErrorNumber::overflow, "ImExFileEdit");
  return static_cast<int>(twips);
}

} // namespace imex
