#include "changes.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "records/ImExReply.h"
#include "support/TestHost.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

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

struct Line {
  bool isSuccessful;
  std::string text;
  int number;
  Texts errors;
  Texts warnings;

  bool operator==(const Line&) const = default;
};

/// All that an answer says.
struct Result {
  std::string reply;
  bool hasErrors;
  bool hasWarnings;
  int texts; ///< of errors and warnings
  std::vector<Line> lines;

  bool operator==(const Result&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Result& result) {
  stream << result.reply << '|' << result.hasErrors << '|' << result.hasWarnings << '|' << result.texts;
  for (const Line& line : result.lines)
    stream << '\n'
           << line.isSuccessful << '|' << line.text << '|' << line.number << '|' << join(line.errors, ",") << '|'
           << join(line.warnings, ",");
  return stream;
}

// The rules of an answer once more, the plain way: each text stands where it stood before a byte of it was changed.

/// What stands in `bytes` where kAnswer has the text of an element: of those of the name, the one at `occurrence`,
/// counted from 0.
std::string textAt(const std::string& bytes, const std::string& element, int occurrence = 0) {
  const std::string open = '<' + element + '>';
  std::size_t begin = kAnswer.find(open);
  for (int i = 0; i < occurrence; ++i)
    begin = kAnswer.find(open, begin + 1);
  begin += open.size();
  return bytes.substr(begin, kAnswer.find('<', begin) - begin);
}

/// An XML text ends its lines by LF alone.
std::string withLineFeeds(std::string text) {
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

std::string withoutBlanks(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

bool isTrue(const std::string& text) {
  std::string word = withoutBlanks(text);
  std::transform(word.begin(), word.end(), word.begin(), [](char c) { return 'A' <= c && c <= 'Z' ? c + 32 : c; });
  return word == "true" || word == "1";
}

/// What an answer says that differs from the good one in one byte, where it is an answer.
Result plainly(const std::string& bytes) {
  const auto text = [&](const char* element, int occurrence = 0) {
    return withLineFeeds(textAt(bytes, element, occurrence));
  };
  const auto number = [&](int line) { return std::stoi(withoutBlanks(text("lineNumber", line))); };
  // The elements "item" are both verdicts and then the texts of the second.
  return {text("reply"),
          isTrue(text("hasErrors")),
          isTrue(text("hasWarnings")),
          3, // texts of errors and warnings
          {{isTrue(text("isIuccessful", 0)), text("line", 0), number(0), {}, {}},
           {isTrue(text("isIuccessful", 1)),
            text("line", 1),
            number(1),
            {text("item", 2), text("item", 3)},
            {text("item", 4)}}}};
}

Result resultOf(ImExReply& reply) {
  Result result{reply.reply(), reply.hasErrors(), reply.hasWarnings(), reply.intTotalErrorsAndWarnings, {}};
  for (const ImExFormatPtr& format : *reply.ImExFormats())
    result.lines.push_back({format->ActionSuccessful(), format->Line(), format->LineNumber(), texts(format->errors()),
                            texts(format->Warnings())});
  return result;
}

/// Reads answers and keeps what became of them: what they say, or the numbers of their errors.
class ChangedAnswers : public testing::Test {
 protected:
  std::optional<Result> read(const std::string& bytes) {
    try {
      platform::PugiSoapEnvelope envelope;
      envelope.parse(bytes, "");
      ImExReply reply;
      reply.processReply(envelope.parameter(0));
      ++results;
      return resultOf(reply);
    } catch (const RuntimeError& error) {
      EXPECT_FALSE(error.description().empty());
      ++errors[error.number()];
      return std::nullopt;
    }
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

constexpr int kTypeMismatch = 13;
constexpr int kNotSoap = 1005;

TEST_F(ChangedAnswers, wholeAnswer_saysAllThatIsInIt) {
  const Result whole = {"Refused", true, true, 3, {{true, "A|B|", 1, {}, {}}, {false, "C|D|", 2, {"E1", "E2"}, {"W"}}}};
  EXPECT_EQ(whole, read(kAnswer));
  EXPECT_EQ(whole, plainly(kAnswer));
}

TEST_F(ChangedAnswers, everyTruncation_isAnError) {
  forEachTruncation(kAnswer, [&](const std::string& bytes) { EXPECT_EQ(std::nullopt, read(bytes)) << bytes; });
  EXPECT_EQ((std::map<int, int>{{kNotSoap, 576}}), errors);
  report();
}

TEST_F(ChangedAnswers, everySingleByteChange_isAnErrorOrSaysWhatStandsThere) {
  // A tag has a partner with the same name, so no single byte makes a record more or less.
  forEachChangedByte(kAnswer, [&](const std::string& bytes) {
    if (const std::optional<Result> result = read(bytes)) {
      ASSERT_EQ(plainly(bytes), result) << bytes;
    }
  });
  EXPECT_EQ((std::map<int, int>{{kTypeMismatch, 1789}, {kNotSoap, 139244}}), errors);
  EXPECT_EQ(5847, results);
  report();
}

} // namespace
} // namespace imex::test
