#include "ControlEntry.h"

#include <QIcon>

#include <utility>

namespace imex::designer {

ControlEntry::ControlEntry(Control control, QObject* parent) : QObject(parent), m_control(std::move(control)) {}

QString ControlEntry::domXml() const {
  QString objectName = m_control.className.section(QStringLiteral("::"), -1);
  objectName[0] = objectName[0].toLower();
  return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"/></ui>")
      .arg(m_control.className, objectName);
}

} // namespace imex::designer
