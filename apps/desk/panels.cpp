#include "desk/panels.h"

#include "host/MessageBox.h"
#include "host/Services.h"

#include <QHeaderView>
#include <QPushButton>

namespace imex::desk {

void allowRetry(ImExActionCtrl& panel) {
  auto* import = panel.findChild<QPushButton*>(QStringLiteral("cmdImportExport"));
  // Connected after the panel's own handler, and so called after it.
  QObject::connect(import, &QPushButton::clicked, &panel, [&panel, import] {
    import->setEnabled(true);
    panel.unsetCursor();
  });
}

void showError(const RuntimeError& error) {
  const std::string title = "Error Number: " + std::to_string(error.number()) + " - " + error.description();
  host::required(host::services().messageBox).show(kDefaultFailurePrompt, host::kExclamationStyle, title);
}

void useCompactRows(QTableView& view) {
  constexpr int kPadding = 8; // pixels
  QHeaderView& rows = *view.verticalHeader();
  rows.setMinimumSectionSize(0);
  rows.setDefaultSectionSize(view.fontMetrics().height() + kPadding);
  view.setWordWrap(false);
}

QString countOfLines(qsizetype count) {
  return count == 1 ? QStringLiteral("1 line") : QStringLiteral("%1 lines").arg(count);
}

} // namespace imex::desk
