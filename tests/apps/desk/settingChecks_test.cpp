#include "desk/settingChecks.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::desk::test {

namespace {

struct Input {
  const char* text;
  bool isRight;
};

std::ostream& operator<<(std::ostream& stream, const Input& input) {
  return stream << '"' << input.text << '"';
}

/// Right is no message; wrong is always the same one.
void expectVerdict(const Input& input, const QString& verdict, const char* message) {
  EXPECT_EQ(input.isRight ? QString() : QString::fromLatin1(message), verdict) << input;
}

TEST(DeskSettingChecks, address) {
  for (const Input& input : {Input{"", true},
                             {"http://service.example/secured", true},
                             {"https://service.example", true},
                             {"HTTP://127.0.0.1:8080/a/b?c=d", true},
                             {"http://[::1]:8080/", true},
                             {"http://host:65535/", true},
                             {"service.example", false},
                             {"ftp://service.example/", false},
                             {"file:///etc/passwd", false},
                             {"http://", false},
                             {"http:///path", false},
                             {"http://host:0/", false},
                             {"http://host:65536/", false},
                             {"http://host:port/", false},
                             {"http://two words/", false},
                             {" http://host/", false},
                             {"http://host/a b", false}})
    expectVerdict(input, checkAddress(QString::fromLatin1(input.text)),
                  "Must be a web address that begins with http:// or https://");
}

TEST(DeskSettingChecks, port) {
  for (const Input& input : {Input{"", true},
                             {"1", true},
                             {"8080", true},
                             {"65535", true},
                             {"0", false},
                             {"65536", false},
                             {"-1", false},
                             {"+80", false},
                             {" 80", false},
                             {"80 ", false},
                             {"8 0", false},
                             {"80.5", false},
                             {"0x50", false},
                             {"eighty", false},
                             {"99999999999999999999", false}})
    expectVerdict(input, checkPort(QString::fromLatin1(input.text)), "Must be a number from 1 to 65535, or empty");
}

TEST(DeskSettingChecks, timeout) {
  for (const Input& input : {Input{"0", true},
                             {"30000", true},
                             {"2147483647", true},
                             {"", false},
                             {"2147483648", false},
                             {"-1", false},
                             {"1e3", false},
                             {"1,000", false},
                             {"soon", false}})
    expectVerdict(input, checkTimeout(QString::fromLatin1(input.text)), "Must be a number from 0 to 2147483647");
}

} // namespace

} // namespace imex::desk::test
