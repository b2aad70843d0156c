#pragma once

class QPrinter;
class QWebEngineView;

namespace imex::platform {

/// Lets the user choose a printer, or a PDF file, which needs none, in the print dialog over the view's window. False
/// where the user cancels or the view goes away meanwhile.
bool askForPrinter(QWebEngineView& view, QPrinter& printer);

/// Prints what the view shows and waits for the end of it. A PDF file gets the document's text as text. Error 57 where
/// it fails. User input is left for later meanwhile.
void printAndWait(QWebEngineView& view, QPrinter& printer);

} // namespace imex::platform
