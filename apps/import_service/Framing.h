#pragma once

#include <string_view>

namespace imex::import_service {

/// Where the body of an HTTP request ends.
enum class Framing {
  unsound, ///< readers may disagree about it, so nothing on the connection can be trusted any more
  noBody,  ///< there is none
  length,  ///< after the bytes that Content-Length announces
  chunks,  ///< after the last chunk
};

/// Judges a request's head as it came: the request line and the headers, up to and with the empty line. What a lenient
/// reader skips or repairs is unsound: lines that do not end in CRLF or have control characters in them, headers
/// without a colon, continued or with a blank in their name, a Content-Length that is not made of digits, more than one
/// of it, one beside Transfer-Encoding, a Transfer-Encoding other than "chunked", and any in HTTP/1.0. The request line
/// itself is not judged.
Framing framingOf(std::string_view head);

} // namespace imex::import_service
