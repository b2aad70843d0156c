#pragma once

class QWidget;

namespace imex::platform {

/// How many twips a pixel of the widget has on its screen, from the screen's logical resolution: 15 at 96 dots to the
/// inch. Pixels are the widget's own, of which a dense screen makes several dots.
double twipsPerPixel(const QWidget& widget);

/// The pixels that a measure in twips takes: the next whole number, so that a text fits that was measured for it, and
/// at most what a part of a window can have.
int pixelsOf(int twips, double twipsPerPixel);

/// The twips of so many pixels, rounded half to even. At most the largest int.
int twipsOf(double pixels, double twipsPerPixel);

} // namespace imex::platform
