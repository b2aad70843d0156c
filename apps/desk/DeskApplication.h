#pragma once

#include <QApplication>

namespace imex::desk {

/// The application. An error that leaves an event's handler ends nothing: it is recorded in the trace log and shown to
/// the user, and the program goes on.
class DeskApplication : public QApplication {
  Q_OBJECT

 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace imex::desk
