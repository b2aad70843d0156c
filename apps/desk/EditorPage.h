#pragma once

#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "desk/FileStamp.h"

#include <QLabel>
#include <QStackedLayout>
#include <QWidget>

namespace imex::desk {

/// An import file as a panel's signals describe it.
struct ImportFile {
  QString path;
  Integer rowCount;    ///< lines of the file
  Integer columnCount; ///< in the view with messages, with the messages' own
  StringsPtr headers;
  Integer delimiterAscii; ///< the code of the delimiter
};

/// The editor with one import file, or a note that there is none. A file that another program changed since it was
/// opened is not saved over without a question.
class EditorPage : public QWidget {
  Q_OBJECT

 public:
  explicit EditorPage(QWidget* parent = nullptr);

  /// Opens a file. Errors of the editor pass through; the page then has no file.
  void edit(const ImportFile& file);

  /// Opens a file that does not exist yet.
  void create(const ImportFile& file);

  /// Opens a file with the messages about its lines.
  void showErrors(const ImportFile& file, const RowsPtr& lines, const ErrorBeansPtr& messages);

  /// Whether something in it waits to be saved.
  bool hasChanges() const;

  /// The name of the file, without its folder.
  QString fileName() const;

  /// Whether what is open may go: nothing in it waits to be saved, or the user, who is asked, does without it.
  bool mayDiscard();

 Q_SIGNALS:
  /// The file was saved; it stays open.
  void saved(const QString& path);

  /// The user gave up. Nothing was written, and nothing is open any more.
  void cancelled();

 private:
  template <class Load>
  void open(const ImportFile& file, Load&& load);
  void describe(const ImportFile& file);
  void close();
  void connectEditor();
  bool maySave();
  std::size_t contents() const;

  ImExFileEdit* m_editor;
  QLabel* m_note;
  QStackedLayout* m_shown;
  FileStamp m_stamp;              ///< of the file when it was opened or saved
  std::size_t m_savedContents{0}; ///< of the grid at that time
  bool m_isBeingWritten = false;  ///< saving has begun and did not end well: the file may be cut short
};

} // namespace imex::desk
