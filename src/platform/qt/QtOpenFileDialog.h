#pragma once

#include "host/OpenFileDialog.h"
#include "runtime/export.h"

namespace imex::platform {

/// The platform's open dialog over the active window; Qt's own where the platform has none or the application was told
/// not to use it. Only a file that exists can be chosen.
class IMEX_EXPORT QtOpenFileDialog : public host::OpenFileDialog {
 public:
  std::optional<host::ChosenFile> show(const host::OpenFileQuestion& question) override;
};

} // namespace imex::platform
