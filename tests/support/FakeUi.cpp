#include "support/FakeUi.h"

namespace imex::test {

host::Answer JournalBox::show(std::string_view prompt, int style, std::string_view title) {
  m_journal("box [" + std::to_string(style) + "] " + std::string(title) + ": " + std::string(prompt));
  return m_next.show(prompt, style, title);
}

std::optional<host::ChosenFile> FakeOpenFileDialog::show(const host::OpenFileQuestion& question) {
  std::string line = "dialog " + std::string(question.title);
  for (const host::FileFilter& filter : question.filters)
    line.append(" [").append(filter.description).append("|").append(filter.pattern).append("]");
  if (!question.directory.empty())
    line.append(" in ").append(question.directory);
  m_journal(line);
  if (error)
    throw *error;
  return answer;
}

void FakeClipboard::clear() {
  m_journal("clipboard cleared");
  text.clear();
}

void FakeClipboard::setText(std::string_view newText) {
  m_journal("clipboard " + std::string(newText));
  text = newText;
}

void FakeProgressDisplay::show(std::string_view title, std::string_view message, std::string_view third) {
  m_journal("progress " + std::string(title) + '|' + std::string(message) + '|' + std::string(third));
}

FakeUi::FakeUi(TestHost& host)
    : journal([trace = host.trace](const std::string& line) { trace->lines.push_back("* " + line); }),
      messageBox(journal, host.messageBox), openFileDialog(journal), clipboard(journal) {
  host.services.messageBox = &messageBox;
  host.services.openFileDialog = &openFileDialog;
  host.services.clipboard = &clipboard;
  host.services.createProgressDisplay = [journal = journal] { return std::make_unique<FakeProgressDisplay>(journal); };
  host.install();
}

} // namespace imex::test
