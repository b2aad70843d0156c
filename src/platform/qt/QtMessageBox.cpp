#include "platform/qt/QtMessageBox.h"

#include "platform/qt/text.h"

#include <QApplication>
#include <QMessageBox>

namespace imex::platform {

namespace {

// The two parts of a style.
constexpr int kButtonMask = 0x0F;
constexpr int kIconMask = 0xF0;

constexpr int kYesNoButtons = 4;
constexpr int kQuestionIcon = 32;
constexpr int kExclamationIcon = 48;
constexpr int kInformationIcon = 64;

QMessageBox::Icon iconOf(int style) {
  switch (style & kIconMask) {
  case kQuestionIcon:
    return QMessageBox::Question;
  case kExclamationIcon:
    return QMessageBox::Warning;
  case kInformationIcon:
    return QMessageBox::Information;
  default:
    return QMessageBox::NoIcon;
  }
}

QMessageBox::StandardButtons buttonsOf(int style) {
  return (style & kButtonMask) == kYesNoButtons ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok;
}

} // namespace

host::Answer QtMessageBox::show(std::string_view prompt, int style, std::string_view title) {
  QMessageBox box(iconOf(style), toQt(title), toQt(prompt).replace(QStringLiteral("\r\n"), QStringLiteral("\n")),
                  buttonsOf(style), QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  switch (box.exec()) {
  case QMessageBox::Yes:
    return host::Answer::yes;
  case QMessageBox::No:
    return host::Answer::no;
  default:
    return host::Answer::ok;
  }
}

} // namespace imex::platform
