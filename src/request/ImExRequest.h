#pragma once

#include "host/ImportBean.h"
#include "host/SoapNode.h"
#include "records/ImExReply.h"
#include "records/ImportExportErrorBean.h"
#include "records/ImportOrderLineItemBean.h"
#include "records/ImportProjectLineItemBean.h"
#include "records/ImportQuoteLIneItemBean.h"
#include "runtime/Boolean.h"
#include "runtime/Collection.h"
#include "runtime/Event.h"
#include "runtime/Integer.h"
#include "runtime/TextFile.h"
#include "runtime/export.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace imex {

namespace host {
class HttpTransport;
class SoapEnvelope;
} // namespace host

using RowsPtr = CollectionPtr<StringsPtr>;
using ErrorBeansPtr = CollectionPtr<std::shared_ptr<ImportExportErrorBean>>;
using ProjectLineItemsPtr = CollectionPtr<std::shared_ptr<ImportProjectLineItemBean>>;
using QuoteLineItemsPtr = CollectionPtr<std::shared_ptr<ImportQuoteLIneItemBean>>;
using OrderLineItemsPtr = CollectionPtr<std::shared_ptr<ImportOrderLineItemBean>>;

/// One import request: its settings, the checks of the import file on the client, the two roads to the import service
/// and what becomes of the answer.
///
/// Set ImportExport, DataType, DataOrigin, Delimiter, Schedule, CheckedFileName, AllowWarnings, AllowTruncation and
/// Directory in any order, then call send() or Serialize(). The events arrive during the call, on the caller's thread.
/// The settings outlive a call, failed or not; nothing is retried. No setting is checked: an unknown code matches no
/// branch. The user's file is only ever read.
///
/// Codes: ImportExport "IMPORT"; DataType "CUSTOMER", "PRODUCT", "INVOICE", "COMMISSION", "BALLASTS" and, for line
/// items, "PROJECTLINEITEM", "QUOTELINEITEM", "ORDERLINEITEM"; DataOrigin "AGENT" (the agent's own layout), "HALVIK"
/// (the manufacturer's); Schedule "INSTANT"; Delimiter "TAB", "PIPE".
class IMEX_EXPORT ImExRequest {
 public:
  // --- Events, in the order of declaration --------------------------------------------------------------------------

  /// The answer has been read.
  Event<const std::shared_ptr<ImExReply>&> MessageReceived;

  /// The user wants to correct the file: message, number of lines, number of columns, file, column names, delimiter
  /// code. What a handler writes into the arguments does not flow back into the settings; the list is the catalogue's.
  Event<std::string&, Integer&, Integer&, std::string&, StringsPtr&, Integer&> editImportFile;

  /// Sending failed: why, for the user.
  Event<const std::string&> SerializationFailed;

  /// The verdicts are ready to be shown beside the file: file, the fields of each line, the messages by row, number of
  /// lines, number of columns with the added one, column names with the added one, delimiter code.
  Event<std::string&, RowsPtr&, ErrorBeansPtr&, Integer&, Integer&, StringsPtr&, Integer&> showErrors;

  // --- Operations ---------------------------------------------------------------------------------------------------

  /// Whether the component runs for the central server, where distributors cannot be imported.
  Boolean isCentralizedAgent;

  /// Checks the file and sends it through the host's service call. A line that fails its check stops the reading; the
  /// user is asked whether to correct the file (editImportFile). A file that cannot be read or not read to its end is
  /// not sent. The answer goes to Deserialize(), except that of a ballast import, which is not read.
  /// Has no handler: an error of a host object or of the exchange reaches the caller.
  void send();

  /// The instant road: builds the envelope itself and posts it. Every failure is SerializationFailed; only an error
  /// whose number has more than 16 bits reaches the caller, as error 6.
  void Serialize();

  /// Turns the service's result element into a reply: raises MessageReceived, writes the results page into Directory
  /// and, for an answer of at most 1000 texts, raises showErrors. A page or a merge that fails is SerializationFailed;
  /// an error in the answer or of a handler of MessageReceived is recorded and passed on.
  void Deserialize(host::SoapNode& resultNode);

  /// Reads the file as line items, for the host: nothing is sent. One record for each line, in file order; a line with
  /// no more characters than its format has columns is skipped and not counted. DataType and DataOrigin choose the
  /// format, which these calls do not check against what they read.
  ///
  /// - Fields that fail their checks: showErrors, and an empty list. The file is read to its end first, and a line
  ///   has a message for each such field. The added column, "Errors", stays in the catalogue's list of the format.
  /// - More than 500 lines counted: a box with their number, and null.
  /// - A file that cannot be opened, or a line whose number of fields is not that of the format: a box, and null. The
  ///   messages of earlier lines are lost.
  /// - An error, of the reading or of a handler of showErrors: recorded, shown in a box, and null. A format of fewer
  ///   columns than the record takes is such an error (9), a line of more than 32,767 characters and more than 32,767
  ///   lines are others (6).
  ///
  /// The file is read under file number 1 and closed in every case, before showErrors is raised.
  ProjectLineItemsPtr serializeProjectLineItemFile();
  QuoteLineItemsPtr serializeQuoteLineItemFile();
  OrderLineItemsPtr serializeOrderLineItemFile();

  /// Checks one line and returns what is wrong with it, a list that is empty when the line passes: first the number of
  /// fields, then the required fields of the agent's customer and product layouts. An error is recorded and shown in a
  /// box, and what was found so far is returned; only one whose number has more than 16 bits reaches the caller, as
  /// error 6.
  StringsPtr simpleClientValidation(std::string_view line, Integer delimiterAscii, Integer expectedFields);

  /// Checks the fields of a row of the agent's product or customer layout; returns at most one message. Short rows are
  /// missing their fields and never an error.
  StringsPtr validateAgentProduct(const StringsPtr& fields);
  StringsPtr validateAgentCustomer(const StringsPtr& fields);

  /// Whether the file may be opened in the editor, that is, whether it can be read and has at most 32,767 lines, empty
  /// ones included. Their number becomes rowCount. The user sees a box where the answer is no.
  Boolean checkFileForEdit();

  // --- Settings -----------------------------------------------------------------------------------------------------

  /// Free text kept for the panel.
  std::string SelectedData() const { return m_selectedData; }
  void SelectedData(std::string value) { m_selectedData = std::move(value); }

  /// "IMPORT"; it is sent and decides nothing.
  std::string ImportExport() const { return m_importExport; }
  void ImportExport(std::string value) { m_importExport = std::move(value); }

  /// The code of the data type.
  std::string DataType() const { return m_dataType; }
  /// Also takes the column count of the format from the catalogue.
  void DataType(std::string value);

  /// "INSTANT"; it is sent and decides nothing.
  std::string Schedule() const { return m_schedule; }
  void Schedule(std::string value) { m_schedule = std::move(value); }

  /// Also takes the column count of the format from the catalogue. Assigning does not, so a DataOrigin that is
  /// assigned after DataType shows in tabCount from the next read of DataOrigin on.
  std::string DataOrigin();

  /// "TAB" and "PIPE", exactly so, set DelimiterAscii to 9 and 124; any other text leaves it as it was.
  void Delimiter(std::string value);
  std::string Delimiter() const { return m_delimiter; }

  /// Sets the code of the layout; see the read above.
  void DataOrigin(std::string value) { m_dataOrigin = std::move(value); }

  /// The name of the person asking, kept for the panel.
  std::string Requestor() const { return m_requestor; }
  void Requestor(std::string value) { m_requestor = std::move(value); }

  /// The full path of the import file.
  std::string CheckedFileName() const { return m_checkedFileName; }
  void CheckedFileName(std::string value) { m_checkedFileName = std::move(value); }

  /// Whether the panel must ask for a login, kept for the panel.
  Boolean LoginReqd() const { return m_loginReqd; }
  void LoginReqd(Boolean value) { m_loginReqd = value; }

  /// Whether the service may accept lines that carry only warnings.
  Boolean AllowWarnings() const { return m_allowWarnings; }
  void AllowWarnings(Boolean value) { m_allowWarnings = value; }

  /// Whether the service may cut over-long values.
  Boolean AllowTruncation() const { return m_allowTruncation; }
  void AllowTruncation(Boolean value) { m_allowTruncation = value; }

  /// The number of columns that a line must have.
  Integer tabCount() const;
  void tabCount(Integer value);

  /// The folder of the results page, with a separator at its end.
  std::string Directory() const;
  void Directory(std::string value);

  /// The number of non-empty lines read in the last import; of all lines after checkFileForEdit().
  Integer rowCount() const;
  void rowCount(Integer value);

  /// The application directory followed by "\docs\FORMAT", DataOrigin, DataType and ".dat". For the line item types
  /// this is on purpose not the name under which the catalogue reads their formats.
  std::string FormatFileName();

  /// 9 for "TAB", 124 for "PIPE", 0 until one of them was assigned.
  Integer DelimiterAscii() const;

 protected:
  /// Writes a page of plain texts under the name of the results page and, where there is at least one, opens it in the
  /// browser. No flow of the component uses it; it is kept for a host that derives from the request. A failure is
  /// SerializationFailed; only an error whose number has more than 16 bits reaches the caller, as error 6.
  void writeErrorListReport(const Strings& texts);

 private:
  /// Takes one line of the import file that passed its check.
  using AddLine = std::function<void(std::string_view)>;

  /// What reading the import file came to. Only a file that was read to its end is sent.
  struct FileReading {
    StringsPtr errors;
    bool isComplete = false;
  };

  std::string formatKey();
  void setTabCount();

  // Reading the import file
  FileReading readImportFile(const AddLine& addLine);
  FileReading addImportLines(const AddLine& addLine);
  FileReading readFile(std::string_view procedure, const AddLine& addLine);
  void readLines(FileReading& reading, const AddLine& addLine);
  bool isGood(std::string_view line, Strings& errors);
  bool mayPassUnchecked() const;
  void askToCorrect(const Strings& errors);
  void raiseEditImportFile();

  // The road of send()
  std::shared_ptr<host::RequestInformation> requestInformation();
  void callService(const host::ImportBean& bean);

  // The instant road
  bool selectInstantMethod(host::SoapEnvelope& envelope);
  bool buildRequestInformation(host::SoapNode& node);
  void sendLines(host::HttpTransport& transport, host::SoapEnvelope& envelope, host::SoapNode& lines);
  void exchange(host::HttpTransport& transport, host::SoapEnvelope& envelope);

  bool isBallasts() const { return m_dataType == "BALLASTS"; }

  // The answer
  void mergeLineResults();
  bool areRowsSeen() const;
  bool isHardToSplit(const ImExFormat& format) const;
  void writeResultsReport();
  std::string resultsPagePath() const;
  std::string failureList();
  void addRows(const ImExFormat& format, const std::string& failures, ErrorBeansPtr& errors, RowsPtr& lines);

  void checkFields(Strings& findings);

  std::string m_selectedData;
  std::string m_importExport;
  std::string m_dataType;
  std::string m_schedule;
  std::string m_dataOrigin;
  std::string m_delimiter;
  Boolean m_allowTruncation;
  Boolean m_allowWarnings;
  Integer m_tabCount;
  std::string m_requestor;
  std::string m_checkedFileName;
  Boolean m_loginReqd;
  std::int32_t m_lineTimeout = 0; ///< the host's time-out and 1000 for each line of the last send(); read nowhere
  std::shared_ptr<ImExReply> m_currentReply;
  std::string m_directory;
  Integer m_rowCount;
  Boolean m_fileIsClean;
  Integer m_delimiterAscii;
  StringsPtr m_fields; ///< of the line last split
};

} // namespace imex
