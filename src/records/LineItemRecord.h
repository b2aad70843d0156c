#pragma once

#include "runtime/export.h"

#include <string>
#include <string_view>
#include <utility>

namespace imex {

/// What the line item records have in common: eleven texts, kept as they stand in the import file and empty at first.
/// The records differ in the name under which the trace log knows them, and in one accessor that it knows nothing of.
///
/// No value is checked here; the serialisers of ImExRequest store only what passed their checks. Every accessor is
/// traced; an error in it is recorded, a read gives the value all the same and a write leaves what was there.
class IMEX_EXPORT LineItemRecord {
 public:
  /// A whole number from 0 to 99999.
  std::string quantity() const { return read("quantity", m_quantity); }
  void quantity(std::string value) { write("quantity", m_quantity, std::move(value)); }

  /// The item type, at most 10 characters.
  std::string AType() const { return read("AType", m_aType); }
  void AType(std::string value) { write("AType", m_aType, std::move(value)); }

  /// At most 10 characters.
  std::string Brand() const { return read("Brand", m_brand); }
  void Brand(std::string value) { write("Brand", m_brand, std::move(value)); }

  /// At most 50 characters.
  std::string CatalogNumber() const { return read("CatalogNumber", m_catalogNumber); }
  void CatalogNumber(std::string value) { write("CatalogNumber", m_catalogNumber, std::move(value)); }

  /// A spare value that no import fills.
  std::string Col1x() const { return read("Col1x", m_col1x); }
  void Col1x(std::string value) { write("Col1x", m_col1x, std::move(value)); }

  /// The price of the first price column, as of the others a number up to 999999. An order fills this one alone.
  std::string Column1Price() const { return read("Column1Price", m_column1Price); }
  void Column1Price(std::string value) { write("Column1Price", m_column1Price, std::move(value)); }

  /// The price of the second price column.
  std::string Column2Price() const;
  void Column2Price(std::string value) { write("Column2Price", m_column2Price, std::move(value)); }

  /// The price of the third price column.
  std::string Column3Price() const { return read("Column3Price", m_column3Price); }
  void Column3Price(std::string value) { write("Column3Price", m_column3Price, std::move(value)); }

  /// The commission rate of the first price column, as of the others a number up to 1.
  std::string Column1Commission() const { return read("Column1Commission", m_column1Commission); }
  void Column1Commission(std::string value) { write("Column1Commission", m_column1Commission, std::move(value)); }

  /// The commission rate of the second price column.
  std::string Column2Commission() const { return read("Column2Commission", m_column2Commission); }
  void Column2Commission(std::string value) { write("Column2Commission", m_column2Commission, std::move(value)); }

  /// The commission rate of the third price column.
  std::string Column3Commission() const { return read("Column3Commission", m_column3Commission); }
  void Column3Commission(std::string value) { write("Column3Commission", m_column3Commission, std::move(value)); }

 protected:
  /// Whether reads of Column2Price show in the trace log. All other accessors always do.
  enum class ReadsOfColumn2Price { traced, untraced };

  /// `className` is the source in the trace log; its text lives as long as the program.
  explicit LineItemRecord(std::string_view className, ReadsOfColumn2Price reads = ReadsOfColumn2Price::traced)
      : m_className(className), m_readsOfColumn2Price(reads) {}

 private:
  std::string read(std::string_view property, const std::string& value) const;
  void write(std::string_view property, std::string& place, std::string value);

  std::string_view m_className;
  ReadsOfColumn2Price m_readsOfColumn2Price;
  std::string m_quantity;
  std::string m_aType;
  std::string m_brand;
  std::string m_catalogNumber;
  std::string m_col1x;
  std::string m_column1Price;
  std::string m_column2Price;
  std::string m_column3Price;
  std::string m_column1Commission;
  std::string m_column2Commission;
  std::string m_column3Commission;
};

} // namespace imex
