#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

namespace imex::designer {

/// The controls that Designer offers.
class ControlCollection : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  explicit ControlCollection(QObject* parent = nullptr);

  QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return m_entries; }

 private:
  /// Offers a control: add<ImExActionCtrl>("ImExActionCtrl", "what it is for").
  template <class Widget>
  void add(const QString& name, const QString& toolTip);

  QList<QDesignerCustomWidgetInterface*> m_entries; ///< owned as children
};

} // namespace imex::designer
