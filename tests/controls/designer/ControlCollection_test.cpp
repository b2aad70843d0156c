#include <QPixmap>
#include <QPluginLoader>
#include <QPushButton>
#include <QWidget>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <gtest/gtest.h>

namespace {

class DesignerPlugin : public testing::Test {
 protected:
  DesignerPlugin() : m_loader(QStringLiteral(IMEX_DESIGNER_PLUGIN)) {
    collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(m_loader.instance());
  }

  QString error() const { return m_loader.errorString(); }

  QDesignerCustomWidgetCollectionInterface* collection = nullptr;

 private:
  QPluginLoader m_loader;
};

TEST_F(DesignerPlugin, offersThePanel) {
  ASSERT_NE(nullptr, collection) << error().toStdString();
  ASSERT_EQ(1, collection->customWidgets().size());
  const QDesignerCustomWidgetInterface& entry = *collection->customWidgets().constFirst();
  EXPECT_EQ(QStringLiteral("imex::ImExActionCtrl"), entry.name());
  EXPECT_EQ(QStringLiteral("controls/ImExActionCtrl/ImExActionCtrl.h"), entry.includeFile());
  EXPECT_EQ(
      QStringLiteral("<ui language=\"c++\"><widget class=\"imex::ImExActionCtrl\" name=\"imExActionCtrl\"/></ui>"),
      entry.domXml());
  EXPECT_FALSE(entry.toolTip().isEmpty());
  EXPECT_FALSE(entry.isContainer());
}

TEST_F(DesignerPlugin, makesAPanelWithoutAnyServiceOfAHost) {
  ASSERT_NE(nullptr, collection) << error().toStdString();
  QWidget form;
  QWidget* panel = collection->customWidgets().constFirst()->createWidget(&form);
  ASSERT_NE(nullptr, panel);
  EXPECT_STREQ("imex::ImExActionCtrl", panel->metaObject()->className());
  EXPECT_EQ(&form, panel->parentWidget());
  EXPECT_NE(nullptr, panel->findChild<QPushButton*>(QStringLiteral("cmdImportExport")));
  form.show();
  EXPECT_FALSE(form.grab().isNull());
}

} // namespace
