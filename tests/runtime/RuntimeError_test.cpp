#include "runtime/RuntimeError.h"

#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

namespace imex::test {
namespace {

struct TableRow {
  ErrorNumber name;
  std::int32_t number;
  std::string description;
};

std::ostream& operator<<(std::ostream& stream, const TableRow& row) {
  return stream << row.number << ' ' << row.description;
}

class RuntimeErrorTable : public testing::TestWithParam<TableRow> {};

/// What currentError() makes of an exception.
template <class Exception>
RuntimeError caught(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return currentError();
  }
}

} // namespace

TEST_P(RuntimeErrorTable, aNumberHasItsStandingDescription) {
  const TableRow& row = GetParam();
  const RuntimeError error(row.name);
  EXPECT_EQ(error.number(), row.number);
  EXPECT_EQ(error.description(), row.description);
  EXPECT_EQ(describe(row.name), row.description);
  EXPECT_STREQ(error.what(), row.description.c_str());
  EXPECT_TRUE(error.is(row.name));
}

INSTANTIATE_TEST_SUITE_P(
    RuntimeError, RuntimeErrorTable,
    testing::Values(TableRow{ErrorNumber::invalidProcedureCall, 5, "Invalid procedure call or argument"},
                    TableRow{ErrorNumber::overflow, 6, "Overflow"}, //
                    TableRow{ErrorNumber::outOfMemory, 7, "Out of memory"},
                    TableRow{ErrorNumber::subscriptOutOfRange, 9, "Subscript out of range"},
                    TableRow{ErrorNumber::typeMismatch, 13, "Type mismatch"},
                    TableRow{ErrorNumber::internalError, 51, "Internal error"},
                    TableRow{ErrorNumber::fileNotFound, 53, "File not found"},
                    TableRow{ErrorNumber::fileAlreadyOpen, 55, "File already open"},
                    TableRow{ErrorNumber::deviceIoError, 57, "Device I/O error"},
                    TableRow{ErrorNumber::diskFull, 61, "Disk full"},
                    TableRow{ErrorNumber::permissionDenied, 70, "Permission denied"},
                    TableRow{ErrorNumber::pathFileAccessError, 75, "Path/File access error"},
                    TableRow{ErrorNumber::pathNotFound, 76, "Path not found"},
                    TableRow{ErrorNumber::objectVariableNotSet, 91, "Object variable not set"},
                    TableRow{ErrorNumber::cannotCreateObject, 429, "Component can't create object"},
                    TableRow{ErrorNumber::keyAlreadyAssociated, 457,
                             "This key is already associated with an element of this collection"}),
    [](const testing::TestParamInfo<TableRow>& row) { return "number" + std::to_string(row.param.number); });

TEST(RuntimeError, aNumberOutsideTheTable_isDescribedAsAnInternalError) {
  EXPECT_EQ(describe(static_cast<ErrorNumber>(1001)), "Internal error");
  EXPECT_EQ(describe(static_cast<ErrorNumber>(-1)), "Internal error");
}

TEST(RuntimeError, carriesItsThreeParts) {
  const RuntimeError error(-2147467259, "Host", "Unspecified error");
  EXPECT_EQ(error.number(), -2147467259);
  EXPECT_EQ(error.source(), "Host");
  EXPECT_EQ(error.description(), "Unspecified error");
  EXPECT_STREQ(error.what(), "Unspecified error");
}

TEST(RuntimeError, namesTheSourceThatItIsGiven) {
  EXPECT_EQ(RuntimeError(ErrorNumber::overflow, "ImExRequest").source(), "ImExRequest");
}

TEST(RuntimeError, isOneNumberOnly) {
  const RuntimeError error(ErrorNumber::fileNotFound);
  EXPECT_TRUE(error.is(ErrorNumber::fileNotFound));
  EXPECT_FALSE(error.is(ErrorNumber::pathNotFound));
}

TEST(currentError, ofARuntimeError_isThatError) {
  const RuntimeError error = caught(RuntimeError(1003, "HTTP", "no answer"));
  EXPECT_EQ(error.number(), 1003);
  EXPECT_EQ(error.source(), "HTTP");
  EXPECT_EQ(error.description(), "no answer");
}

TEST(currentError, ofBadAlloc_isOutOfMemory) {
  EXPECT_EQ(caught(std::bad_alloc()).number(), 7);
  EXPECT_EQ(caught(std::bad_alloc()).description(), "Out of memory");
  EXPECT_EQ(caught(std::bad_array_new_length()).number(), 7);
}

TEST(currentError, ofAnotherException_isAnInternalErrorWithItsText) {
  EXPECT_EQ(caught(std::out_of_range("row 12")).number(), 51);
  EXPECT_EQ(caught(std::out_of_range("row 12")).description(), "Internal error: row 12");
  EXPECT_EQ(caught(std::runtime_error("pipe broke")).description(), "Internal error: pipe broke");
}

TEST(currentError, ofSomethingThatIsNoException_isAnInternalError) {
  EXPECT_EQ(caught(42).number(), 51);
  EXPECT_EQ(caught(42).description(), "Internal error");
}

} // namespace imex::test
