#pragma once

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "runtime/RuntimeError.h"

#include <QString>
#include <QTableView>

namespace imex::desk {

// What the pages do with their panels, and with errors, in the same way.

/// Lets the user press Import again after an exchange that failed: the panel itself leaves its button disabled and its
/// pointer an hourglass until an answer comes. Called after the panel was made, before it is used.
void allowRetry(ImExActionCtrl& panel);

/// Shows an error in a box that looks like those of the component.
void showError(const RuntimeError& error);

/// Gives a table rows of one line of text.
void useCompactRows(QTableView& view);

/// "1 line", "7 lines"
QString countOfLines(qsizetype count);

} // namespace imex::desk
