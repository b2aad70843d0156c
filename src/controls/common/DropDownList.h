#pragma once

#include <QComboBox>
#include <QString>

namespace imex {

/// A drop-down list that tells of every choice in one way, whether the user makes it or code does, and that can be
/// locked: its owner fixes the choice, while the list stays enabled, readable and reachable with the keyboard.
///
/// Code chooses with setListIndex() and adds with append() and insert(); the functions of QComboBox that do the same
/// make no choice known.
class DropDownList : public QComboBox {
  Q_OBJECT
  Q_PROPERTY(bool locked READ isLocked WRITE setLocked)

 public:
  explicit DropDownList(QWidget* parent = nullptr);

  /// Adds a text at the end. The choice stays as it is, and so a list to which the first text is added has none.
  void append(const QString& text);

  /// Adds a text at a position from 0 to count(). The chosen text stays chosen.
  void insert(int position, const QString& text);

  /// Chooses the text at a position from 0, or none with -1, and raises chosen(), also where it is chosen already.
  /// Error 9 for another position; the choice then stays as it is.
  void setListIndex(int index);

  /// The position of the chosen text from 0; -1 where none is chosen.
  int listIndex() const { return currentIndex(); }

  /// Whether the user is kept from choosing. Code chooses all the same. False at first.
  bool isLocked() const { return m_isLocked; }
  void setLocked(bool locked);

  void showPopup() override;

 Q_SIGNALS:
  /// A choice was made: by the user, with mouse, wheel or keyboard, or by setListIndex(). Once for each. An error of a
  /// handler goes to the application's notify() after the user's choice, and to the caller of setListIndex().
  void chosen();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool m_isLocked = false;
};

} // namespace imex
