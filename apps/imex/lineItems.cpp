#include "lineItems.h"

#include "Results.h"
#include "jsonText.h"
#include "request/shared.h"
#include "requests.h"
#include "runtime/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iostream>
#include <utility>

namespace imex::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 11> kProperties = {
    "quantity",         "AType",        "Brand",        "CatalogNumber",     "Col1x",
    "Column1Price",     "Column2Price", "Column3Price", "Column1Commission", "Column2Commission",
    "Column3Commission"};

/// The values of a record, in the order of kProperties.
using Record = std::array<std::string, kProperties.size()>;

struct LineItems {
  std::vector<Record> records;
  std::vector<std::pair<int, std::string>> errors; ///< line and message
  bool isComplete = false;                         ///< false where the file was refused as a whole
};

template <class Records>
void addRecords(LineItems& items, const Records& records) {
  if (!records)
    return;
  items.isComplete = true;
  for (const auto& bean : *records)
    items.records.push_back({bean->quantity(), bean->AType(), bean->Brand(), bean->CatalogNumber(), bean->Col1x(),
                             bean->Column1Price(), bean->Column2Price(), bean->Column3Price(),
                             bean->Column1Commission(), bean->Column2Commission(), bean->Column3Commission()});
}

LineItems read(ImExRequest& request, const std::string& dataType) {
  LineItems items;
  request.showErrors.connect([&](auto&, auto&, const ErrorBeansPtr& errors, auto&, auto&, auto&, auto&) {
    for (const auto& error : *errors)
      items.errors.emplace_back(error->RowNumber(), error->RowError());
  });
  if (dataType == "PROJECTLINEITEM")
    addRecords(items, request.serializeProjectLineItemFile());
  else if (dataType == "QUOTELINEITEM")
    addRecords(items, request.serializeQuoteLineItemFile());
  else
    addRecords(items, request.serializeOrderLineItemFile());
  return items;
}

void printJson(const LineItems& items, std::string_view outcome) {
  Json records = Json::array();
  for (const Record& record : items.records) {
    Json object;
    for (std::size_t i = 0; i < record.size(); ++i)
      object[std::string(kProperties[i])] = record[i];
    records.push_back(std::move(object));
  }
  Json errors = Json::array();
  for (const auto& [line, error] : items.errors)
    errors.push_back({{"line", line}, {"error", error}});
  const Json object = {{"outcome", outcome}, {"records", std::move(records)}, {"errors", std::move(errors)}};
  std::cout << jsonText(object);
}

/// One line of the table: every value but the last filled up to the width of its column, empty columns left out.
void printRow(const std::vector<std::string>& values, const std::vector<std::size_t>& widths) {
  std::string row;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (widths[i] != 0)
      row += values[i] + std::string(widths[i] - length(values[i]) + 2, ' ');
  }
  row.erase(row.find_last_not_of(' ') + 1);
  std::cout << row << '\n';
}

/// A record stays on its line of the table, although a field may hold a line end.
std::vector<Record> onOneLineEach(std::vector<Record> records) {
  for (Record& record : records) {
    for (std::string& value : record) {
      for (std::size_t at = value.find('\n'); at != std::string::npos; at = value.find('\n', at))
        value.replace(at, 1, "\\x0a");
    }
  }
  return records;
}

void printTable(const std::vector<Record>& records) {
  std::vector<std::size_t> widths(kProperties.size());
  for (const Record& record : records) {
    for (std::size_t i = 0; i < record.size(); ++i)
      widths[i] = std::max(widths[i], length(record[i]));
  }
  for (std::size_t i = 0; i < widths.size(); ++i)
    widths[i] = widths[i] == 0 ? 0 : std::max(widths[i], kProperties[i].size());
  printRow({kProperties.begin(), kProperties.end()}, widths);
  for (const Record& record : records)
    printRow({record.begin(), record.end()}, widths);
}

void printError(const std::string& label, const std::string& error) {
  std::cout << label << indented(error, label.size()) << '\n';
}

void printText(const LineItems& items, std::string_view outcome) {
  if (!items.records.empty())
    printTable(onOneLineEach(items.records));
  for (const auto& [line, error] : items.errors)
    printError("Line " + std::to_string(line) + ": ", error);
  std::cout << "Outcome: " << outcome << '\n';
}

/// How the reading ended. Where it ended early, the user is told why unless a box has said it.
Ending endingOf(const LineItems& items, const Options& options, const ConsoleHost& host, int errorsBefore) {
  if (items.isComplete)
    return items.errors.empty() ? kAccepted : kRefused;
  const std::optional<RuntimeError> error = host.errorCount() != errorsBefore ? host.lastError() : std::nullopt;
  if (error ? isOfFile(*error) : host.lastPrompt() == kCannotOpenFile)
    return tellUnreadable(options, error);
  if (error)
    std::cerr << "imex: " << options.file << ": " << reasonOf(*error) << '\n';
  return kRefused;
}

} // namespace

bool areLineItems(const Options& options) {
  return options.dataType.ends_with("LINEITEM");
}

ExitStatus runLineItems(const Options& options, const ConsoleHost& host) {
  ImExRequest request;
  fill(request, options);
  LineItems items;
  Ending ending = kAccepted;
  if (const auto problem = problemWith(request, options, host)) {
    ending = *problem;
  } else {
    const int errorsBefore = host.errorCount();
    items = read(request, options.dataType);
    ending = endingOf(items, options, host, errorsBefore);
  }
  if (options.command == Command::check)
    items.records.clear();
  if (options.asJson)
    printJson(items, ending.outcome);
  else
    printText(items, ending.outcome);
  return ending.status;
}

} // namespace imex::cli
