#include "platform/qt/QtOpenFileDialog.h"

#include "modal.h"
#include "support/TemporaryFolder.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

namespace imex::platform {

namespace {

using test::withNextDialog;

const std::vector<host::FileFilter> kFilters = {
    {"All Files (*.*)", "*.*"}, {"Text Files (*.txt)", "*.txt"}, {"CSV Files (*.csv)", "*.csv"}};

std::optional<host::ChosenFile> ask(const std::string& directory) {
  return QtOpenFileDialog().show({"Open File", kFilters, directory});
}

TEST(QtOpenFileDialog, showsItsTitleItsFiltersAndItsFolder) {
  const test::TemporaryFolder folder;
  withNextDialog<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(QStringLiteral("Open File"), dialog.windowTitle());
    EXPECT_EQ(QDir(QString::fromStdString(folder.path().string())), dialog.directory());
    const auto* types = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    ASSERT_NE(nullptr, types);
    EXPECT_EQ(3, types->count());
    EXPECT_EQ(QStringLiteral("All Files (*.*)"), types->itemText(0));
    EXPECT_EQ(QStringLiteral("Text Files (*.txt)"), types->itemText(1));
    EXPECT_EQ(QStringLiteral("CSV Files (*.csv)"), types->itemText(2));
    EXPECT_EQ(QFileDialog::ExistingFile, dialog.fileMode());
    dialog.reject();
  });
  ask(folder.path().string());
}

TEST(QtOpenFileDialog, typedNameIsChosen) {
  const test::TemporaryFolder folder;
  folder.write("no dot", "");
  withNextDialog<QFileDialog>([](QFileDialog& dialog) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(nullptr, name);
    QTest::keyClicks(name, QStringLiteral("no dot"));
    QTest::keyClick(name, Qt::Key_Return);
  });
  const auto chosen = ask(folder.path().string());
  ASSERT_TRUE(chosen);
  EXPECT_EQ(folder.path().string() + "/", chosen->directory);
  EXPECT_EQ("no dot", chosen->name);
  EXPECT_EQ(folder / "no dot", chosen->path());
}

TEST(QtOpenFileDialog, cancelIsNothing) {
  withNextDialog<QFileDialog>([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_FALSE(ask(""));
}

TEST(QtOpenFileDialog, folderMayHaveEitherSeparator) {
  const test::TemporaryFolder folder;
  folder.write("Inner/a.txt", "");
  withNextDialog<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(QDir(QString::fromStdString(folder / "Inner")), dialog.directory());
    dialog.reject();
  });
  ask(folder.path().string() + "\\inner\\");
}

} // namespace

} // namespace imex::platform
