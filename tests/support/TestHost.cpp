#include "support/TestHost.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace imex::test {

namespace {

int openStreams = 0;

/// Counts itself while it lives.
struct OpenStream {
  OpenStream() { ++openStreams; }
  ~OpenStream() { --openStreams; }
  OpenStream(const OpenStream&) = delete;
  OpenStream& operator=(const OpenStream&) = delete;
};

class FaultySource : public ByteSource {
 public:
  FaultySource(const FaultyFiles& files, std::string path, std::unique_ptr<ByteSource> real)
      : m_files(files), m_path(std::move(path)), m_real(std::move(real)) {}
  std::size_t read(char* buffer, std::size_t size) override {
    m_files.before("read", m_path);
    return m_real->read(buffer, size);
  }
  void rewind() override {
    m_files.before("rewind", m_path);
    m_real->rewind();
  }

 private:
  OpenStream m_open;
  const FaultyFiles& m_files;
  std::string m_path;
  std::unique_ptr<ByteSource> m_real;
};

class FaultySink : public ByteSink {
 public:
  FaultySink(const FaultyFiles& files, std::string path, std::unique_ptr<ByteSink> real)
      : m_files(files), m_path(std::move(path)), m_real(std::move(real)) {}
  void write(std::string_view bytes) override {
    m_files.before("write", m_path);
    m_real->write(bytes);
  }
  void close() override {
    m_files.before("close", m_path);
    m_real->close();
  }

 private:
  OpenStream m_open;
  const FaultyFiles& m_files;
  std::string m_path;
  std::unique_ptr<ByteSink> m_real;
};

std::string errorLine(char mark, std::string_view source, std::string_view procedure, const RuntimeError& error,
                      std::int32_t line) {
  std::string text = std::string(1, mark) + ' ' + std::string(source) + ' ' + std::string(procedure) + ' ' +
                     std::to_string(error.number()) + ' ' + error.source() + ": " + error.description();
  if (line != 0)
    text += " line " + std::to_string(line);
  return text;
}

std::shared_ptr<FakeNode> node(std::string name, std::string text) {
  return std::make_shared<FakeNode>(std::move(name), std::move(text));
}

std::shared_ptr<FakeNode> textList(std::string name, const std::vector<std::string>& texts) {
  std::vector<std::shared_ptr<FakeNode>> children;
  for (const std::string& text : texts)
    children.push_back(node("item", text));
  return std::make_shared<FakeNode>(std::move(name), children);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Box& box) {
  return stream << '[' << box.style << "] " << box.title << ": " << box.prompt;
}

void RecordingTraceLog::LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                                 std::int32_t line) {
  lines.push_back(errorLine('!', source, procedure, error, line));
}

void RecordingTraceLog::Trace(std::string_view source, std::string_view procedure, std::string_view message,
                              std::int32_t level) {
  onTrace();
  std::string text = std::string(source) + ' ' + std::string(procedure);
  if (message == "Entering Method..." && level == 0)
    lines.push_back("> " + text);
  else if (message == "Exiting Method..." && level == 0)
    lines.push_back("< " + text);
  else
    lines.push_back("? " + text + ' ' + std::string(message) + ' ' + std::to_string(level));
}

void RecordingTraceLog::LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                                        std::int32_t line) {
  lines.push_back(errorLine('~', source, procedure, error, line));
}

std::vector<std::string> RecordingTraceLog::errors() const {
  std::vector<std::string> result;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(result),
               [](const std::string& line) { return line.front() == '!' || line.front() == '~'; });
  return result;
}

host::Answer FakeMessageBox::show(std::string_view prompt, int style, std::string_view title) {
  boxes.push_back({std::string(prompt), style, std::string(title)});
  return style == host::kQuestionStyle ? answer : host::Answer::ok;
}

void FakeLauncher::show(std::string_view path, int option) {
  if (error)
    throw *error;
  shown.push_back(std::string(path) + ' ' + std::to_string(option));
}

std::unique_ptr<ByteSource> FaultyFiles::openForInput(std::string_view path) {
  before("openForInput", path);
  return std::make_unique<FaultySource>(*this, std::string(path), m_disk.openForInput(path));
}

std::unique_ptr<ByteSink> FaultyFiles::openForOutput(std::string_view path, host::Owner owner) {
  before("openForOutput", path);
  return std::make_unique<FaultySink>(*this, std::string(path), m_disk.openForOutput(path, owner));
}

void FaultyFiles::changeDirectory(std::string_view path) {
  before("changeDirectory", path);
  m_disk.changeDirectory(path);
}

void FaultyFiles::makeDirectory(std::string_view path) {
  before("makeDirectory", path);
  m_disk.makeDirectory(path);
}

bool FaultyFiles::isSameFile(std::string_view a, std::string_view b) const {
  before("isSameFile", a);
  return m_disk.isSameFile(a, b);
}

std::string FaultyFiles::workingDirectory() const {
  before("workingDirectory", {});
  return working;
}

int openStreamCount() {
  return openStreams;
}

std::shared_ptr<host::SoapNode> FakeServiceCall::call(const host::ServiceRequest& request) {
  Call call{std::string(request.space),
            std::string(request.methodName),
            std::string(request.beanType),
            *request.bean.requestInformation,
            {},
            std::string(request.address),
            request.timeout,
            std::string(request.userId)};
  for (const host::LineObject& line : request.bean.dataContainer->lines)
    call.lines.push_back(line.value);
  calls.push_back(std::move(call));
  if (error)
    throw *error;
  return result;
}

TestHost::TestHost() : m_currentDirectory(std::filesystem::current_path()) {
  application.directory = folder / "app";
  settings.installation = folder / "app";
  files.working = (folder / "work") + "/";
  std::filesystem::create_directories(files.working);
  writeFormat("formatagentcustomer.dat", columnNames(kCustomerColumns));
  writeFormat("formathalvikcustomer.dat", columnNames(kHalvikCustomerColumns));
  writeFormat("formatagentproduct.dat", columnNames(kProductColumns));
  writeFormat("formatagentproject.dat", columnNames(kProjectColumns));
  writeFormat("formatagentquote.dat", columnNames(kQuoteColumns));
  writeFormat("formatagentorder.dat", columnNames(kOrderColumns));
  writeFormat("formatagentinvoice.dat", columnNames(kInvoiceColumns));
  writeFormat("formatagentcommission.dat", columnNames(kCommissionColumns));
  writeFormat("formathalvikballasts.dat", columnNames(kBallastColumns));

  services.application = &application;
  services.settings = &settings;
  services.currentUser = &user;
  services.clock = &clock;
  services.messageBox = &messageBox;
  services.browserLauncher = &launcher;
  services.files = &files;
  services.serviceCall = &serviceCall;
  services.createTraceLog = [this] { return trace; };
  install();
}

TestHost::~TestHost() {
  host::install({});
  std::filesystem::current_path(m_currentDirectory);
}

void TestHost::writeFormat(std::string_view fileName, const std::vector<std::string>& columns) const {
  folder.write("app/docs/" + std::string(fileName), textLines(columns));
}

void TestHost::install() const {
  host::install(services);
}

std::vector<std::string> columnNames(int count) {
  std::vector<std::string> names;
  for (int i = 1; i <= count; ++i)
    names.push_back("Field " + std::to_string(i));
  return names;
}

std::string join(const std::vector<std::string>& texts, std::string_view delimiter) {
  std::string result;
  for (std::size_t i = 0; i < texts.size(); ++i)
    result += (i == 0 ? std::string() : std::string(delimiter)) + texts[i];
  return result;
}

std::string textLines(const std::vector<std::string>& lines) {
  std::string result;
  for (const std::string& line : lines)
    result += line + "\r\n";
  return result;
}

host::SoapNode* FakeNode::child(std::string_view localName) {
  const auto found =
      std::find_if(m_children.begin(), m_children.end(), [&](const auto& child) { return child->m_name == localName; });
  return found == m_children.end() ? nullptr : found->get();
}

void FakeNode::forEachChild(const std::function<void(host::SoapNode&)>& visit) {
  for (const auto& child : m_children)
    visit(*child);
}

host::SoapNode& FakeNode::create(std::string_view name, std::string_view value, std::string_view space,
                                 std::string_view type, std::string_view typeSpace) {
  beforeCreate(name);
  std::string fullName(name);
  for (const std::string_view extra : {space, type, typeSpace}) {
    if (!extra.empty())
      fullName += " " + std::string(extra);
  }
  auto child = std::make_shared<FakeNode>(fullName, std::string(value));
  child->beforeCreate = beforeCreate;
  m_children.push_back(child);
  return *child;
}

std::string FakeNode::xml() const {
  std::string result = "<" + m_name + ">" + m_text;
  for (const auto& child : m_children)
    result += child->xml();
  return result + "</" + m_name + ">";
}

std::shared_ptr<FakeNode> answer(std::string reply, const std::vector<Verdict>& verdicts) {
  bool hasErrors = false;
  bool hasWarnings = false;
  std::vector<std::shared_ptr<FakeNode>> results;
  for (const Verdict& verdict : verdicts) {
    hasErrors = hasErrors || !verdict.errors.empty();
    hasWarnings = hasWarnings || !verdict.warnings.empty();
    results.push_back(std::make_shared<FakeNode>(
        "item", std::vector{node("isIuccessful", verdict.successful ? "true" : "false"), node("line", verdict.line),
                            node("lineNumber", verdict.lineNumber), textList("errors", verdict.errors),
                            textList("warnings", verdict.warnings)}));
  }
  return std::make_shared<FakeNode>(
      "return", std::vector{node("reply", std::move(reply)), node("hasErrors", hasErrors ? "true" : "false"),
                            node("hasWarnings", hasWarnings ? "true" : "false"),
                            std::make_shared<FakeNode>("importExportResultBean", results)});
}

} // namespace imex::test
