#include <QPixmap>
#include <QPluginLoader>
#include <QPushButton>
#include <QWidget>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <gtest/gtest.h>

namespace {

class DesignerPlugin : public testing::Test {
 protected:
  /// The application was made without a thought of the web engine, which says so when it is loaded.
  DesignerPlugin() : m_loader(QStringLiteral(IMEX_DESIGNER_PLUGIN)) {
    const QtMessageHandler handler = qInstallMessageHandler([](auto, const auto&, const QString& message) {
      EXPECT_TRUE(message.startsWith(QLatin1String("Qt WebEngine seems to be initialized from a plugin.")))
          << message.toStdString();
    });
    m_loader.load();
    qInstallMessageHandler(handler);
    collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(m_loader.instance());
  }

  QString error() const { return m_loader.errorString(); }

  QDesignerCustomWidgetCollectionInterface* collection = nullptr;

 private:
  QPluginLoader m_loader;
};

/// What Designer writes into a form that a control is dropped on.
QString form(const QString& name, const QString& objectName) {
  return QStringLiteral("<ui language=\"c++\"><widget class=\"imex::%1\" name=\"%2\"/></ui>").arg(name, objectName);
}

TEST_F(DesignerPlugin, offersTheControls) {
  ASSERT_NE(nullptr, collection) << error().toStdString();
  const QStringList names = {QStringLiteral("ImExActionCtrl"), QStringLiteral("ImExDocView"),
                             QStringLiteral("ImExFileEdit"), QStringLiteral("ImtExViewCtrl")};
  const QStringList objectNames = {QStringLiteral("imExActionCtrl"), QStringLiteral("imExDocView"),
                                   QStringLiteral("imExFileEdit"), QStringLiteral("imtExViewCtrl")};
  ASSERT_EQ(names.size(), collection->customWidgets().size());
  for (qsizetype i = 0; i < names.size(); ++i) {
    const QDesignerCustomWidgetInterface& entry = *collection->customWidgets()[i];
    EXPECT_EQ(QStringLiteral("imex::") + names[i], entry.name());
    EXPECT_EQ(QStringLiteral("controls/%1/%1.h").arg(names[i]), entry.includeFile());
    EXPECT_EQ(form(names[i], objectNames[i]), entry.domXml());
    EXPECT_FALSE(entry.toolTip().isEmpty());
    EXPECT_FALSE(entry.isContainer());
  }
}

TEST_F(DesignerPlugin, makesThemWithoutAnyServiceOfAHost) {
  ASSERT_NE(nullptr, collection) << error().toStdString();
  const QStringList buttons = {QStringLiteral("cmdImportExport"), QStringLiteral("cmdPrint"), QStringLiteral("cmdOK"),
                               QStringLiteral("cmdSearch")};
  for (qsizetype i = 0; i < buttons.size(); ++i) {
    QWidget window;
    QDesignerCustomWidgetInterface& entry = *collection->customWidgets()[i];
    const QWidget* control = entry.createWidget(&window);
    ASSERT_NE(nullptr, control);
    EXPECT_EQ(entry.name(), QLatin1String(control->metaObject()->className()));
    EXPECT_EQ(&window, control->parentWidget());
    EXPECT_NE(nullptr, control->findChild<QPushButton*>(buttons[i]));
    window.show();
    EXPECT_FALSE(window.grab().isNull());
  }
}

} // namespace
