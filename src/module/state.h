#pragma once

#include "runtime/Collection.h"
#include "runtime/FileNumbers.h"
#include "runtime/Integer.h"

#include <map>
#include <string>

namespace imex::ImExModule {

/// What the module keeps for the life of the process.
struct State {
  std::string workingDirectory;
  Collection<StringsPtr> formatCatalogue;
  Collection<Integer> formatColumnCounts;        ///< never emptied, not even when the catalogue is read again
  std::map<std::string, StringsPtr> columnLists; ///< of the formats being read, by key
  bool catalogueLoaded = false;
  FileNumbers files;
};

State& state();

} // namespace imex::ImExModule
