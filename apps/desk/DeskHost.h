#pragma once

#include "desk/DeskSettings.h"

#include <memory>
#include <string>

namespace imex::desk {

/// The host's services of a program with windows. They are installed for the life of the object.
class DeskHost {
 public:
  /// `settings` outlives this object.
  explicit DeskHost(DeskSettings& settings);
  ~DeskHost();
  DeskHost(const DeskHost&) = delete;
  DeskHost& operator=(const DeskHost&) = delete;

  /// Begins to trace into the settings' file; does nothing where they name none. Error 57 where it cannot be opened.
  void startTrace();

  /// Ends the trace, where there is one. Returns why its file lacks something, empty where it has everything.
  std::string finishTrace();

 private:
  struct Services;
  std::unique_ptr<Services> m_services;
};

} // namespace imex::desk
