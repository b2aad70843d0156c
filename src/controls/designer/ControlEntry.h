#pragma once

#include <QString>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <functional>

namespace imex::designer {

/// What Designer shows of a control and how it makes one.
struct Control {
  QString className;   ///< with its namespace: "imex::ImExActionCtrl"
  QString includeFile; ///< as a program includes it
  QString toolTip;
  std::function<QWidget*(QWidget* parent)> create;
};

/// A control's entry in the widget box. A form that it is dropped on names it after its class ("imExActionCtrl").
class ControlEntry : public QObject, public QDesignerCustomWidgetInterface {
  Q_OBJECT
  Q_INTERFACES(QDesignerCustomWidgetInterface)

 public:
  ControlEntry(Control control, QObject* parent);

  QString name() const override { return m_control.className; }
  QString group() const override { return QStringLiteral("Corvana"); }
  QString toolTip() const override { return m_control.toolTip; }
  QString whatsThis() const override { return m_control.toolTip; }
  QString includeFile() const override { return m_control.includeFile; }
  QIcon icon() const override { return {}; }
  bool isContainer() const override { return false; }
  QWidget* createWidget(QWidget* parent) override { return m_control.create(parent); }
  QString domXml() const override;

 private:
  Control m_control;
};

} // namespace imex::designer
