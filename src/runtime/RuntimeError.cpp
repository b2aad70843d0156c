#include "runtime/RuntimeError.h"

#include <new>
#include <utility>

namespace imex {

std::string_view describe(ErrorNumber number) {
  switch (number) {
  case ErrorNumber::invalidProcedureCall:
    return "Invalid procedure call or argument";
  case ErrorNumber::overflow:
    return "Overflow";
  case ErrorNumber::outOfMemory:
    return "Out of memory";
  case ErrorNumber::subscriptOutOfRange:
    return "Subscript out of range";
  case ErrorNumber::typeMismatch:
    return "Type mismatch";
  case ErrorNumber::internalError:
    return "Internal error";
  case ErrorNumber::fileNotFound:
    return "File not found";
  case ErrorNumber::fileAlreadyOpen:
    return "File already open";
  case ErrorNumber::deviceIoError:
    return "Device I/O error";
  case ErrorNumber::diskFull:
    return "Disk full";
  case ErrorNumber::permissionDenied:
    return "Permission denied";
  case ErrorNumber::pathFileAccessError:
    return "Path/File access error";
  case ErrorNumber::pathNotFound:
    return "Path not found";
  case ErrorNumber::objectVariableNotSet:
    return "Object variable not set";
  case ErrorNumber::cannotCreateObject:
    return "Component can't create object";
  case ErrorNumber::keyAlreadyAssociated:
    return "This key is already associated with an element of this collection";
  }
  return "Internal error";
}

RuntimeError::RuntimeError(ErrorNumber number, std::string_view source)
    : RuntimeError(static_cast<std::int32_t>(number), std::string(source), std::string(describe(number))) {}

RuntimeError::RuntimeError(std::int32_t number, std::string source, std::string description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)) {}

RuntimeError currentError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RuntimeError(ErrorNumber::outOfMemory);
  } catch (const std::exception& error) {
    return {static_cast<std::int32_t>(ErrorNumber::internalError), "ImEx",
            std::string(describe(ErrorNumber::internalError)) + ": " + error.what()};
  } catch (...) {
    return RuntimeError(ErrorNumber::internalError);
  }
}

} // namespace imex
