#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace imex::import_service {

/// The method that takes every data type.
inline constexpr std::string_view kImportData = "importData";

/// A method that takes one data type.
struct InstantMethod {
  std::string_view name;
  std::string_view dataType;
};

inline constexpr std::array<InstantMethod, 5> kInstantMethods{{
    {"importCustomersInstant", "CUSTOMER"},
    {"importProductsInstant", "PRODUCT"},
    {"importInvoicesInstant", "INVOICE"},
    {"importCommissionsInstant", "COMMISSION"},
    {"importBallastsInstant", "BALLASTS"},
}};

/// The data type that the instant method of this name takes; nothing where there is no such method.
constexpr std::optional<std::string_view> dataTypeOf(std::string_view methodName) {
  for (const InstantMethod& method : kInstantMethods)
    if (method.name == methodName)
      return method.dataType;
  return std::nullopt;
}

} // namespace imex::import_service
