#include "platform/qt/GridDelegate.h"

#include "platform/qt/GridModel.h"
#include "platform/qt/TextMeasure.h"
#include "platform/qt/cellText.h"

#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace imex::platform {

namespace {

constexpr int kMargin = 3; // left and right of the text, in pixels
constexpr int kBar = 3;    // the bar beside a message
constexpr int kFrame = 2;  // the frame of a marked cell

double channel(double value) {
  return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

/// How far apart two colours are to the eye, from 1 to 21.
double contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

/// The palette's colour of a choice, or that of its texts where that one is hard to see.
QColor frameColor(const QPalette& palette) {
  constexpr double kSeen = 3;
  const QColor highlight = palette.color(QPalette::Highlight);
  return contrast(highlight, palette.color(QPalette::Base)) >= kSeen ? highlight : palette.color(QPalette::Text);
}

/// Not red, because a message may also say that all went well.
QColor messageColor(const QPalette& palette) {
  const bool isDark = luminance(palette.color(QPalette::Base)) < luminance(palette.color(QPalette::Text));
  return isDark ? QColor(255, 190, 90) : QColor(176, 112, 0);
}

void tint(QPainter& painter, const QRect& area, QColor color, double strength) {
  color.setAlphaF(static_cast<float>(strength));
  painter.fillRect(area, color);
}

void drawFrame(QPainter& painter, const QRect& area, const QColor& color, int width) {
  painter.fillRect(area.left(), area.top(), area.width(), width, color);
  painter.fillRect(area.left(), area.bottom() - width + 1, area.width(), width, color);
  painter.fillRect(area.left(), area.top(), width, area.height(), color);
  painter.fillRect(area.right() - width + 1, area.top(), width, area.height(), color);
}

} // namespace

GridDelegate::GridDelegate(const GridModel& model, QObject* parent) : QStyledItemDelegate(parent), m_model(model) {}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  constexpr double kMessageTint = 0.12;
  constexpr double kCurrentTint = 0.10;
  const host::GridCell cell = GridModel::cellOf(index);
  const bool isMarked = m_model.isMarked(cell);
  const bool isCurrent = m_current == index;
  QRect area = option.rect;
  painter->save();
  painter->setClipRect(area);
  if (isMarked || isCurrent)
    tint(*painter, area, option.palette.color(QPalette::Highlight), kCurrentTint);
  if (m_model.isMessage(cell)) {
    const QColor color = messageColor(option.palette);
    tint(*painter, area, color, kMessageTint);
    painter->fillRect(area.left(), area.top(), kBar, area.height(), color);
    area.adjust(kBar, 0, 0, 0);
  }
  painter->setPen(option.palette.color(QPalette::Text));
  drawText(*painter, area.adjusted(kMargin, 0, -kMargin, 0), index, isMarked);
  painter->setClipRect(option.rect);
  if (isMarked || isCurrent)
    drawFrame(*painter, option.rect, frameColor(option.palette), isMarked ? kFrame : 1);
  painter->restore();
}

void GridDelegate::drawText(QPainter& painter, QRect area, const QModelIndex& index, bool isBold) const {
  const host::GridCell cell = GridModel::cellOf(index);
  if (m_model.text(cell).empty() || m_measure == nullptr || area.width() <= 0)
    return;
  QFont font = m_measure->font();
  font.setBold(font.bold() || isBold);
  painter.setFont(font);
  const int lines = std::max(1, area.height() / painter.fontMetrics().lineSpacing());
  const std::string_view text = beginning(m_model.text(cell), area.width() * (lines + 1));
  const QString shown = shownText(text);
  const int width = m_measure->width(text);
  const bool isOneLine = !shown.contains(QLatin1Char('\n'));
  if (isOneLine && (!m_isWrapped || lines == 1 || width <= area.width())) {
    const int flags = Qt::TextSingleLine | static_cast<int>(m_model.alignment(cell).toInt());
    painter.drawText(area, flags, fitted(painter, shown, area.width(), width));
  } else {
    drawLines(painter, area, shown, lines);
  }
}

/// As many whole lines as there is room for.
void GridDelegate::drawLines(QPainter& painter, const QRect& area, const QString& text, int lines) const {
  QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
  option.setWrapMode(m_isWrapped ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::ManualWrap);
  QRectF room(area);
  if (painter.boundingRect(room, text, option).height() > area.height()) {
    room.setHeight(lines * painter.fontMetrics().lineSpacing());
    option.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    painter.setClipRect(room, Qt::IntersectClip);
  }
  painter.drawText(room, text, option);
}

/// A line as it fits in: as it is, closer together where only its being bold makes it too wide, or cut.
QString GridDelegate::fitted(QPainter& painter, const QString& line, int width, int plainWidth) const {
  if (plainWidth > width)
    return painter.fontMetrics().elidedText(line, Qt::ElideRight, width);
  const bool isPlain = painter.font() == m_measure->font();
  const int excess = isPlain ? 0 : painter.fontMetrics().horizontalAdvance(line) - width;
  if (excess > 0) {
    QFont font = painter.font();
    font.setLetterSpacing(QFont::AbsoluteSpacing, -static_cast<double>(excess) / static_cast<double>(line.size()));
    painter.setFont(font);
  }
  return line;
}

} // namespace imex::platform
