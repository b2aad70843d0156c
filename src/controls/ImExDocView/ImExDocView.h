#pragma once

#include "controls/common/procedures.h"
#include "host/Browser.h"
#include "runtime/export.h"

#include <QString>
#include <QWidget>

#include <memory>
#include <string_view>
#include <utility>

namespace imex {

namespace Ui {
class ImExDocView;
}

/// A viewer of one document, such as a specification page or the results page, with a button to print it and one to be
/// done with it. A host places it on a form, connects closed(), and calls showDoc(), to which the panel's showDocs()
/// can be connected directly. It starts with an empty page.
///
/// What is shown, what a document may do and what a program must prepare is written in host/Browser.h and
/// platform/browser/WebBrowser.h.
///
/// Errors. showDoc() records its error and raises it again; a button records its error and shows a box; a size in which
/// the browser does not fit is recorded, and everything keeps its place. Error records carry "ImExActionCtrl", the name
/// that all controls share; that of a size carries the viewer's own objectName(), as all trace lines do.
///
/// Keys. Tab goes from the document to Print and OK. Ctrl+P presses Print, Ctrl+F finds a text in the document, and Esc
/// closes the find bar or, where that is closed, presses OK. Child widgets: "WebBrowser1", "cmdPrint", "cmdOK".
class IMEX_EXPORT ImExDocView : public QWidget {
  Q_OBJECT

 public:
  /// A viewer of the empty page.
  explicit ImExDocView(QWidget* parent = nullptr);
  ~ImExDocView() override;

  /// Shows the document at `path`: a path in either notation or an address. It is left as it is. Errors as in
  /// host::Browser::navigate(), 53 for a file that is missing, whose description names it; the viewer then stays as it
  /// was.
  void showDoc(QString& path);

  /// The size of its layout, and the smallest in which the browser has room.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user pressed OK: hide the viewer or remove it.
  void closed();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void connectControls();
  void UserControl_Initialize();
  void UserControl_Resize();
  void cmdPrint_Click();
  void cmdOK_Click();

  host::Browser& browser() const;

  /// A procedure that an event calls.
  template <class Body>
  void handler(std::string_view name, Body&& body, ShowBox ending = {}) {
    tracedIn(*this, labels(name), std::forward<Body>(body), std::move(ending));
  }

  static Labels labels(std::string_view name) { return {.name = name, .errorSource = kControlErrorSource}; }

  std::unique_ptr<Ui::ImExDocView> m_ui;
};

} // namespace imex
