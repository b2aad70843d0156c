#include "platform/qt/QtProgressDisplay.h"

#include "platform/qt/text.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QLabel>
#include <QVBoxLayout>
#include <QWindow>

namespace imex::platform {

namespace {

constexpr Qt::WindowFlags kFlags =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowDoesNotAcceptFocus;
constexpr int kGreatestWait = 500; // milliseconds for a window system that is slow to show a window

QLabel& addLabel(QWidget& window, const char* name) {
  auto* label = new QLabel(&window);
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  window.layout()->addWidget(label);
  return *label;
}

void setText(QLabel& label, std::string_view text) {
  label.setText(toQt(text));
  label.setHidden(text.empty());
}

/// Lets the window system show the window and paints it, without handling what the user does meanwhile.
void paintNow(QWidget& window) {
  const QDeadlineTimer deadline(kGreatestWait);
  do {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  } while (!window.windowHandle()->isExposed() && !deadline.hasExpired());
  window.repaint();
}

} // namespace

QtProgressDisplay::~QtProgressDisplay() {
  delete m_window;
}

void QtProgressDisplay::show(std::string_view title, std::string_view message, std::string_view third) {
  if (!m_window) {
    m_window = new QWidget(QApplication::activeWindow(), kFlags);
    m_window->setObjectName(QStringLiteral("progressDisplay"));
    m_window->setAttribute(Qt::WA_ShowWithoutActivating); // a box shown meanwhile belongs to the host's window
    new QVBoxLayout(m_window);
    addLabel(*m_window, "message");
    addLabel(*m_window, "third");
  }
  m_window->setWindowTitle(toQt(title));
  setText(*m_window->findChild<QLabel*>(QStringLiteral("message")), message);
  setText(*m_window->findChild<QLabel*>(QStringLiteral("third")), third);
  m_window->show();
  m_window->raise();
  paintNow(*m_window);
}

} // namespace imex::platform
