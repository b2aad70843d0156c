#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace imex::import_service {

/// What a field of a column has to be.
struct Column {
  std::string name;
  std::size_t maxLength = 0; ///< in characters, 1 to 32,767
  bool isRequired = false;
  bool isNumeric = false;
  bool isKey = false; ///< the key columns of a format together identify a row
};

/// The columns of a format in file order; at least one is a key column, and key columns are required.
using Format = std::vector<Column>;

/// The import formats by format key ("CUSTOMERAGENT").
using Formats = std::map<std::string, Format, std::less<>>;

/// Reads the formats from the folder "docs" of the application directory: the names of the columns from the format
/// files ("formatagentcustomer.dat"), everything else from columns.json, an object that holds for each format key an
/// array of {"name", "maxLength", "required", "numeric", "key"} in column order.
///
/// The six formats that are imported by lines must be there; others are not looked at. A StartError (noInput) names the
/// file, and the column where there is one: a file that cannot be read, a value of the wrong kind, a name that differs
/// from the format file's.
Formats loadFormats(const std::string& applicationDirectory);

} // namespace imex::import_service
