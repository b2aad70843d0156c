#pragma once

#include "records/LineItemRecord.h"

#include <span>
#include <string>
#include <string_view>

namespace imex {

/// A column of a line item file: how its field is judged and where it goes.
struct LineItemColumn {
  /// Returns what is wrong with a field, the empty string for an acceptable one. An empty field is always acceptable.
  using Judge = std::string (*)(std::string_view label, std::string_view value);
  using Store = void (LineItemRecord::*)(std::string value);

  int position;           ///< of the field in its row, counted from 1
  std::string_view label; ///< the name of the field in messages
  Judge judge;
  Store store;
};

/// The ten columns of project and quote line items, in file order. Order line items have the first six.
std::span<const LineItemColumn> lineItemColumns();

} // namespace imex
