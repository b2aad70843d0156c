#pragma once

#include "host/Grid.h"
#include "runtime/Integer.h"

namespace imex {

// Where the editor's parts stand, in pixels, from the control's inner size. Every figure is rounded half to even.

/// The nearest whole number; of two that are as near, the even one.
int roundHalfToEven(double value);

inline constexpr int kGridLeft = 8;

/// The width of the edit line and of the grid. Negative for a control that is too narrow for them.
int partWidth(int controlWidth);

/// The height of the grid: what the edit line above it and the buttons below it leave. Negative for a low control.
int gridHeight(int controlHeight);

/// The top of both buttons.
int buttonTop(int controlHeight, int buttonHeight);

/// The left edges of the buttons beside the centre line.
int saveLeft(int controlWidth, int buttonWidth);
int cancelLeft(int controlWidth);

/// The measure itself. Error 5 for a negative one: the control is too small for the part.
int requiredMeasure(int pixels);

/// The width in twips of a cell for a text so many pixels wide. Error 6 past 32,767.
Integer cellWidth(double textPixels, double twipsPerPixel);

/// The same, and 32,767 for what is wider.
int cellWidthAtMost(double textPixels, double twipsPerPixel);

inline constexpr int kBesideText = 10; // pixels that a cell has beside its text

/// The cell of the first record's first field, behind the fixed row and column.
inline constexpr host::GridCell kFirstCell{1, 1};

} // namespace imex
