#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace imex::desk {

/// A bar above the pages that asks a question, or says what is being done, without keeping the user from anything.
class NoticeBar : public QFrame {
  Q_OBJECT

 public:
  /// Hidden at first.
  explicit NoticeBar(QWidget* parent = nullptr);

  /// Shows a question with its two buttons.
  void ask(const QString& question);

  /// Shows a text without buttons.
  void tell(const QString& text);

 Q_SIGNALS:
  /// The user said yes. On no, the bar hides and says nothing.
  void accepted();

 private:
  void show(const QString& text, bool hasButtons);

  QLabel* m_text;
  QPushButton* m_yes;
  QPushButton* m_no;
};

} // namespace imex::desk
