#include "controls/common/ownEvent.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace imex {

namespace {

const auto kRun = static_cast<QEvent::Type>(QEvent::registerEventType());

class Runner : public QObject {
 public:
  explicit Runner(const std::function<void()>& action) : m_action(action) {}

  bool event(QEvent* event) override {
    if (event->type() != kRun)
      return QObject::event(event);
    m_action();
    return true;
  }

 private:
  const std::function<void()>& m_action;
};

} // namespace

void runAsEvent(const std::function<void()>& action) {
  Runner runner(action);
  QEvent event(kRun);
  QCoreApplication::sendEvent(&runner, &event);
}

} // namespace imex
