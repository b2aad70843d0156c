#include "request/correction.h"

#include <gtest/gtest.h>

namespace imex::test {
namespace {

Strings errors(int count) {
  Strings result;
  for (int i = 1; i <= count; ++i)
    result.add("error " + std::to_string(i));
  return result;
}

TEST(correctionQuestion, oneError_isListedBeforeTheQuestion) {
  EXPECT_EQ(correctionQuestion(errors(1)), "error 1\r\n\r\n Would you like to correct the file?");
}

TEST(correctionQuestion, noError_isTheQuestionBehindALineBreak) {
  EXPECT_EQ(correctionQuestion(errors(0)), "\r\n Would you like to correct the file?");
}

TEST(correctionQuestion, severalErrors_areListedInOrder) {
  EXPECT_EQ(correctionQuestion(Strings{"b", "a", "b"}), "b\r\na\r\nb\r\n\r\n Would you like to correct the file?");
}

TEST(correctionQuestion, nineErrors_areListed) {
  EXPECT_EQ(correctionQuestion(errors(9)), "error 1\r\nerror 2\r\nerror 3\r\nerror 4\r\nerror 5\r\nerror 6\r\n"
                                           "error 7\r\nerror 8\r\nerror 9\r\n\r\n Would you like to correct the file?");
}

TEST(correctionQuestion, tenErrorsOrMore_areNotListed) {
  for (const int count : {10, 11, 12, 100})
    EXPECT_EQ(correctionQuestion(errors(count)), "\r\n Would you like to correct the file?") << count;
}

TEST(correctionQuestion, anErrorOfSeveralLines_isKeptAsItIs) {
  EXPECT_EQ(correctionQuestion(Strings{"one\r\ntwo", ""}),
            "one\r\ntwo\r\n\r\n\r\n Would you like to correct the file?");
}

} // namespace
} // namespace imex::test
