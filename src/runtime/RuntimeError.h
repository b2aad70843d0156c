#pragma once

#include "runtime/export.h"

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace imex {

/// The numbers of the errors that the component itself raises. Adapters add numbers of their own from 1001 up.
enum class ErrorNumber : std::int32_t {
  invalidProcedureCall = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  typeMismatch = 13,
  internalError = 51,
  fileNotFound = 53,
  fileAlreadyOpen = 55,
  deviceIoError = 57,
  diskFull = 61,
  permissionDenied = 70,
  pathFileAccessError = 75,
  pathNotFound = 76,
  objectVariableNotSet = 91,
  cannotCreateObject = 429,
  keyAlreadyAssociated = 457,
};

/// The standing description of an error number, "Internal error" for a number that has none.
IMEX_EXPORT std::string_view describe(ErrorNumber number);

/// An error of the component: a number (32 bits; an adapter keeps it within 16), the name of what raised it and a
/// description that a person can read. Every failure travels as this type; anything else that is caught is turned
/// into one by currentError().
class IMEX_EXPORT RuntimeError : public std::exception {
 public:
  /// An error with its standing description. `source` names the class or module that raises it.
  explicit RuntimeError(ErrorNumber number, std::string_view source = "ImEx");

  /// An error with a description of its own, or with a number that is not of the component.
  RuntimeError(std::int32_t number, std::string source, std::string description);

  /// Which error it is, what raised it, and what a person is told.
  std::int32_t number() const { return m_number; }
  const std::string& source() const { return m_source; }
  const std::string& description() const { return m_description; }

  /// Whether it has this number.
  bool is(ErrorNumber number) const { return m_number == static_cast<std::int32_t>(number); }

  /// The description.
  const char* what() const noexcept override { return m_description.c_str(); }

 private:
  std::int32_t m_number;
  std::string m_source;
  std::string m_description;
};

/// The error being handled, as a RuntimeError: itself where it is one, 7 for std::bad_alloc, 51 with the text of
/// what() behind the description for every other std::exception. Called in a catch block only.
IMEX_EXPORT RuntimeError currentError();

} // namespace imex
