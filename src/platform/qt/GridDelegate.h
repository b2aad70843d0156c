#pragma once

#include <QStyledItemDelegate>

namespace imex::platform {

class GridModel;
class TextMeasure;

/// Draws the cells of a grid, in one line or in as many whole lines as fit, in the colours of the view's palette. The
/// current cell has a thin frame, a marked cell a thick one and bold text, and a message a bar at its side and a tinted
/// ground.
class GridDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// The model outlives the delegate.
  GridDelegate(const GridModel& model, QObject* parent);

  /// What measures the texts, in the font that they are drawn in. It lives until the next call, and before the first
  /// one nothing is drawn.
  void setMeasure(const TextMeasure& measure) { m_measure = &measure; }

  /// Whether long lines are broken.
  void setWrap(bool isWrapped) { m_isWrapped = isWrapped; }

  /// The row and the column of the current item in the model.
  void setCurrent(const QModelIndex& current) { m_current = current; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void drawText(QPainter& painter, QRect area, const QModelIndex& index, bool isBold) const;
  void drawLines(QPainter& painter, const QRect& area, const QString& text, int lines) const;
  QString fitted(QPainter& painter, const QString& line, int width, int plainWidth) const;

  const GridModel& m_model;
  const TextMeasure* m_measure = nullptr;
  QPersistentModelIndex m_current;
  bool m_isWrapped = false;
};

} // namespace imex::platform
