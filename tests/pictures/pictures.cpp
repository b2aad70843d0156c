// pictures FOLDER [dark]: draws the controls as the manual shows them into PNG files; with "dark", in dark colours
// and under names that end in "-dark".

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImExDocView/ImExDocView.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"
#include "platform/browser/WebBrowser.h"
#include "platform/qt/QtGrid.h"
#include "support/FakeUi.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QTimer>

#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using imex::ImExActionCtrl;
using imex::ImExDocView;
using imex::ImExFileEdit;

constexpr int kDrawingTime = 1000; // milliseconds that the web engine takes at most to paint what it has loaded

QPalette darkPalette() {
  QPalette palette(QColor(45, 45, 48));
  palette.setColor(QPalette::Base, QColor(30, 30, 32));
  palette.setColor(QPalette::Highlight, QColor(61, 125, 202));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
  return palette;
}

class Drawing {
 public:
  explicit Drawing(QString folder) : m_folder(std::move(folder)) {}

  void draw(QWidget& control, const QString& name) {
    control.resize(control.sizeHint());
    if (!control.grab().save(m_folder + QLatin1Char('/') + name + QStringLiteral(".png")))
      m_isComplete = false;
  }

  bool isComplete() const { return m_isComplete; }

 private:
  QString m_folder;
  bool m_isComplete = true;
};

void fill(ImExActionCtrl& panel, const QString& file, const QString& status) {
  panel.findChild<QLineEdit*>(QStringLiteral("txtFilePath"))->setText(file);
  panel.findChild<QPlainTextEdit*>(QStringLiteral("txtValidationResults"))->setPlainText(status);
}

void drawPanels(Drawing& drawing, const QString& suffix) {
  ImExActionCtrl toServer;
  toServer.initializeClientToServer();
  fill(toServer, QStringLiteral("/home/ann/imports/customers.txt"),
       QStringLiteral("The import is complete. 214 lines were accepted."));
  drawing.draw(toServer, QStringLiteral("panel-client-to-server") + suffix);

  ImExActionCtrl toClient;
  toClient.initializeClientToClient();
  toClient.setDataType(1);
  fill(toClient, QStringLiteral("/home/ann/imports/quote-4711.txt"), QStringLiteral("Import file opened for edit."));
  drawing.draw(toClient, QStringLiteral("panel-client-to-client") + suffix);
}

/// The page that a request writes about this answer.
std::string resultsPage(const imex::test::TestHost& host) {
  imex::ImExRequest request;
  request.DataType("CUSTOMER");
  request.DataOrigin("AGENT");
  request.Delimiter("PIPE");
  request.Directory(host.folder / "work/");
  request.Deserialize(*imex::test::answer(
      "2 of 4 lines were imported.",
      {{true, "ALDERTON|Alderton Electric Company|41 Station Road|Toledo|OH|43604|Nora Vance", "1"},
       {false,
        "GREATLAK|Great Lakes and River Valley Illumination Partners|700 Water Street|Erie|PA|16501|Joan Pike",
        "2",
        {"Firm Name is longer than 40 characters."}},
       {true,
        "CEDARHLL|Cedar Hill Hospital|15 Hospital Drive|Canton|OH|44702|Facilities",
        "3",
        {},
        {"Customer CEDARHLL is already there and was updated."}},
       {false,
        "|Northgate Interiors|230 Northgate Mall|Dayton|OH|45414|Lee Sandoval",
        "4",
        {"Customer Code is required."}}}));
  return host.folder / "work/validationresults.html";
}

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

/// What the engine paints reaches the screen after the document has come, and only of a window that is shown.
void drawDocument(Drawing& drawing, const std::string& file, const QString& name) {
  ImExDocView viewer;
  viewer.resize(viewer.sizeHint());
  viewer.show();
  QEventLoop loop;
  auto* browser = viewer.findChild<imex::platform::WebBrowser*>(QStringLiteral("WebBrowser1"));
  QObject::connect(browser, &imex::platform::WebBrowser::loaded, &loop, &QEventLoop::quit);
  QString path = QString::fromStdString(file);
  viewer.showDoc(path);
  loop.exec();
  wait(kDrawingTime);
  drawing.draw(viewer, name);
}

void drawDocuments(Drawing& drawing, const imex::test::TestHost& host, const QString& suffix) {
  drawDocument(drawing, resultsPage(host), QStringLiteral("docview-results") + suffix);
  drawDocument(drawing, IMEX_SOURCE_DIR "/share/docs/SPECCUSTOMERAGENT.html",
               QStringLiteral("docview-specification") + suffix);
}

void drawJobLog(Drawing& drawing, const QString& suffix) {
  imex::ImtExViewCtrl jobs;
  drawing.draw(jobs, QStringLiteral("job-log") + suffix);
}

// --- The editor -----------------------------------------------------------------------------------------------------

constexpr int kPipe = 124;

const std::vector<std::string> kCustomers = {
    "ALDERTON|Alderton Electric Company|41 Station Road|Toledo|OH|43604",
    "BRIARWD|Briarwood Lighting Supply|8 Mill Lane|Akron|OH|44308",
    "CEDARHLL|Cedar Hill Hospital|15 Hospital Drive|Canton|OH|44702",
    "GREATLAK|Great Lakes and River Valley Illumination|700 Water Street|Erie|PA|16501",
    "NORTHGTE|Northgate Interiors|230 Northgate Mall|Dayton|OH|45414"};
const std::vector<std::string> kTitles = {"Customer Code", "Firm Name", "Address 1", "City", "State", "Zip"};

imex::StringsPtr listOf(const std::vector<std::string>& texts) {
  auto list = std::make_shared<imex::Strings>();
  for (const std::string& text : texts)
    list->add(text);
  return list;
}

/// Enters the first cells as a user does, so that the edit line is loaded.
void enterCells(ImExFileEdit& editor) {
  editor.show();
  editor.activateWindow();
  editor.reset();
  auto* grid = editor.findChild<imex::platform::QtGrid*>(QStringLiteral("MSFlexGrid1"));
  for (const auto key : {Qt::Key_Right, Qt::Key_Down}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(grid, &press);
  }
}

void drawFile(Drawing& drawing, const imex::test::TestHost& host, const QString& suffix) {
  ImExFileEdit editor;
  editor.fileName(QString::fromStdString(host.folder.write("customers.txt", imex::test::textLines(kCustomers))));
  editor.NumberRows(kCustomers.size());
  editor.NumberColumns(kTitles.size());
  editor.HeaderCollection(listOf(kTitles));
  editor.DelimiterAscii(kPipe);
  editor.loadGrid();
  enterCells(editor);
  drawing.draw(editor, QStringLiteral("editor-file") + suffix);
}

void addMessage(imex::Collection<std::shared_ptr<imex::ImportExportErrorBean>>& list, int row, std::string text) {
  auto message = std::make_shared<imex::ImportExportErrorBean>();
  message->RowNumber(row);
  message->RowError(std::move(text));
  list.add(std::move(message));
}

imex::ErrorBeansPtr customerMessages() {
  auto list = std::make_shared<imex::Collection<std::shared_ptr<imex::ImportExportErrorBean>>>();
  const std::string failed = "Import failed for this line due to errors and/or warnings on line(s): 2,3";
  const std::string successful = "Import successful for this line.";
  addMessage(*list, 1, successful);
  addMessage(*list, 2, failed);
  addMessage(*list, 2, "Error : Firm Name is longer than 40 characters.");
  addMessage(*list, 3, failed);
  addMessage(*list, 3, "Error : Customer Code is required.");
  addMessage(*list, 4, successful);
  addMessage(*list, 4, "Warning : Customer CEDARHLL is already there and was updated.");
  return list;
}

void drawMessages(Drawing& drawing, const QString& suffix) {
  auto records = std::make_shared<imex::Collection<imex::StringsPtr>>();
  records->add(listOf({"ALDERTON", "Alderton Electric"}));
  records->add(listOf({"GREATLAK", "Great Lakes and River Valley Illumination"}));
  records->add(listOf({"", "Northgate Interiors"}));
  records->add(listOf({"CEDARHLL", "Cedar Hill Hospital"}));
  ImExFileEdit editor;
  editor.loadGridWithErrors(QString(), records, customerMessages(), 4, 3,
                            listOf({"Customer Code", "Firm Name", "Comments"}), kPipe);
  enterCells(editor);
  drawing.draw(editor, QStringLiteral("editor-errors") + suffix);
}

void drawEditors(Drawing& drawing, const imex::test::TestHost& host, const QString& suffix) {
  drawFile(drawing, host, suffix);
  drawMessages(drawing, suffix);
}

} // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const bool isDark = argc == 3 && argv[2] == std::string("dark");
  if (argc != 2 && !isDark) {
    std::cerr << "usage: pictures FOLDER [dark]\n";
    return 64;
  }
  imex::test::TestHost host;
  const imex::test::FakeUi ui(host);
  host.application.directory = IMEX_SOURCE_DIR "/share";

  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  if (isDark)
    QApplication::setPalette(darkPalette());
  const QString suffix = isDark ? QStringLiteral("-dark") : QString();
  Drawing drawing(QString::fromLocal8Bit(argv[1]));
  drawPanels(drawing, suffix);
  drawJobLog(drawing, suffix);
  drawEditors(drawing, host, suffix);
  drawDocuments(drawing, host, suffix);
  return drawing.isComplete() ? 0 : 1;
}
