#include "LineItemTest.h"

#include <memory>

namespace imex::test {

namespace {

constexpr std::size_t kRecordColumns = 10;

template <class Record>
Texts textsOf(const Record& record) {
  return {record.quantity(),     record.AType(),
          record.Brand(),        record.CatalogNumber(),
          record.Column1Price(), record.Column1Commission(),
          record.Column2Price(), record.Column2Commission(),
          record.Column3Price(), record.Column3Commission(),
          record.Col1x()};
}

template <class Record>
Items itemsOf(const CollectionPtr<std::shared_ptr<Record>>& records) {
  if (!records)
    return std::nullopt;
  std::vector<Texts> items;
  for (const std::shared_ptr<Record>& record : *records)
    items.push_back(textsOf(*record));
  return items;
}

std::string limitText(const std::string& items) {
  return "The maximum number of " + items + " that can be imported at one time is 500. You have attempted to import ";
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const LineItemKind& kind) {
  return stream << kind.name;
}

const std::vector<LineItemKind>& lineItemKinds() {
  static const std::vector<LineItemKind> kinds = {
      {"Project", "PROJECTLINEITEM", kProjectColumns, "ImportProjectLineItemBean", "serializeProjectLineItemFile",
       limitText("project line items"), [](ImExRequest& request) { (void)request.serializeProjectLineItemFile(); },
       [](ImExRequest& request) { return itemsOf(request.serializeProjectLineItemFile()); }},
      {"Quote", "QUOTELINEITEM", kQuoteColumns, "ImportQuoteLIneItemBean", "serializeQuoteLineItemFile",
       limitText("quote line items"), [](ImExRequest& request) { (void)request.serializeQuoteLineItemFile(); },
       [](ImExRequest& request) { return itemsOf(request.serializeQuoteLineItemFile()); }},
      {"Order", "ORDERLINEITEM", kOrderColumns, "ImportOrderLineItemBean", "serializeOrderLineItemFile",
       limitText("order line items"), [](ImExRequest& request) { (void)request.serializeOrderLineItemFile(); },
       [](ImExRequest& request) { return itemsOf(request.serializeOrderLineItemFile()); }},
  };
  return kinds;
}

Texts goodFields(const LineItemKind& kind) {
  Texts fields = {"24", "F1", "NORVANE", "NV-1X4-T8-2-UNV", "73.75", "0.05", "70.75", "0.045", "67.00", "0.04"};
  fields.resize(kind.columns);
  return fields;
}

Items recordsOf(std::vector<Texts> rows) {
  for (Texts& fields : rows)
    fields.resize(kRecordColumns + 1); // columns that the file lacks, and Col1x, stay empty
  return rows;
}

std::string row(const Texts& fields) {
  return textLines({join(fields, "|")});
}

const Box kMissingBox{"Unable to open the file selected. Please try again.", 48, "Corvana Maintenance"};
const Box kHaltedBox{" The import file is not properly delimited.\r\n The import has been halted.", 48,
                     "Corvana Maintenance"};

Box failureBox(const std::string& error) {
  return {"The requested operation could not be completed.", 48, "Error Number: " + error};
}

LineItemTest::LineItemTest() {
  configure(kind.dataType, "AGENT");
}

void LineItemTest::TearDown() {
  EXPECT_TRUE(host.serviceCall.calls.empty());
  EXPECT_FALSE(isPageWritten());
  RequestTest::TearDown();
}

Texts LineItemTest::fieldsWith(const std::vector<Field>& others) const {
  Texts fields = goodFields(kind);
  for (const auto& [column, value] : others)
    fields[column - 1] = value;
  return fields;
}

std::string LineItemTest::rowOfLength(std::size_t characters) const {
  Texts fields(kind.columns);
  fields[1] = std::string(characters - (kind.columns - 1), 'T');
  return row(fields);
}

std::string LineItemTest::traceLine(char mark) const {
  return std::string(1, mark) + " ImExRequest " + kind.procedure + "()";
}

std::string LineItemTest::errorRecord(const std::string& error) const {
  return "! ImExRequest " + kind.procedure + " " + error;
}

Box LineItemTest::limitBox(int count) const {
  return {kind.limit + std::to_string(count) +
              " lines.\r\nYou may create mulitple files with 500 or less lines from your large import file and import "
              "them separately if you wish.",
          48, "Corvana"};
}

} // namespace imex::test
