#pragma once

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "desk/LineItemTable.h"

#include <QLabel>
#include <QTableView>
#include <QUndoStack>
#include <QWidget>

#include <vector>

namespace imex::desk {

/// A document that takes line items. The values are the positions in the panel's list of data types.
enum class DocumentKind { project = 0, quote = 1, order = 2 };

/// "Project", "Quote", "Order"
QString nameOf(DocumentKind kind);

/// One document: its table of line items, and the panel that inserts them from a file.
class DocumentPage : public QWidget {
  Q_OBJECT

 public:
  explicit DocumentPage(DocumentKind kind, QWidget* parent = nullptr);

  /// Makes the panel ready, for this document's line items alone. Called once, before the panel is used.
  void start();

  ImExActionCtrl& panel() { return *m_panel; }
  QUndoStack& undoStack() { return m_undoStack; }

 Q_SIGNALS:
  void inserted(int count);

 private:
  void buildLayout();
  void connectInserts();
  void showCount();

  template <class Items>
  void insert(const Items& items) {
    std::vector<LineItem> lines;
    for (const auto& item : *items)
      lines.emplace_back(*item);
    insertLines(std::move(lines));
  }
  void insertLines(std::vector<LineItem> lines);

  DocumentKind m_kind;
  LineItemTable m_table;
  QUndoStack m_undoStack;
  QLabel* m_heading;
  QTableView* m_view;
  ImExActionCtrl* m_panel;
};

} // namespace imex::desk
