#include "platform/qt/QtClipboard.h"

#include "platform/qt/text.h"

#include <QClipboard>
#include <QGuiApplication>

namespace imex::platform {

void QtClipboard::clear() {
  QGuiApplication::clipboard()->clear();
}

void QtClipboard::setText(std::string_view text) {
  QGuiApplication::clipboard()->setText(toQt(text));
}

} // namespace imex::platform
