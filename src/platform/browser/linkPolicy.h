#pragma once

#include <QUrl>
#include <QWebEnginePage>

namespace imex::platform {

/// Where something that a document leads to is shown.
enum class Place {
  here,    ///< in its place
  outside, ///< by the desktop's program for it
  nowhere,
};

/// A step that a document is about to take.
struct Step {
  QUrl document; ///< what the browser was told to show
  QUrl target;
  QWebEnginePage::NavigationType type;
  bool isMainFrame;
};

/// A document that is looked at only leads to places in itself; its links to "http:", "https:" and "mailto:" lead
/// outside, and everything else, files, forms, frames and redirections included, nowhere. A document of the web leads
/// to documents of the web; its links to "mailto:" lead outside.
Place placeOf(const Step& step);

/// The same for what a document wants to open in a window of its own, which is never here.
Place placeOfWindow(const QUrl& target, bool isUserInitiated);

} // namespace imex::platform
