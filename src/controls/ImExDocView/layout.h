#pragma once

#include <QRect>
#include <QSize>

namespace imex {

/// Where the viewer's parts are, in its pixels.
struct ViewerLayout {
  QRect browser;
  QRect print;
  QRect ok;
};

/// The layout of a viewer of this inner size: the browser 5 from the left and the top, 10 narrower and 40 lower than
/// the viewer; below it the two buttons, both as big as OK, 2 above the bottom and their centres 47 left and right of
/// the viewer's. A half is rounded to the even number. Error 5 where the browser's width or height would be negative.
ViewerLayout viewerLayout(QSize inner, QSize okButton);

} // namespace imex
