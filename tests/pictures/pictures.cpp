// pictures FOLDER: draws the controls as the manual shows them, light and dark, into PNG files.

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "support/FakeUi.h"

#include <QApplication>
#include <QLineEdit>
#include <QPalette>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QStyleFactory>

#include <iostream>

namespace {

using imex::ImExActionCtrl;

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

} // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 2) {
    std::cerr << "usage: pictures FOLDER\n";
    return 64;
  }
  imex::test::TestHost host;
  const imex::test::FakeUi ui(host);
  host.application.directory = IMEX_SOURCE_DIR "/share";

  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  Drawing drawing(QString::fromLocal8Bit(argv[1]));
  drawPanels(drawing, QString());
  QApplication::setPalette(darkPalette());
  drawPanels(drawing, QStringLiteral("-dark"));
  return drawing.isComplete() ? 0 : 1;
}
