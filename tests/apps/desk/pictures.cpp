// desk_pictures FOLDER: draws the pages of the window and its dialog as the manual shows them, light and dark.

#include "desk/DeskHost.h"
#include "desk/MainWindow.h"
#include "desk/SettingsDialog.h"
#include "platform/browser/WebBrowser.h"
#include "support/TemporaryFolder.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>

#include <filesystem>
#include <iostream>

namespace {

using namespace imex;
using namespace imex::desk;

constexpr QSize kWindow(940, 680);
constexpr int kGreatestWait = 60'000; // milliseconds
constexpr int kDrawingTime = 1000;

QPalette darkPalette() {
  QPalette palette(QColor(45, 45, 48));
  palette.setColor(QPalette::Base, QColor(30, 30, 32));
  palette.setColor(QPalette::AlternateBase, QColor(38, 38, 41));
  palette.setColor(QPalette::Highlight, QColor(61, 125, 202));
  palette.setColor(QPalette::ToolTipBase, QColor(62, 62, 70));
  palette.setColor(QPalette::ToolTipText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
  return palette;
}

/// One window, led through its pages.
class Drawing {
 public:
  Drawing(QString folder, QString suffix) : m_folder(std::move(folder)), m_suffix(std::move(suffix)) {
    m_window.resize(kWindow);
    m_window.show();
    m_window.start();
    std::filesystem::copy(IMEX_SOURCE_DIR "/share/samples", m_work.path());
    std::filesystem::current_path(m_work.path()); // so that a name alone finds a file
  }

  void drawPages() {
    save(m_window, "offer");
    press(m_window, "yes");
    if (!QTest::qWaitFor([this] { return !m_settings.securedAddress().empty(); }, kGreatestWait))
      m_isComplete = false;
    import(Page::import, "panelImport", "customers-agent-broken.txt");
    save(m_window, "editor");
    m_window.showPage(Page::import);
    save(m_window, "import");
    import(Page::project, "panelProject", "project-items.txt");
    save(m_window, "project");
    import(Page::quote, "panelQuote", "quote-items.txt");
    save(m_window, "quote");
    import(Page::order, "panelOrder", "order-items.txt");
    save(m_window, "order");
    viewDocumentation();
    save(m_window, "documents");
  }

  void drawSettings() {
    m_settings.save({"https://imports.example/secured", "http://imports.example/unsecured", 30000, "", "Ann Agent",
                     "agent1", false});
    SettingsDialog dialog(m_settings);
    dialog.findChild<QLineEdit*>(QStringLiteral("proxyPort"))->setText(QStringLiteral("80800"));
    dialog.show();
    save(dialog, "settings");
  }

  bool isComplete() const { return m_isComplete; }

 private:
  ImExActionCtrl& panel(const char* name) { return *m_window.findChild<ImExActionCtrl*>(QLatin1String(name)); }

  static void press(QWidget& parent, const char* button) {
    parent.findChild<QAbstractButton*>(QLatin1String(button))->click();
  }

  void import(Page page, const char* name, const char* file) {
    m_window.showPage(page);
    panel(name).findChild<QLineEdit*>(QStringLiteral("txtFilePath"))->setText(QLatin1String(file));
    press(panel(name), "cmdImportExport");
  }

  /// The web engine paints a document some time after it has come.
  void viewDocumentation() {
    QSignalSpy loaded(m_window.findChild<platform::WebBrowser*>(), &platform::WebBrowser::loaded);
    press(panel("panelOrder"), "cmdViewDocumentation");
    if (!loaded.wait(kGreatestWait))
      m_isComplete = false;
    QTest::qWait(kDrawingTime);
  }

  void save(QWidget& widget, const char* name) {
    QApplication::processEvents();
    if (!widget.grab().save(m_folder + QStringLiteral("/desk-") + QLatin1String(name) + m_suffix +
                            QStringLiteral(".png")))
      m_isComplete = false;
  }

  QString m_folder;
  QString m_suffix;
  test::TemporaryFolder m_work;
  DeskSettings m_settings{m_work / "desk.ini", IMEX_SOURCE_DIR "/share", ""};
  DeskHost m_host{m_settings};
  MainWindow m_window{m_settings, {QStringLiteral(IMPORT_SERVICE_PROGRAM), QString::fromStdString(m_work / "data")}};
  bool m_isComplete = true;
};

} // namespace

int main(int argc, char** argv) {
  const imex::test::TemporaryFolder cache;
  qputenv("XDG_CACHE_HOME", QByteArray::fromStdString(cache.path().string()));
  const QApplication application(argc, argv);
  if (argc != 2) {
    std::cerr << "usage: desk_pictures FOLDER\n";
    return 64;
  }
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  bool isComplete = true;
  for (const char* suffix : {"", "-dark"}) {
    Drawing drawing(QString::fromLocal8Bit(argv[1]), QLatin1String(suffix));
    drawing.drawPages();
    drawing.drawSettings();
    isComplete = isComplete && drawing.isComplete();
    QApplication::setPalette(darkPalette());
  }
  return isComplete ? 0 : 1;
}
