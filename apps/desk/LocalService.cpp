#include "desk/LocalService.h"

#include "controls/common/text.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalBlocker>

#include <csignal>

#include <sys/prctl.h>

namespace imex::desk {

namespace {

constexpr int kGreatestWait = 5'000; // milliseconds for a service that does not end when it is told to

ServiceAddresses addressesBelow(const QString& url) {
  return {toCore(url) + "/secured", toCore(url) + "/unsecured"};
}

} // namespace

LocalService::LocalService(QObject* parent) : QObject(parent) {
  // The service would outlive a program that crashes.
  m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
  m_process.setStandardInputFile(QProcess::nullDevice());
  connectProcess();
}

LocalService::~LocalService() {
  stop();
}

void LocalService::connectProcess() {
  connect(&m_process, &QProcess::readyReadStandardOutput, this, &LocalService::readLines);
  connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart)
      Q_EMIT failed(m_process.program() + QStringLiteral(": ") + m_process.errorString());
  });
  connect(&m_process, &QProcess::finished, this, [this] {
    const QString words = QString::fromUtf8(m_process.readAllStandardError()).trimmed();
    Q_EMIT failed(words.isEmpty() ? m_process.program() + QStringLiteral(" has ended") : words);
  });
}

void LocalService::start(const Start& start) {
  stop();
  QFileInfo(start.store).dir().mkpath(QStringLiteral("."));
  m_process.start(start.program, {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--app-dir"),
                                  start.applicationDirectory, QStringLiteral("--store"),
                                  QStringLiteral("sqlite://") + start.store, QStringLiteral("--user=") + start.userId});
}

void LocalService::stop() {
  const QSignalBlocker silence(m_process);
  if (m_process.state() == QProcess::NotRunning)
    return;
  m_process.terminate();
  if (m_process.waitForFinished(kGreatestWait))
    return;
  m_process.kill();
  m_process.waitForFinished();
}

void LocalService::readLines() {
  static const QRegularExpression listening(QStringLiteral(R"(listening on (http://\S+))"));
  while (m_process.canReadLine()) {
    const QString line = QString::fromUtf8(m_process.readLine());
    if (const QRegularExpressionMatch match = listening.match(line); match.hasMatch())
      Q_EMIT started(addressesBelow(match.captured(1)));
  }
}

} // namespace imex::desk
