#include "controls/common/text.h"
#include "desk/DeskApplication.h"
#include "desk/DeskHost.h"
#include "desk/DeskSettings.h"
#include "desk/MainWindow.h"
#include "desk/Options.h"
#include "startup/startup.h"

#include <QDir>
#include <QStandardPaths>
#include <QTimer>

#include <clocale>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace imex;
using namespace imex::desk;

QString userFile(QStandardPaths::StandardLocation location, const char* name) {
  return QDir(QStandardPaths::writableLocation(location)).filePath(QStringLiteral("corvana/") + QLatin1String(name));
}

/// The sample application directory: in the source tree, for a program in its build folder, or where it is installed.
std::string sampleDirectory(const QDir& folder) {
  const QString source = QDir::cleanPath(folder.filePath(QStringLiteral("../../../share")));
  return QDir(source).exists(QStringLiteral("docs")) ? toCore(source) : installedDirectory();
}

/// Runs what may fail at the start without ending the program.
template <class Step>
void attempt(std::vector<std::string>& notices, Step&& step) {
  try {
    step();
  } catch (const RuntimeError& error) {
    notices.push_back(error.description());
  }
}

/// What the program has before it has a window.
struct Start {
  std::unique_ptr<DeskSettings> settings;
  Surroundings surroundings;
};

/// Fails where the file of --config cannot be used. What is wrong with the user's own file is a notice.
Start prepare(const Options& options) {
  const QDir folder(toQt(programFolder().string()));
  const std::string userIni = toCore(userFile(QStandardPaths::GenericConfigLocation, "desk.ini"));
  Start start{std::make_unique<DeskSettings>(options.config.empty() ? userIni : options.config,
                                             options.applicationDirectory, sampleDirectory(folder)),
              {folder.filePath(QStringLiteral("import-service")), userFile(QStandardPaths::GenericDataLocation, "")}};
  if (!options.config.empty())
    start.settings->load();
  else if (std::filesystem::exists(userIni))
    attempt(start.surroundings.notices, [&] { start.settings->load(); });
  return start;
}

int run(Start start) {
  DeskHost host(*start.settings);
  attempt(start.surroundings.notices, [&] { host.startTrace(); });
  int status = 0;
  {
    MainWindow window(*start.settings, std::move(start.surroundings));
    window.show();
    QTimer::singleShot(0, &window, &MainWindow::start);
    status = DeskApplication::exec();
  }
  if (const std::string failure = host.finishTrace(); !failure.empty())
    std::cerr << "corvana-desk: " << failure << '\n';
  return status;
}

} // namespace

int main(int argc, char** argv) {
  keepStandardStreams();
  const ParsedOptions parsed = parseOptions(argc, argv);
  if (parsed.exitStatus)
    return static_cast<int>(*parsed.exitStatus);
  try {
    Start start = prepare(parsed.options);
    useLocaleOfUser();
    int count = 1; // the toolkit has no part in the command line
    const DeskApplication application(count, argv);
    std::setlocale(LC_NUMERIC, "C"); // the toolkit asks for the user's; C functions are to read and write "1.5"
    return run(std::move(start));
  } catch (const RuntimeError& error) {
    std::cerr << "corvana-desk: " << error.description() << '\n';
    return static_cast<int>(ExitStatus::cannotUseFile);
  }
}
