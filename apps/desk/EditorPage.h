#pragma once

#include "desk/RowsModel.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTableView>
#include <QWidget>

namespace imex::desk {

/// Shows an import file in a table: the file that a panel wants to be edited, or a file with the messages about its
/// lines. It is for reading only.
class EditorPage : public QWidget {
  Q_OBJECT

 public:
  explicit EditorPage(QWidget* parent = nullptr);

  /// Reads the file and shows its lines. Errors of the reading pass through; what is shown then stays.
  void edit(const QString& fileName, const StringsPtr& headers, Integer columnCount, Integer delimiterAscii);

  /// Shows a file that does not exist yet: the columns alone.
  void create(const QString& fileName, const StringsPtr& headers, Integer columnCount);

  /// Shows lines with their messages; the last of the columns is the messages' own.
  void showErrors(const QString& fileName, const RowsPtr& lines, const ErrorBeansPtr& messages,
                  const StringsPtr& headers, Integer columnCount);

 private:
  void buildLayout();
  void show(const QString& heading, RowsPtr lines, const StringsPtr& headers, int columnCount,
            const ErrorBeansPtr& messages);
  void showMessages(const QModelIndex& current);

  RowsModel m_rows;
  QLabel* m_heading;
  QTableView* m_view;
  QLabel* m_messagesLabel;
  QPlainTextEdit* m_messages;
};

} // namespace imex::desk
