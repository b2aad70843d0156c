#pragma once

#include "host/Clipboard.h"
#include "host/MessageBox.h"
#include "host/OpenFileDialog.h"
#include "host/ProgressDisplay.h"
#include "support/TestHost.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

// Fakes of what the user sees and answers. Whatever they are asked goes into the lines of the host's trace log as well,
// so that a test compares the order of traces, boxes, dialogs and signals whole.

/// Adds a line that is no trace: "* box [64] title: prompt".
using Journal = std::function<void(const std::string& line)>;

/// Keeps each box in the journal and hands it on to the host's FakeMessageBox.
class JournalBox : public host::MessageBox {
 public:
  JournalBox(Journal journal, host::MessageBox& next) : m_journal(std::move(journal)), m_next(next) {}
  host::Answer show(std::string_view prompt, int style, std::string_view title) override;

 private:
  Journal m_journal;
  host::MessageBox& m_next;
};

/// "* dialog title [description|pattern] ... in directory"
class FakeOpenFileDialog : public host::OpenFileDialog {
 public:
  explicit FakeOpenFileDialog(Journal journal) : m_journal(std::move(journal)) {}
  std::optional<host::ChosenFile> show(const host::OpenFileQuestion& question) override;

  std::optional<host::ChosenFile> answer; ///< nothing is a cancelled dialog
  std::optional<RuntimeError> error;      ///< raised instead

 private:
  Journal m_journal;
};

/// "* clipboard cleared", "* clipboard text"
class FakeClipboard : public host::Clipboard {
 public:
  explicit FakeClipboard(Journal journal) : m_journal(std::move(journal)) {}
  void clear() override;
  void setText(std::string_view newText) override;

  std::string text = "left by another program";

 private:
  Journal m_journal;
};

/// "* progress title|message|third", and "* progress released" when it goes.
class FakeProgressDisplay : public host::ProgressDisplay {
 public:
  explicit FakeProgressDisplay(Journal journal) : m_journal(std::move(journal)) {}
  ~FakeProgressDisplay() override { m_journal("progress released"); }
  FakeProgressDisplay(const FakeProgressDisplay&) = delete;
  FakeProgressDisplay& operator=(const FakeProgressDisplay&) = delete;
  void show(std::string_view title, std::string_view message, std::string_view third) override;

 private:
  Journal m_journal;
};

/// All of them, installed with the other services of `host`, which outlives this object.
class FakeUi {
 public:
  explicit FakeUi(TestHost& host);

  Journal journal;
  JournalBox messageBox;
  FakeOpenFileDialog openFileDialog;
  FakeClipboard clipboard;
};

} // namespace imex::test
