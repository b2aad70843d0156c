#pragma once

#include "controls/ImExFileEdit/SavedLines.h"
#include "runtime/encoding.h"

namespace imex {

/// The encoding in which the lines of a grid are saved: that of the file, `encoding`, wherever the saved file is then
/// read as these very lines. Otherwise it is UTF-8 with the mark, because what tells the encoding of a file would
/// mislead: a first line that begins with U+FEFF, or with the three characters that are the mark's bytes in
/// Windows-1252, would be read without it; lines in Windows-1252 whose bytes happen to be UTF-8 would be read as that.
///
/// Error 5 for a character that the file's encoding lacks. UTF-8 has them all.
Encoding savedEncoding(const SavedLines& lines, Encoding encoding);

} // namespace imex
