#pragma once

#include <string_view>

namespace imex::bench {

/// Does one piece of work ("W1" to "W4") once, for a small file, with a tool that counts instructions told where it
/// begins and ends. False for a name that is not known.
bool doOnce(std::string_view work);

/// Answers imports with the answer to a file of so many lines, on a port that is printed first, until standard input
/// ends. The reference file is written to the folder of the benchmarks, and the finished request beside it.
void serve(std::size_t lineCount);

/// Sends the file `path` to the port, as a finished request, and takes the answer.
void sendRaw(int port, const char* path);

} // namespace imex::bench
