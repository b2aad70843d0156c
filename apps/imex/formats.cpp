#include "formats.h"

#include "commands.h"
#include "jsonText.h"
#include "module/ImExModule.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <memory>

namespace imex::cli {

namespace {

struct Format {
  std::string_view dataType;
  std::string_view dataOrigin;
};

constexpr std::array<Format, 9> kFormats = {{
    {"CUSTOMER", "AGENT"},
    {"CUSTOMER", "HALVIK"},
    {"PRODUCT", "AGENT"},
    {"PROJECTLINEITEM", "AGENT"},
    {"QUOTELINEITEM", "AGENT"},
    {"ORDERLINEITEM", "AGENT"},
    {"INVOICE", "AGENT"},
    {"COMMISSION", "AGENT"},
    {"BALLASTS", "HALVIK"},
}};

std::string joined(const Strings& texts, std::string_view separator) {
  std::string result;
  for (const std::string& text : texts) {
    if (&text != &*texts.begin())
      result += separator;
    result += text;
  }
  return result;
}

std::string keyOf(const Format& format) {
  return std::string(format.dataType) + std::string(format.dataOrigin);
}

bool isLoaded(const Format& format) {
  return ImExModule::getFormatColumns(keyOf(format)) != nullptr;
}

void printTable() {
  std::cout << std::left << std::setw(17) << "TYPE" << std::setw(8) << "ORIGIN"
            << "COLUMNS\n";
  for (const Format& format : kFormats) {
    std::cout << std::setw(17) << format.dataType << std::setw(8) << format.dataOrigin;
    if (isLoaded(format))
      std::cout << int{ImExModule::getFormatColumnCount(keyOf(format))} << '\n';
    else
      std::cout << "not loaded\n";
  }
}

void printJson() {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Format& format : kFormats) {
    if (!isLoaded(format))
      continue;
    const StringsPtr columns = ImExModule::getFormatColumns(keyOf(format));
    list.push_back({{"type", format.dataType},
                    {"origin", format.dataOrigin},
                    {"columns", std::vector<std::string>(columns->begin(), columns->end())}});
  }
  std::cout << jsonText({{"formats", list}});
}

bool areAllLoaded() {
  for (const Format& format : kFormats) {
    if (!isLoaded(format))
      return false;
  }
  return true;
}

} // namespace

std::optional<Ending> formatProblem(const Options& options) {
  const auto* format = std::find_if(kFormats.begin(), kFormats.end(), [&](const Format& known) {
    return known.dataType == options.dataType && known.dataOrigin == options.dataOrigin;
  });
  if (format == kFormats.end()) {
    std::cerr << "imex: there is no format of the type \"" << options.dataType << "\" and the origin \""
              << options.dataOrigin << "\"; \"imex formats\" lists them\n";
    return kUnknownFormat;
  }
  // Of a format that is not loaded, the catalogue has said in a box which file it could not read.
  return isLoaded(*format) ? std::nullopt : std::optional(kUnreadable);
}

ExitStatus runTemplate(const Options& options) {
  const auto problem = formatProblem(options);
  const StringsPtr columns =
      problem ? std::make_shared<Strings>() : ImExModule::getFormatColumns(options.dataType + options.dataOrigin);
  if (options.asJson)
    std::cout << jsonText({{"columns", std::vector<std::string>(columns->begin(), columns->end())}});
  else if (!problem)
    std::cout << joined(*columns, "\t") << '\n';
  return problem.value_or(kAccepted).status;
}

ExitStatus runFormats(const Options& options) {
  if (options.asJson)
    printJson();
  else
    printTable();
  return areAllLoaded() ? ExitStatus::accepted : ExitStatus::cannotOpenFile;
}

} // namespace imex::cli
