#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

namespace imex::platform {

/// The line in which a user looks for a text in a document: Enter and Shift+Enter go on to the next place and back,
/// Escape ends it. Hidden at first.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);

  /// Shows the bar and lets the user type.
  void open();

  QString text() const { return m_field->text(); }

  /// Tells how often the text is in the document and which place is marked, counted from 1.
  void tell(int matches, int marked);

 Q_SIGNALS:
  /// Mark the next place of the text, or the one before. An empty text takes the marks away.
  void wanted(const QString& text, bool isBackward);

  /// The user is done with the bar, which its owner hides.
  void closed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addButton(const char* name, const QString& caption, const QString& meaning, void (FindBar::*pressed)());
  void next() { Q_EMIT wanted(text(), false); }
  void previous() { Q_EMIT wanted(text(), true); }

  QLineEdit* m_field;
  QLabel* m_result;
};

} // namespace imex::platform
