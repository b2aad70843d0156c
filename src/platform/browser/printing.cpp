#include "platform/browser/printing.h"

#include "runtime/RuntimeError.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QWebEngineView>

#include <cstdint>
#include <string>

namespace imex::platform {

namespace {

[[noreturn]] void fail(const QPrinter& printer) {
  const bool isFile = printer.outputFormat() == QPrinter::PdfFormat;
  const QString target = isFile ? printer.outputFileName() : printer.printerName();
  throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::deviceIoError), "WebBrowser",
                     "The document cannot be printed to " + target.toStdString());
}

/// The busy pointer, while it lives.
class BusyPointer {
 public:
  BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

} // namespace

bool askForPrinter(QWebEngineView& view, QPrinter& printer) {
  const QPointer<QWebEngineView> guard(&view);
  const QPointer<QPrintDialog> dialog(new QPrintDialog(&printer, view.window()));
  dialog->setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange |
                     QAbstractPrintDialog::PrintShowPageSize);
  const bool isAccepted = dialog->exec() == QDialog::Accepted;
  delete dialog;
  return isAccepted && guard;
}

void printAndWait(QWebEngineView& view, QPrinter& printer) {
  const BusyPointer busy;
  QEventLoop loop;
  bool isDone = false;
  const auto end = [&](bool isPrinted) {
    isDone = isPrinted;
    loop.quit();
  };
  QObject::connect(&view, &QObject::destroyed, &loop, [&] { end(false); });
  QObject::connect(&view, &QWebEngineView::renderProcessTerminated, &loop, [&] { end(false); });
  QObject::connect(&view, &QWebEngineView::printFinished, &loop, end);
  QObject::connect(&view, &QWebEngineView::pdfPrintingFinished, &loop,
                   [&](const QString& /*file*/, bool isPrinted) { end(isPrinted); });
  // A printer's file would hold pictures of the pages.
  if (printer.outputFormat() == QPrinter::PdfFormat)
    view.printToPdf(printer.outputFileName(), printer.pageLayout(), printer.pageRanges());
  else
    view.print(&printer);
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  if (!isDone)
    fail(printer);
}

} // namespace imex::platform
