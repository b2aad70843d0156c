#include "controls/ImExActionCtrl/choices.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace imex {

namespace {

/// What an import with warnings changes in rows that exist already.
struct Notice {
  std::string_view dataType;
  std::string_view text;
};

/// The trailing blanks of the first two are part of the text.
constexpr std::array<Notice, 4> kUpdateNotices = {{
    {"Customers", "Customer Code (Keyword) and Sales Persons and Sales Person Commission percents will be updated for "
                  "customers in the import which exist in Corvana. "},
    {"Products", "Product pricing and commission percents will be updated for products in the import which exist in "
                 "Corvana. "},
    {"Invoices", "Invoice information will be updated for invoices being imported which already exist in Corvana."},
    {"Commissions", "Commission information will be updated for commission invoices being imported which already exist "
                    "in Corvana."},
}};

std::optional<std::string_view> codeOf(std::string_view text, std::span<const Choice> choices) {
  const auto found = std::ranges::find(choices, text, &Choice::text);
  return found == choices.end() ? std::nullopt : std::optional(found->code);
}

} // namespace

std::optional<std::string_view> dataTypeCode(std::string_view text) {
  const auto code = codeOf(text, kClientToServerTypes);
  return code ? code : codeOf(text, kClientToClientTypes);
}

std::optional<std::string_view> dataOriginCode(std::string_view text) {
  return codeOf(text, kDataOrigins);
}

std::optional<std::string_view> delimiterCode(int index) {
  if (index < 0 || std::cmp_greater_equal(index, kDelimiters.size()))
    return std::nullopt;
  return kDelimiters[static_cast<std::size_t>(index)].code;
}

bool isClientToServerType(std::string_view text) {
  return codeOf(text, kClientToServerTypes).has_value();
}

bool isClientToClientType(std::string_view text) {
  return codeOf(text, kClientToClientTypes).has_value();
}

std::string_view updateNotice(std::string_view dataType) {
  const auto found = std::ranges::find(kUpdateNotices, dataType, &Notice::dataType);
  return found == kUpdateNotices.end() ? std::string_view() : found->text;
}

} // namespace imex
