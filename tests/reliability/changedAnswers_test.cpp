#include "changes.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "records/ImExReply.h"

#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace imex::test {
namespace {

const std::string kAnswer =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><answer><return>)"
    "<reply>Refused</reply><hasErrors>true</hasErrors><hasWarnings>true</hasWarnings><importExportResultBean>"
    "<item><isIuccessful>true</isIuccessful><line>A|B|</line><lineNumber>1</lineNumber><errors/><warnings/></item>"
    "<item><isIuccessful>false</isIuccessful><line>C|D|</line><lineNumber>2</lineNumber>"
    "<errors><item>E1</item><item>E2</item></errors><warnings><item>W</item></warnings></item>"
    "</importExportResultBean></return></answer></s:Body></s:Envelope>";

/// The numbers of records and of texts in them.
struct Counts {
  std::size_t records;
  int texts;
  std::size_t kept; ///< texts that the records have

  bool operator==(const Counts&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Counts& counts) {
  return stream << counts.records << " records, " << counts.texts << " texts, " << counts.kept << " kept";
}

constexpr Counts kWhole{2, 3, 3};

Counts countsOf(ImExReply& reply) {
  Counts counts{reply.ImExFormats()->count(), reply.intTotalErrorsAndWarnings, 0};
  for (const ImExFormatPtr& format : *reply.ImExFormats())
    counts.kept += format->errors()->count() + format->Warnings()->count();
  return counts;
}

/// Reads answers and keeps what became of them: their counts, or the numbers of their errors.
class ChangedAnswers : public testing::Test {
 protected:
  std::optional<Counts> read(const std::string& bytes) {
    try {
      platform::PugiSoapEnvelope envelope;
      envelope.parse(bytes, "");
      ImExReply reply;
      reply.processReply(envelope.parameter(0));
      ++results;
      return countsOf(reply);
    } catch (const RuntimeError& error) {
      EXPECT_FALSE(error.description().empty());
      ++errors[error.number()];
      return std::nullopt;
    }
  }

  /// The numbers of the errors that there were.
  std::set<int> numbers() const {
    std::set<int> result;
    for (const auto& [number, count] : errors)
      result.insert(number);
    return result;
  }

  void report() const {
    std::cout << "results: " << results;
    for (const auto& [number, count] : errors)
      std::cout << ", error " << number << ": " << count;
    std::cout << '\n';
  }

  std::map<int, int> errors;
  int results = 0;
};

constexpr int kOverflow = 6;
constexpr int kNoParameter = 9;
constexpr int kTypeMismatch = 13;
constexpr int kNotSoap = 1005;

TEST_F(ChangedAnswers, wholeAnswer_hasItsCounts) {
  EXPECT_EQ(kWhole, read(kAnswer));
}

TEST_F(ChangedAnswers, everyTruncation_isAnError) {
  forEachTruncation(kAnswer, [&](const std::string& bytes) { EXPECT_EQ(std::nullopt, read(bytes)) << bytes; });
  EXPECT_EQ(std::set{kNotSoap}, numbers());
  report();
}

TEST_F(ChangedAnswers, everySingleByteChange_isAnErrorOrHasTheSameCounts) {
  // A tag has a partner with the same name, so no single byte makes a record more or less.
  forEachChangedByte(kAnswer, [&](const std::string& bytes) {
    const std::optional<Counts> counts = read(bytes);
    ASSERT_EQ(kWhole, counts.value_or(kWhole)) << bytes;
  });
  EXPECT_EQ((std::set{kTypeMismatch, kNotSoap}), numbers());
  EXPECT_GT(results, 0);
  report();
}

} // namespace
} // namespace imex::test
