#pragma once

#include <string>
#include <vector>

namespace imex::import_service {

/// One import as it was asked for. The direction ("IMPORT") and the schedule ("INSTANT") are not kept: there is no
/// other.
struct ImportRequest {
  std::string methodName; ///< "importData" or one of the instant methods
  std::string space;      ///< the namespace of the method
  std::string userId;     ///< the header entry "userID"; empty where there is none
  std::string dataType;
  std::string dataOrigin;
  std::string userName;
  char delimiter = '\t';
  bool allowWarnings = false;
  bool allowTruncation = false;
  std::vector<std::string> lines; ///< as they were sent, without the delimiter at the end

  /// "CUSTOMERAGENT"
  std::string formatKey() const { return dataType + dataOrigin; }
};

} // namespace imex::import_service
