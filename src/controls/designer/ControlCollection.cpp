#include "ControlCollection.h"

#include "ControlEntry.h"
#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImExDocView/ImExDocView.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"

namespace imex::designer {

template <class Widget>
void ControlCollection::add(const QString& name, const QString& toolTip) {
  m_entries += new ControlEntry({QStringLiteral("imex::") + name, QStringLiteral("controls/%1/%1.h").arg(name), toolTip,
                                 [](QWidget* parent) -> QWidget* { return new Widget(parent); }},
                                this);
}

ControlCollection::ControlCollection(QObject* parent) : QObject(parent) {
  add<ImExActionCtrl>(QStringLiteral("ImExActionCtrl"), QStringLiteral("The panel that runs one import"));
  add<ImExDocView>(QStringLiteral("ImExDocView"), QStringLiteral("The viewer that shows one document"));
  add<ImExFileEdit>(QStringLiteral("ImExFileEdit"), QStringLiteral("The editor of an import file"));
  add<ImtExViewCtrl>(QStringLiteral("ImtExViewCtrl"), QStringLiteral("The list of import and export jobs"));
}

} // namespace imex::designer
