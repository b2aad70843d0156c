#include "platform/qt/QtOpenFileDialog.h"

#include "platform/files/DiskFiles.h"
#include "platform/qt/text.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include <string>

namespace imex::platform {

namespace {

/// The dialog shows what stands before the last parentheses and looks for what stands in them. "*.*" would leave out
/// the files without a dot.
QString nameFilter(const host::FileFilter& filter) {
  const std::string_view pattern = filter.pattern == "*.*" ? "*" : filter.pattern;
  return toQt(filter.description) + QStringLiteral(" (") + toQt(pattern) + QLatin1Char(')');
}

QStringList nameFilters(const host::OpenFileQuestion& question) {
  QStringList filters;
  for (const host::FileFilter& filter : question.filters)
    filters += nameFilter(filter);
  return filters;
}

host::ChosenFile chosenFile(const QString& path) {
  const QFileInfo file(path);
  const QDir directory = file.absoluteDir();
  // filePath() puts a separator behind the directory, and only one behind a root.
  const QString folder = QDir::toNativeSeparators(directory.filePath(QStringLiteral("x"))).chopped(1);
  return {folder.toStdString(), file.fileName().toStdString()};
}

} // namespace

std::optional<host::ChosenFile> QtOpenFileDialog::show(const host::OpenFileQuestion& question) {
  QFileDialog dialog(QApplication::activeWindow(), toQt(question.title));
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  dialog.setNameFilters(nameFilters(question));
  if (!question.directory.empty())
    dialog.setDirectory(toQt(nativePath(question.directory).string()));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    return std::nullopt;
  return chosenFile(dialog.selectedFiles().constFirst());
}

} // namespace imex::platform
