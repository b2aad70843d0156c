#include "jsonText.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <string>

namespace imex::cli {

namespace {

using Json = nlohmann::ordered_json;

/// The text between the quotes of a value.
std::string written(const std::string& value) {
  const std::string text = jsonText(Json{{"a", value}});
  const std::string before = "{\n  \"a\": \"";
  const std::string behind = "\"\n}\n";
  EXPECT_TRUE(text.starts_with(before) && text.ends_with(behind)) << text;
  return text.substr(before.size(), text.size() - before.size() - behind.size());
}

TEST(JsonText, ordinaryTextIsAsItIs) {
  for (const char* text : {"", "Müller – 100 €", "\u00a0", "\u202f\u2030", "\U0001F600"})
    EXPECT_EQ(text, written(text));
}

TEST(JsonText, hiddenCharactersAreEscaped) {
  EXPECT_EQ("\\u0000\\t\\n\\u001b \\u007f~", written(std::string("\0\t\n\x1b \x7f~", 7)));
  EXPECT_EQ("\\u0080\\u009b[2J\\u009f", written("\u0080\u009b[2J\u009f"));
  EXPECT_EQ("\\u061c\\u200e\\u200f\\u2028\\u2029\\u202a\\u202e\\u2066\\u2069",
            written("\u061c\u200e\u200f\u2028\u2029\u202a\u202e\u2066\u2069"));
}

TEST(JsonText, whatIsReadAgainIsTheSame) {
  const Json object = {{"a\u202e", {"\u009b\"\\", "\x7f"}}};
  EXPECT_EQ(object, Json::parse(jsonText(object)));
}

TEST(JsonText, bytesThatAreNoTextAreReplaced) {
  EXPECT_EQ("a\ufffd", written("a\xff"));
}

} // namespace

} // namespace imex::cli
