#pragma once

#include "RequestTest.h"

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace imex::test {

/// The records of a file, each as its texts in the order of the file's columns, Col1x last. "No result" is nullopt.
using Items = std::optional<std::vector<Texts>>;

/// One of the three ways to read line items.
struct LineItemKind {
  std::string name;
  std::string dataType;
  std::size_t columns;
  std::string record;    ///< the class of the records
  std::string procedure; ///< as error records name it
  std::string limit;     ///< the message about too many lines, up to their number
  void (*run)(ImExRequest& request);
  Items (*serialise)(ImExRequest& request); ///< runs and reads the records
};
std::ostream& operator<<(std::ostream& stream, const LineItemKind& kind);

/// Projects, quotes and orders.
const std::vector<LineItemKind>& lineItemKinds();

/// The fields of a row that passes every check.
Texts goodFields(const LineItemKind& kind);

/// The records of rows of these fields.
Items recordsOf(std::vector<Texts> rows);

/// The fields joined by "|" and ended by CR LF.
std::string row(const Texts& fields);

/// A field of a row by its column, counted from 1.
using Field = std::pair<std::size_t, std::string>;

/// A request that is configured for one kind of line items.
class LineItemTest : public RequestTest, public testing::WithParamInterface<LineItemKind> {
 protected:
  LineItemTest();

  /// Also expects that nothing was sent and no results page written.
  void TearDown() override;

  Items serialise() { return kind.serialise(request); }

  /// A good row whose fields at some columns are others.
  Texts fieldsWith(const std::vector<Field>& others) const;

  std::string goodRow() const { return row(goodFields(kind)); }
  std::string badRow() const { return row(fieldsWith({{1, "-1"}})); }

  /// A good line, or one with a bad quantity, so many times.
  std::string goodRows(int count) const { return repeated(join(goodFields(kind), "|"), count); }
  std::string badRows(int count) const { return repeated(join(fieldsWith({{1, "-1"}}), "|"), count); }

  /// A row of as many fields as the format has columns and of so many characters.
  std::string rowOfLength(std::size_t characters) const;

  /// The column names of the format as they were loaded.
  Texts loadedColumns() const { return columnNames(static_cast<int>(kind.columns)); }

  std::string formatKey() const { return kind.dataType + "AGENT"; }

  /// "< ImExRequest serializeOrderLineItemFile()"
  std::string traceLine(char mark) const;

  std::string errorRecord(const std::string& error) const;

  /// The box about this number of lines.
  Box limitBox(int count) const;

  const LineItemKind kind = GetParam();
};

extern const Box kMissingBox;
extern const Box kHaltedBox;

/// The box of an error that has no text of its own: failureBox("6 - Overflow").
Box failureBox(const std::string& error);

inline const Items kNoResult = std::nullopt;
inline const Items kNoRecords = recordsOf({});

/// Makes the tests of a suite one for each kind: "Suite.test/Project".
#define IMEX_FOR_EACH_LINE_ITEM_KIND(suite)                                                                            \
  INSTANTIATE_TEST_SUITE_P(, suite, testing::ValuesIn(lineItemKinds()),                                                \
                           [](const auto& test) { return test.param.name; })

} // namespace imex::test
