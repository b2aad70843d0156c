#include "Import.h"

#include "host/MessageBox.h"
#include "module/ImExModule.h"
#include "module/state.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <utility>

namespace imex::test {

namespace {

std::string customer(int number, std::size_t nameSize) {
  // Every third has a character beyond ASCII, so that a reader that looked no further has to look again.
  const std::string name = (number % 3 == 0 ? "Caf\xC3\xA9 " : "Firm ") + std::string(nameSize, 'n');
  return "C" + std::to_string(number) + "|" + name + "|1 Main St|||Town|GA|30012|||555-0100||Dist";
}

std::string customers(int count, std::size_t nameSize) {
  std::string file;
  for (int i = 1; i <= count; ++i)
    file += customer(i, nameSize) + "\r\n";
  return file;
}

std::string items(int count, std::string_view lastQuantity) {
  std::string file;
  for (int i = 1; i <= count; ++i)
    file += std::string(i == count ? lastQuantity : "24") + "|F1|NORVANE|NV-1X4|73.75|0.05|70.75|0.045|67.00|0.04\r\n";
  return file;
}

/// The service's verdicts on the customers: the second has an error, the third a warning.
std::shared_ptr<host::SoapNode> verdicts(const Way& way) {
  std::vector<Verdict> lines;
  for (int i = 1; i <= way.customers; ++i) {
    Verdict verdict{i != 2, customer(i, way.nameSize) + "|", std::to_string(i)};
    if (i == 2)
      verdict.errors = {"State is unknown", "Zip is too long for the column that it belongs to"};
    if (i == 3)
      verdict.warnings = {"The row is there already and will be updated"};
    lines.push_back(std::move(verdict));
  }
  return answer("Import refused.", lines);
}

std::vector<Way> makeWays(int lines, std::size_t nameSize, int itemLines) {
  const std::string good = customers(lines, nameSize);
  return {
      {"send", Way::Call::send, "CUSTOMER", good, lines, nameSize},
      {"instant", Way::Call::instant, "CUSTOMER", good, lines, nameSize},
      {"lineItems", Way::Call::projectItems, "PROJECTLINEITEM", items(itemLines, "24")},
      {"badLineItems", Way::Call::projectItems, "PROJECTLINEITEM", items(itemLines, "-1")},
      {"correction", Way::Call::send, "CUSTOMER", customers(1, nameSize) + "only|two\r\n"},
  };
}

template <class Record>
std::string describe(const CollectionPtr<std::shared_ptr<Record>>& records) {
  if (!records)
    return "returned nothing";
  std::string text = "returned " + std::to_string(records->count());
  for (const auto& record : *records)
    text += '\n' + record->quantity() + ' ' + record->CatalogNumber() + ' ' + record->Column3Commission();
  return text;
}

/// Without the columns that each answer adds to the catalogue's own list.
std::size_t columnsOfFormat(const StringsPtr& headers) {
  return headers ? static_cast<std::size_t>(
                       std::count_if(headers->begin(), headers->end(),
                                     [](const std::string& name) { return name != "Comments" && name != "Errors"; }))
                 : 0;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Way& way) {
  return stream << way.name;
}

const std::vector<Way>& ways() {
  static const std::vector<Way> ways = makeWays(60, 2500, 400); // more than a buffer of a file
  return ways;
}

const std::vector<Way>& shortWays() {
  static const std::vector<Way> ways = makeWays(3, 20, 3);
  return ways;
}

const Way& wayNamed(std::string_view name) {
  const auto found = std::find_if(ways().begin(), ways().end(), [&](const Way& way) { return way.name == name; });
  return found == ways().end() ? throw std::invalid_argument(std::string(name)) : *found;
}

/// Keeps errors, and counts nothing of that as an allocation of the component.
class Import::ErrorLog : public host::TraceLog {
 public:
  explicit ErrorLog(Texts& errors) : m_errors(errors) {}

  void LogError(std::string_view, std::string_view, const RuntimeError& error, std::int32_t) override {
    const AllocationPause pause;
    m_errors.push_back(std::to_string(error.number()) + ' ' + error.source() + ": " + error.description());
  }
  void Trace(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                       std::int32_t line) override {
    LogError(source, procedure, error, line);
  }
  bool takesTraces() const override { return isTaking; }

  bool isTaking = true;

 private:
  Texts& m_errors;
};

class Import::Boxes : public host::MessageBox {
 public:
  explicit Boxes(Import& owner) : m_import(owner) {}

  host::Answer show(std::string_view prompt, int style, std::string_view title) override {
    const AllocationPause pause;
    m_import.keep("box " + std::to_string(style) + ' ' + std::string(title) + ": " + std::string(prompt));
    return style == host::kQuestionStyle ? host::Answer::yes : host::Answer::ok;
  }

 private:
  Import& m_import;
};

Import::Import(const Way& way)
    : m_way(way), m_trace(std::make_shared<ErrorLog>(errors)), m_boxes(std::make_unique<Boxes>(*this)) {
  host.services.messageBox = m_boxes.get();
  host.services.transportFactory = &transports;
  host.services.createTraceLog = [this] { return m_trace; };
  host.install();
  ImExModule::state() = {};
  ImExModule::initialize();

  host.folder.write("import.txt", way.file);
  host.folder.write("out/other.txt", "");
  host.serviceCall.result = verdicts(way);
  transports.result = host.serviceCall.result;
  request.DataOrigin("AGENT");
  request.DataType(way.dataType);
  request.Delimiter("PIPE");
  request.ImportExport("IMPORT");
  request.Schedule("INSTANT");
  request.Directory(host.folder / "out/");
  request.CheckedFileName(path());
  connectEvents();
  m_descriptors = openDescriptors();
}

Import::~Import() = default;

void Import::stopTracing() {
  m_trace->isTaking = false;
}

void Import::keep(const std::string& text) {
  m_result.push_back(text);
}

void Import::connectEvents() {
  request.MessageReceived.connect([this](const std::shared_ptr<ImExReply>& reply) {
    const AllocationPause pause;
    keep("MessageReceived " + reply->reply() + ' ' + toText(reply->intTotalErrorsAndWarnings));
  });
  request.SerializationFailed.connect([this](const std::string& message) {
    const AllocationPause pause;
    keep("SerializationFailed " + message);
  });
  request.editImportFile.connect([this](std::string& message, Integer& rows, Integer& columns, std::string&,
                                        StringsPtr& headers, Integer& delimiter) {
    const AllocationPause pause;
    keep("editImportFile " + message + ' ' + toText(rows) + ' ' + toText(columns) + ' ' +
         std::to_string(columnsOfFormat(headers)) + ' ' + toText(delimiter));
  });
  request.showErrors.connect([this](std::string&, RowsPtr& lines, ErrorBeansPtr& rows, Integer& count, Integer& columns,
                                    StringsPtr& headers, Integer& delimiter) {
    const AllocationPause pause;
    std::string text = "showErrors " + toText(count) + ' ' + toText(columns) + ' ' +
                       std::to_string(columnsOfFormat(headers)) + ' ' + toText(delimiter);
    for (const StringsPtr& line : *lines)
      text += '\n' + join(texts(line), "|");
    for (const auto& row : *rows)
      text += '\n' + toText(row->RowNumber()) + ": " + row->RowError();
    keep(text);
  });
}

void Import::call() {
  switch (m_way.call) {
  case Way::Call::send:
    return request.send();
  case Way::Call::instant:
    return request.Serialize();
  case Way::Call::projectItems: {
    const auto records = request.serializeProjectLineItemFile();
    const AllocationPause pause;
    return keep(describe(records));
  }
  }
}

/// Their memory goes too, so that a test can count blocks.
void Import::forget() {
  m_result = Texts();
  errors = Texts();
  host.serviceCall.calls = std::vector<FakeServiceCall::Call>();
  transports.calls = Texts();
  transports.posted = Texts();
}

Texts Import::restart() {
  {
    const AllocationPause pause;
    forget();
    ImExModule::state() = {};
  }
  ImExModule::initialize();
  const AllocationPause pause;
  return m_result;
}

Texts Import::run() {
  {
    const AllocationPause pause;
    host.folder.write("out/validationresults.html", oldPage);
    forget();
  }
  try {
    call();
  } catch (const RuntimeError& error) {
    const AllocationPause pause;
    keep("raised " + std::to_string(error.number()) + ' ' + error.description());
  } catch (const std::bad_alloc&) {
    const AllocationPause pause;
    keep("raised bad_alloc");
  }
  const AllocationPause pause;
  collect();
  return m_result;
}

void Import::collect() {
  for (const FakeServiceCall::Call& sent : host.serviceCall.calls)
    keep("sent " + join(sent.lines, "\n"));
  for (const std::string& sent : transports.posted)
    keep("sent " + sent);
  if (readFile(pagePath()) != oldPage)
    keep("page " + page());
}

std::string Import::page() const {
  const std::string bytes = readFile(pagePath());
  return bytes == oldPage ? std::string() : bytes;
}

bool Import::isFileClosed() const {
  return readFile(path()) == m_way.file && openStreamCount() == 0 && ImExModule::openFiles().freeNumber() == 1;
}

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

bool areDescriptorsBackTo(std::size_t count) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (openDescriptors() > count && std::chrono::steady_clock::now() < deadline)
    std::this_thread::yield();
  return openDescriptors() == count;
}

std::string unreadableBox(int style) {
  return "box " + std::to_string(style) + " Corvana Maintenance: Unable to open the file selected. Please try again.";
}

Texts withoutPage(Texts result) {
  std::erase_if(result, [](const std::string& text) { return text.starts_with("page "); });
  return result;
}

} // namespace imex::test
