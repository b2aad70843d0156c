#pragma once

#include "host/ProgressDisplay.h"
#include "runtime/export.h"

#include <QPointer>
#include <QWidget>

namespace imex::platform {

/// A small window over the active one. It takes no input, and user input is not handled while it is being shown.
class IMEX_EXPORT QtProgressDisplay : public host::ProgressDisplay {
 public:
  QtProgressDisplay() = default;
  ~QtProgressDisplay() override;
  QtProgressDisplay(const QtProgressDisplay&) = delete;
  QtProgressDisplay& operator=(const QtProgressDisplay&) = delete;

  void show(std::string_view title, std::string_view message, std::string_view third) override;

 private:
  QPointer<QWidget> m_window; ///< null before show(), and where its parent went away first
};

} // namespace imex::platform
