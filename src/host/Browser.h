#pragma once

#include "runtime/export.h"

#include <string>
#include <string_view>

namespace imex::host {

/// A web browser that shows one document. It starts with "about:blank", an empty page.
class IMEX_EXPORT Browser {
 public:
  virtual ~Browser() = default;

  /// Shows the document at `address`: a path of the file system in either notation ("\" or "/", as in Files), or an
  /// address of the kinds "file:", "http:", "https:" and "about:blank". Returns before the document is there.
  ///
  /// A document that cannot be opened is an error whose description ends in `address`, and what is shown then stays: 53
  /// no such file, 75 a folder, 70 no access, 5 an address that is none. An address that turns out to be out of reach
  /// only later is named where the document would be.
  ///
  /// A document of the file system is only looked at: it runs no script, fetches nothing over a network and sends
  /// nothing, because its text may come from anywhere. Its links to the web open in the user's own browser.
  virtual void navigate(std::string_view address) = 0;

  /// What was navigated to last, as an address: "file:///data/page.html" for a path.
  virtual std::string address() const = 0;

  /// Shows the user's print dialog and prints as it was answered; returns when that is done. Nothing is printed where
  /// the user cancels. Error 57 where it cannot be printed; the description says what and why.
  virtual void print() = 0;
};

} // namespace imex::host
