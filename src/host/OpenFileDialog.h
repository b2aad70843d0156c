#pragma once

#include "runtime/export.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imex::host {

/// One entry of a dialog's list of file kinds.
struct FileFilter {
  std::string_view description; ///< as the user sees it: "Text Files (*.txt)"
  std::string_view pattern;     ///< "*.txt"; "*.*" takes in every file
};

/// What an open dialog shows.
struct OpenFileQuestion {
  std::string_view title;          ///< of the dialog
  std::vector<FileFilter> filters; ///< in the order of the list; the first is chosen
  std::string_view directory = {}; ///< where it starts; empty leaves that to the dialog
};

/// The file that the user chose.
struct ChosenFile {
  std::string directory; ///< with a separator of the platform at its end
  std::string name;      ///< in that folder

  /// Both together.
  std::string path() const { return directory + name; }
};

/// Lets the user choose an existing file.
class IMEX_EXPORT OpenFileDialog {
 public:
  virtual ~OpenFileDialog() = default;

  /// Shows the dialog over the host's window and waits. Nothing where the user cancels.
  virtual std::optional<ChosenFile> show(const OpenFileQuestion& question) = 0;
};

} // namespace imex::host
