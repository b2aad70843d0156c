// The example itself, but for its main().
#define main minimalHostMain
#include "../../examples/minimal_host/main.cpp"
#undef main

#include "platform/browser/WebBrowser.h"
#include "platform/qt/QtGrid.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace imex::test {
namespace {

const std::string kShare = IMEX_SOURCE_DIR "/share";

/// The window, and an import service that it sends to.
class MinimalHostWindow : public testing::Test {
 protected:
  MinimalHostWindow() {
    qputenv("XDG_CACHE_HOME", QByteArray::fromStdString(folder / "cache"));
    services = std::make_unique<HostServices>(commandLine());
    window = std::make_unique<Window>(commandLine());
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    window->start();
    QObject::connect(&m_look, &QTimer::timeout, &m_look, [this] { answerBox(); });
    m_look.start(0);
  }
  ~MinimalHostWindow() override { EXPECT_THAT(takeBoxes(), testing::IsEmpty()); }

  /// The titles of the boxes that were shown since the last call. Each was answered with OK.
  std::vector<QString> takeBoxes() { return std::exchange(m_boxes, {}); }

  CommandLineHost& commandLine() {
    if (!m_commandLine) {
      std::string line = m_service.readLine();
      const std::string address = line.substr(line.find("http://"), line.find_last_not_of(" \r\n") + 1);
      std::vector<std::string> arguments{"minimal_host", kShare, address + "/secured", address + "/unsecured",
                                         "agent1"};
      std::vector<char*> pointers;
      for (std::string& argument : arguments)
        pointers.push_back(argument.data());
      m_commandLine.emplace(pointers.data());
    }
    return *m_commandLine;
  }

  template <class Widget>
  Widget& part(QWidget& control, const char* name) {
    return *control.findChild<Widget*>(QLatin1String(name));
  }

  /// Types the file into the panel of the page that is shown, and presses the button.
  void import(const std::string& file) {
    auto& panel = *window->currentWidget();
    part<QLineEdit>(panel, "txtFilePath").setText(QString::fromStdString(file));
    press(panel, "cmdImportExport");
  }

  void press(QWidget& control, const char* button) {
    QTest::mouseClick(&part<QPushButton>(control, button), Qt::LeftButton);
  }

  QString page() const { return window->tabText(window->currentIndex()); }

  host::Grid& grid() { return part<platform::QtGrid>(*window->currentWidget(), "MSFlexGrid1").cells(); }

  std::string sample(const std::string& name) { return folder.write(name, readFile(kShare + "/samples/" + name)); }

  TemporaryFolder folder;

 private:
  void answerBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible())
      return;
    m_boxes.push_back(box->windowTitle() + ": " + box->text());
    box->accept();
  }

  QTimer m_look;
  std::vector<QString> m_boxes;
  BackgroundProcess m_service{IMPORT_SERVICE,
                              {"--app-dir", kShare, "--store", "sqlite://:memory:", "--user", "agent1"}};
  std::optional<CommandLineHost> m_commandLine;

 protected:
  std::unique_ptr<HostServices> services;
  std::unique_ptr<Window> window;
};

TEST_F(MinimalHostWindow, badLineIsCorrectedAndImportedAgain) {
  std::string bytes = readFile(kShare + "/samples/customers-agent.txt");
  bytes.erase(0, bytes.find('\t'));
  const std::string file = folder.write("customers.txt", bytes);
  import(file);
  EXPECT_EQ("Editor", page());
  EXPECT_THAT(std::string(grid().text({1, 21})),
              testing::HasSubstr("Error : Customer Code is required but is empty.\r\n"));

  QTest::keyClicks(window->focusWidget(), "FENRIDGE");
  press(*window->currentWidget(), "cmdOK");
  EXPECT_EQ("Import", page());
  import(file);
  EXPECT_EQ("Import successful for this line.\r\n", grid().text({1, 21}));
}

TEST_F(MinimalHostWindow, quoteTakesTheLineItemsOfAFile) {
  window->setCurrentIndex(1);
  import(sample("quote-items.txt"));
  const auto& lines = *window->findChild<QTableWidget*>();
  ASSERT_EQ(6, lines.rowCount());
  EXPECT_EQ("400", lines.item(0, 0)->text());
  EXPECT_EQ("NV-2X4-T8-3-UNV", lines.item(0, 3)->text());
}

TEST_F(MinimalHostWindow, newFileIsWrittenByTheEditor) {
  press(*window->currentWidget(), "btnNew");
  EXPECT_EQ("Editor", page());
  QTest::keyClicks(window->focusWidget(), "A1");
  const QString file = part<ImExFileEdit>(*window, "ImExFileEdit").fileName();
  press(*window->currentWidget(), "cmdOK");
  EXPECT_EQ("Import", page());
  EXPECT_THAT(readFile(file.toStdString()), testing::StartsWith("A1\t"));
}

TEST_F(MinimalHostWindow, fileInTheEditorIsNotLostToTheNextOne) {
  part<QLineEdit>(*window->currentWidget(), "txtFilePath")
      .setText(QString::fromStdString(sample("customers-agent.txt")));
  press(*window->currentWidget(), "cmdEditFile");
  EXPECT_EQ("Editor", page());
  EXPECT_FALSE(window->close());

  window->setCurrentIndex(0);
  press(*window->currentWidget(), "btnNew");
  EXPECT_THAT(takeBoxes(), testing::ElementsAre("Error Number: 2001 - Save or cancel the file in the editor first: "
                                                "The requested operation could not be completed."));
  EXPECT_EQ("Editor", page());
  press(*window->currentWidget(), "cmdCancel");
  EXPECT_EQ("Import", page());
  EXPECT_TRUE(window->close());
}

TEST_F(MinimalHostWindow, buttonWorksAgainAfterAnExchangeThatFailed) {
  host::Services broken = host::services();
  broken.serviceCall = nullptr;
  host::install(broken);
  import(sample("customers-agent.txt"));
  EXPECT_THAT(takeBoxes(), testing::ElementsAre("Error Number: 429 - Component can't create object: "
                                                "The requested operation could not be completed."));
  EXPECT_TRUE(part<QPushButton>(*window->currentWidget(), "cmdImportExport").isEnabled());
}

TEST_F(MinimalHostWindow, specificationsAreShown) {
  press(*window->currentWidget(), "cmdViewDocumentation");
  EXPECT_EQ("Document", page());
  EXPECT_THAT(part<platform::WebBrowser>(*window, "WebBrowser1").address(),
              testing::EndsWith("/docs/SPECCUSTOMERAGENT.html"));
  press(*window->currentWidget(), "cmdOK");
  EXPECT_EQ("Import", page());
}

} // namespace
} // namespace imex::test
