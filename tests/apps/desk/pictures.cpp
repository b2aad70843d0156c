// desk_pictures FOLDER [dark]: draws the pages of the window and its dialogs as the manual shows them; with "dark", in
// dark colours and under names that end in "-dark".

#include "desk/DeskHost.h"
#include "desk/MainWindow.h"
#include "desk/SettingsDialog.h"
#include "platform/browser/WebBrowser.h"
#include "platform/qt/QtGrid.h"
#include "support/TemporaryFolder.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <iostream>
#include <string>

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
    std::filesystem::copy(IMEX_SOURCE_DIR "/share/samples", m_work.path() / "imports");
    std::filesystem::current_path(m_work.path()); // so that short paths find the files
  }

  void drawPages() {
    save(m_window, "offer");
    press(m_window, "yes");
    if (!QTest::qWaitFor([this] { return !m_settings.securedAddress().empty(); }, kGreatestWait))
      m_isComplete = false;
    saveWhenAsked("question");
    import(Page::import, "panelImport", "customers-agent-refused.txt");
    import(Page::import, "panelImport", "customers-agent-broken.txt");
    save(m_window, "editor");
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_End);
    save(m_window, "comments");
    m_window.showPage(Page::import);
    save(m_window, "import");
    view("panelImport", "cmdViewErrors");
    save(m_window, "results");
    import(Page::project, "panelProject", "project-items.txt");
    save(m_window, "project");
    import(Page::quote, "panelQuote", "quote-items.txt");
    save(m_window, "quote");
    import(Page::order, "panelOrder", "order-items.txt");
    save(m_window, "order");
    import(Page::order, "panelOrder", "order-items-broken.txt");
    pressKey(Qt::Key_End);
    save(m_window, "order-errors");
    view("panelOrder", "cmdViewDocumentation");
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
    panel(name)
        .findChild<QLineEdit*>(QStringLiteral("txtFilePath"))
        ->setText(QLatin1String("imports/") + QLatin1String(file));
    press(panel(name), "cmdImportExport");
  }

  /// Saves the next message box and answers it with Escape.
  void saveWhenAsked(const char* name) {
    auto* timer = new QTimer(&m_window);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer, name] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isVisible())
        return;
      timer->stop();
      save(*box, name);
      box->reject();
    });
    timer->start(0);
  }

  /// In the editor's grid.
  void pressKey(Qt::Key key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(m_window.findChild<ImExFileEdit*>()->findChild<platform::QtGrid*>(), &press);
  }

  /// Shows the document that a button of a panel leads to. The web engine paints it some time after it has come.
  void view(const char* panelName, const char* button) {
    QSignalSpy loaded(m_window.findChild<platform::WebBrowser*>(), &platform::WebBrowser::loaded);
    press(panel(panelName), button);
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
  const bool isDark = argc == 3 && argv[2] == std::string("dark");
  if (argc != 2 && !isDark) {
    std::cerr << "usage: desk_pictures FOLDER [dark]\n";
    return 64;
  }
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  if (isDark)
    QApplication::setPalette(darkPalette());
  Drawing drawing(QString::fromLocal8Bit(argv[1]), isDark ? QStringLiteral("-dark") : QString());
  drawing.drawPages();
  drawing.drawSettings();
  return drawing.isComplete() ? 0 : 1;
}
