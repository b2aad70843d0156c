// W5: open the reference file in the editor until it is painted, and save it; beside it the two ways in which Qt's own
// tables would do it. A program of its own, because it needs windows: imex_editor_bench [options of Google Benchmark]

#include "Reference.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "host/Services.h"
#include "platform/files/DiskFiles.h"
#include "platform/qt/QtKeyboard.h"
#include "platform/qt/QtMessageBox.h"
#include "sizes.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>

#include <benchmark/benchmark.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace imex::bench {

namespace {

constexpr int kColumns = 20;
constexpr QSize kWindow(1000, 700);

/// The bytes that the program holds on its heap.
double heapBytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Paints a window as its first showing does.
void paint(QWidget& window) {
  window.resize(kWindow);
  benchmark::DoNotOptimize(window.grab());
}

// --- The component --------------------------------------------------------------------------------------------------

class Host {
 public:
  Host() {
    host::Services services;
    services.files = &m_files;
    services.keyboard = &m_keyboard;
    services.messageBox = &m_messageBox;
    host::install(services);
  }
  ~Host() { host::install({}); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

 private:
  platform::DiskFiles m_files;
  platform::QtKeyboard m_keyboard;
  platform::QtMessageBox m_messageBox;
};

StringsPtr titles() {
  auto list = std::make_shared<Strings>();
  for (int column = 1; column <= kColumns; ++column)
    list->add("Column " + std::to_string(column));
  return list;
}

std::unique_ptr<ImExFileEdit> openEditor(const std::string& path, std::size_t lines, const StringsPtr& headers) {
  auto editor = std::make_unique<ImExFileEdit>();
  editor->fileName(QString::fromStdString(path));
  editor->NumberRows(static_cast<std::int32_t>(lines));
  editor->NumberColumns(kColumns);
  editor->HeaderCollection(headers);
  editor->DelimiterAscii(9);
  editor->loadGrid();
  editor->reset();
  return editor;
}

void openOurs(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const Host host;
  const StringsPtr headers = titles();
  const double before = heapBytes();
  double held = 0;
  for (auto _ : state) {
    const auto editor = openEditor(reference.path, sizeOf(state), headers);
    paint(*editor);
    state.PauseTiming();
    held = heapBytes() - before;
    state.ResumeTiming();
  }
  state.counters["heap"] = held;
}

void saveOurs(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const Host host;
  const std::string path = Reference::write("saved-by-editor.txt", reference.file);
  const auto editor = openEditor(path, sizeOf(state), titles());
  auto* save = editor->findChild<QPushButton*>(QStringLiteral("cmdOK"));
  for (auto _ : state)
    save->click();
  std::ifstream file(path, std::ios::binary);
  if (std::string(std::istreambuf_iterator<char>(file), {}) != reference.file)
    state.SkipWithError("the file is not the same");
}

// --- A model of strings ---------------------------------------------------------------------------------------------

using Cells = std::vector<std::vector<QString>>;

Cells readCells(const std::string& path) {
  Cells cells;
  std::ifstream file(path, std::ios::binary);
  std::string line;
  while (std::getline(file, line)) {
    std::string_view rest = line;
    if (rest.ends_with('\r'))
      rest.remove_suffix(1);
    std::vector<QString>& row = cells.emplace_back();
    for (std::size_t end = rest.find('\t');; end = rest.find('\t')) {
      const std::string_view field = rest.substr(0, end);
      row.push_back(QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size())));
      if (end == std::string_view::npos)
        break;
      rest.remove_prefix(end + 1);
    }
  }
  return cells;
}

void writeCells(const Cells& cells, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  for (const std::vector<QString>& row : cells) {
    QString line;
    for (const QString& cell : row) {
      if (&cell != &row.front())
        line += QLatin1Char('\t');
      line += cell;
    }
    line += QLatin1String("\r\n");
    const QByteArray bytes = line.toUtf8();
    file.write(bytes.data(), bytes.size());
  }
}

class StringModel : public QAbstractTableModel {
 public:
  explicit StringModel(Cells cells) : m_cells(std::move(cells)) {}
  int rowCount(const QModelIndex& /*parent*/) const override { return static_cast<int>(m_cells.size()); }
  int columnCount(const QModelIndex& /*parent*/) const override { return kColumns; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole)
      return {};
    return m_cells[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
  }

 private:
  Cells m_cells;
};

void openStringModel(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const double before = heapBytes();
  double held = 0;
  for (auto _ : state) {
    StringModel model(readCells(reference.path));
    QTableView view;
    view.setModel(&model);
    paint(view);
    state.PauseTiming();
    held = heapBytes() - before;
    state.ResumeTiming();
  }
  state.counters["heap"] = held;
}

void saveStringModel(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const Cells cells = readCells(reference.path);
  const std::string path = Reference::folder() + "saved-by-model.txt";
  for (auto _ : state)
    writeCells(cells, path);
}

// --- Qt's table of items --------------------------------------------------------------------------------------------

void openTableWidget(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  for (auto _ : state) {
    const Cells cells = readCells(reference.path);
    QTableWidget table(static_cast<int>(cells.size()), kColumns);
    for (int row = 0; row < table.rowCount(); ++row) {
      for (int column = 0; column < kColumns; ++column)
        table.setItem(row, column,
                      new QTableWidgetItem(cells[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]));
    }
    paint(table);
  }
}

// --- The limits -----------------------------------------------------------------------------------------------------

/// The editor itself, without a file.
void openEmptyEditor(benchmark::State& state) {
  const Host host;
  const StringsPtr headers = titles();
  for (auto _ : state) {
    ImExFileEdit editor;
    editor.NumberRows(0);
    editor.NumberColumns(kColumns);
    editor.HeaderCollection(headers);
    editor.loadGridHeader();
    paint(editor);
  }
}

void saveAtOnce(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const std::string path = Reference::folder() + "saved-at-once.txt";
  for (auto _ : state) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (::write(file, reference.file.data(), reference.file.size()) < 0)
      state.SkipWithError("the file cannot be written");
    ::close(file);
  }
}

IMEX_BENCHMARK("W5 open/limit", openEmptyEditor);
IMEX_BENCHMARK("W5 open/string model", openStringModel);
IMEX_BENCHMARK("W5 open/QTableWidget", openTableWidget);
IMEX_BENCHMARK("W5 open/ours", openOurs);
IMEX_BENCHMARK("W5 save/limit", saveAtOnce);
IMEX_BENCHMARK("W5 save/string model", saveStringModel);
IMEX_BENCHMARK("W5 save/ours", saveOurs);

} // namespace

} // namespace imex::bench

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 64;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
