#pragma once

#include "controls/common/procedures.h"
#include "request/ImExRequest.h"
#include "runtime/Boolean.h"
#include "runtime/Integer.h"
#include "runtime/export.h"

#include <QString>
#include <QVariant>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

class QKeyEvent;

namespace imex {

class DropDownList;

namespace Ui {
class ImExActionCtrl;
}

/// The panel on which a user chooses what to import, in which layout, with which delimiter and from which file, and
/// starts the import. A host places it on a form of its own, connects its signals, and then calls exactly one of the
/// two mode methods: initializeClientToServer() for master data, which goes to the import service, or
/// initializeClientToClient() for line items, which are handed to the host.
///
/// The mode call makes the panel's request and fills the lists. From then on every choice goes into the request at
/// once. Before it, every property but the read of RestrictedDataType fails with error 91.
///
/// Errors. A member that the host calls records its error and raises it again, with number, source and description. A
/// button or a list records its error and shows a box. There are these exceptions: cmdExit records its error and shows
/// no box. btnTemplate and cmbDataOrigin neither record nor show theirs: it leaves the event, and the host's
/// QApplication::notify() meets it. The errors of both functions RestrictDataOrigin go to the host without a record of
/// theirs. What was set before an error stays set.
///
/// Names. Child widgets have the names of the panel's controls ("cmbDataType"). A pair of option buttons is a
/// QButtonGroup of the pair's name ("optWarnings") whose identifiers are the indexes; its buttons are "optWarnings_0"
/// and "optWarnings_1". The source of trace lines is the panel's own objectName().
class IMEX_EXPORT ImExActionCtrl : public QWidget {
  Q_OBJECT

 public:
  /// A panel without a request; nothing can be chosen before a mode call.
  explicit ImExActionCtrl(QWidget* parent = nullptr);
  ~ImExActionCtrl() override;

  // --- Modes --------------------------------------------------------------------------------------------------------

  /// Customers, products, invoices, commissions and ballasts, sent to the service. Chosen at first: customers in the
  /// agent's layout, tabs, over-long values cut, warnings prevent the import.
  ///
  /// Also builds the catalogue of the formats, once for the process. A format file that cannot be read is named in a
  /// box, and the panel works for the formats before it.
  ///
  /// A second mode call makes a new request and adds its texts to the lists once more; what it found disabled, locked
  /// or hidden stays so.
  void initializeClientToServer();

  /// Project, quote and order line items, for the host. None is chosen at first: the host does that, with
  /// setDataType().
  void initializeClientToClient();

  // --- Choices that the host fixes ----------------------------------------------------------------------------------
  // A position counts from 0, -1 is none; error 9 outside the list, error 91 before a mode call.

  /// Chooses a data type and keeps the user from choosing another.
  void setDataType(Integer index);

  /// The same; also disables the action and the schedule, and for an index other than 0 the format.
  void RestrictedDataType(Integer index);

  /// Always an empty value.
  QVariant RestrictedDataType() const;

  /// Chooses a format and keeps the index.
  void RestrictDataOrigin(std::int32_t index);

  /// Sets DataOrigin to the kept index in decimal ("1") and returns an empty value. Hosts rely on the side effect.
  QVariant RestrictDataOrigin();

  // --- Properties of the request ------------------------------------------------------------------------------------
  // They pass straight to the request's property of the same name.

  /// Free text kept for the host.
  QString SelectedData() const;
  void SelectedData(const QString& value);

  /// "IMPORT", set by a mode call.
  QString ImportExport() const;
  void ImportExport(const QString& value);

  /// The code of the data type, "CUSTOMER".
  QString DataType() const;
  void DataType(const QString& value);

  /// "INSTANT", set by a mode call.
  QString Schedule() const;
  void Schedule(const QString& value);

  /// The code of the layout, "AGENT".
  QString DataOrigin() const;
  void DataOrigin(const QString& value);

  /// The name of the person asking.
  QString Requestor() const;
  void Requestor(const QString& value);

  /// The full path of the import file.
  QString CheckedFileName() const;
  void CheckedFileName(const QString& value);

  /// Whether a login is asked for; kept for the host.
  Boolean LoginReqd() const;
  void LoginReqd(Boolean value);

  /// Whether the component runs for the central server. The request is given it before each send; the panel never
  /// changes it.
  Boolean isCentralizedAgent;

  /// The size of its layout, and the smallest at which every part can be read.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // Arguments are the event's own objects, passed by reference: all handlers see the same ones, and what is written
  // into them does not change the settings. A list of column names is the catalogue's own. Connect directly, in the
  // panel's thread. An error that a handler raises is an error of the panel's procedure.

  /// Open the file in the editor: message, number of lines, number of columns, file, column names, delimiter code. The
  /// column names are null for a format that the catalogue does not have.
  void editImportFile(QString& message, Integer& rowCount, Integer& columnCount, QString& fileName, StringsPtr& headers,
                      Integer& delimiterAscii);

  /// Open the editor for a new file, which does not exist yet. Arguments as above, with one line.
  void newImportFile(QString& message, Integer& rowCount, Integer& columnCount, QString& fileName, StringsPtr& headers,
                     Integer& delimiterAscii);

  /// Insert the line items; there is at least one. They are the host's from here on.
  void insertProjectLineItems(ProjectLineItemsPtr& items);
  void insertQuoteLineItems(QuoteLineItemsPtr& items);
  void insertOrderLineItems(OrderLineItemsPtr& items);

  /// Show the HTML document of this path. Its parts that the panel adds to a folder have "\" as separator.
  void showDocs(QString& path);

  /// Close the screen that the panel is on.
  void exitMaintenance();

  /// Show the file with its messages: file, the fields of each line, the messages by row, number of lines, number of
  /// columns with the added one, column names with the added one, delimiter code.
  void showErrors(QString& fileName, RowsPtr& lines, ErrorBeansPtr& rows, Integer& rowCount, Integer& columnCount,
                  StringsPtr& headers, Integer& delimiterAscii);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  using EditorSignal = void (ImExActionCtrl::*)(QString&, Integer&, Integer&, QString&, StringsPtr&, Integer&);

  // Construction
  void askForFont();
  void connectControls();

  // Modes
  void createRequest();
  void connectRequest();
  void setTruncation(int index);
  void setWarnings(int index);
  void startModule();
  void fixDataType(Integer index);

  // Choices
  void cmbDataType_Click();
  void cmbDataOrigin_Click();
  void cmbDelimiter_Click();
  void optTruncation_Click(int index);
  void optWarnings_Click(int index);

  // Import
  void cmdImportExport_Click();
  class Sending;
  void importToServer();
  void importToHost();
  void restoreImport();
  bool isFocusUnclaimed() const;
  void cmdViewErrors_Click();
  void cmdExit_Click();
  bool clientToServerTaskReady();
  bool clientToClientTaskReady();
  void mImExRequest_MessageReceived(const std::shared_ptr<ImExReply>& reply);
  void mImExRequest_SerializationFailed(const std::string& message);
  void mImExRequest_editImportFile(const std::string& message, Integer rowCount, Integer columnCount,
                                   const std::string& fileName, StringsPtr headers, Integer delimiterAscii);
  void mImExRequest_showErrors(const std::string& fileName, RowsPtr lines, ErrorBeansPtr rows, Integer rowCount,
                               Integer columnCount, StringsPtr headers, Integer delimiterAscii);

  // Files and documents
  void cmdSelectFile_Click();
  void txtFilePath_KeyDown(const QKeyEvent& event);
  bool openFile();
  void btnNew_Click();
  void cmdEditFile_Click();
  void btnTemplate_Click();
  void cmdViewDocumentation_Click();
  void btnMoreInfoWarnings_Click();
  void btnMoreInfoTruncation_Click();
  void raiseEditor(EditorSignal signal, const std::string& path, Integer rowCount);
  void showDocumentation(const std::string& path);
  void showDocument(const std::string& path);

  void UserControl_Resize();

  /// The request; error 91 before a mode call.
  ImExRequest& request() const;

  std::string dataTypeText() const;
  void report(std::string_view text);

  // The shapes of the panel's procedures. Their error records carry the class's name, not the panel's own.

  /// One that the host calls.
  template <class Body>
  std::invoke_result_t<Body> hostCalled(std::string_view name, Body&& body) const {
    return tracedIn(*this, classLabels(name), std::forward<Body>(body), Reraise{});
  }

  /// One that an event of a control or of the request calls.
  template <class Body, class Ending = ShowBox>
  void handler(std::string_view name, Body&& body, Ending ending = {}) {
    tracedIn(*this, classLabels(name), std::forward<Body>(body), std::move(ending));
  }

  static Labels classLabels(std::string_view name) { return {.name = name, .errorSource = kClassName}; }

  static constexpr std::string_view kClassName = "ImExActionCtrl";

  std::unique_ptr<Ui::ImExActionCtrl> m_ui;
  bool m_isOptionPressed = false; ///< by the user, whose click follows
  bool m_isSending = false; ///< to the server; buttons do nothing then, in a loop of events that a handler may run
  std::shared_ptr<ImExRequest> m_imExRequest; ///< null before a mode call
  std::int32_t m_restrictedOrigin = 0;        ///< the index given to RestrictDataOrigin
};

} // namespace imex
