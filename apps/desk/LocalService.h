#pragma once

#include "desk/DeskSettings.h"

#include <QObject>
#include <QProcess>
#include <QString>

namespace imex::desk {

/// An import service on this machine, for a program that has no other: a process beside this one that listens on a
/// free port and keeps its rows in a file. It ends with the object, and with the program however that ends.
class LocalService : public QObject {
  Q_OBJECT

 public:
  /// What is started, and with what.
  struct Start {
    QString program;
    QString applicationDirectory;
    QString store;  ///< the file; its folder is made where it is missing
    QString userId; ///< the one user that the service knows
  };

  explicit LocalService(QObject* parent = nullptr);
  ~LocalService() override;

  /// Starts the service, or starts it anew, and returns at once: started() or failed() says what came of it.
  void start(const Start& start);

  /// Ends the service, if one is running, and waits for its end. No signal is raised.
  void stop();

 Q_SIGNALS:
  /// The service answers at these addresses.
  void started(const ServiceAddresses& addresses);

  /// The service did not start, or has ended by itself: why, for the user.
  void failed(const QString& why);

 private:
  void connectProcess();
  void readLines();

  QProcess m_process;
};

} // namespace imex::desk
