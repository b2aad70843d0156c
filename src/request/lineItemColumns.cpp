#include "request/lineItemColumns.h"

#include "module/validators.h"

#include <array>

namespace imex {

namespace {

using namespace ImExModule;

constexpr bool kRequired = false;

/// The first of two messages that says anything.
std::string firstOf(const std::string& first, const std::string& second) {
  return first.empty() ? second : first;
}

std::string judgeQuantity(std::string_view label, std::string_view value) {
  return firstOf(checkNonNegativeInteger(label, value, kRequired),
                 checkMaxAmount(label, "Long", value, "99999", kRequired));
}

template <int maximum>
std::string judgeText(std::string_view label, std::string_view value) {
  return checkMaxLength(label, value, maximum, kRequired);
}

/// An excessive price is reported as an amount of Quantity, whichever price column it stands in: a label that readers
/// of these messages expect.
std::string judgePrice(std::string_view label, std::string_view value) {
  return firstOf(checkNumeric(label, value, kRequired),
                 checkMaxAmount("Quantity", "Currency", value, "999999", kRequired));
}

std::string judgeCommission(std::string_view label, std::string_view value) {
  return firstOf(checkNumeric(label, value, kRequired), checkMaxAmount(label, "Currency", value, "1", kRequired));
}

constexpr std::array<LineItemColumn, 10> kColumns = {{
    {1, "Quantity", judgeQuantity, &LineItemRecord::quantity},
    {2, "Type", judgeText<10>, &LineItemRecord::AType},
    {3, "Brand", judgeText<10>, &LineItemRecord::Brand},
    {4, "Catalog Number", judgeText<50>, &LineItemRecord::CatalogNumber},
    {5, "Column 1 price", judgePrice, &LineItemRecord::Column1Price},
    {6, "Column 1 commission", judgeCommission, &LineItemRecord::Column1Commission},
    {7, "Column 2 price", judgePrice, &LineItemRecord::Column2Price},
    {8, "Column 2 commission", judgeCommission, &LineItemRecord::Column2Commission},
    {9, "Column 3 price", judgePrice, &LineItemRecord::Column3Price},
    {10, "Column 3 commission", judgeCommission, &LineItemRecord::Column3Commission},
}};

} // namespace

std::span<const LineItemColumn> lineItemColumns() {
  return kColumns;
}

} // namespace imex
