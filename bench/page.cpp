// W4: the results page.

#include "BenchHost.h"
#include "Reference.h"
#include "request/resultsPage.h"
#include "sizes.h"
#include "works.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace imex::bench {

void writePage(const std::string& path, ImExReply& reply) {
  writeResultsPage(path, *reply.ImExFormats());
}

namespace {

std::string ourPage() {
  return Reference::folder() + "ours.html";
}

/// The page as it should be, and a file to write it to.
std::string finishedPage(ImExReply& reply) {
  const BenchHost host;
  writePage(ourPage(), reply);
  std::ifstream file(ourPage(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void pageLimit(benchmark::State& state) {
  ImExReply reply = readAnswer(Reference::of(sizeOf(state)).answer);
  const std::string page = finishedPage(reply);
  const std::string path = Reference::folder() + "limit.html";
  for (auto _ : state) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (::write(file, page.data(), page.size()) != static_cast<ssize_t>(page.size()))
      state.SkipWithError("not written");
    ::close(file);
  }
}

void print(std::FILE* file, ImExFormat& format) {
  const int number = format.LineNumber();
  std::fprintf(file, "<tr><td nowrap>\r\n<font size= +1>\r\nLINE # : %d   DATA    : %s\r\n</font>\r\n</tr></td>\r\n",
               number, format.Line().c_str());
  std::fprintf(file, "<tr><td nowrap>\r\nLINE # : %d   STATUS  : Import %s for this line.\r\n</tr></td>\r\n", number,
               format.ActionSuccessful() ? "successful" : "failed");
  for (const std::string& text : *format.errors())
    std::fprintf(file,
                 "<tr><td nowrap>\r\n<font color= red>\r\nLINE # : %d   ERROR   : %s\r\n</font>\r\n</tr></td>\r\n",
                 number, text.c_str());
  for (const std::string& text : *format.Warnings())
    std::fprintf(file, "<tr><td nowrap>\r\nLINE # : %d   WARNING : %s\r\n</tr></td>\r\n", number, text.c_str());
  std::fprintf(file, "<tr><td nowrap>\r\n \r\n</tr></td>\r\n");
}

void pageFprintf(benchmark::State& state) {
  ImExReply reply = readAnswer(Reference::of(sizeOf(state)).answer);
  const std::string path = Reference::folder() + "fprintf.html";
  const ImExFormatsPtr formats = reply.ImExFormats();
  long size = 0;
  for (auto _ : state) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::fprintf(file, "<html>\r\n<head><Title> Validation Results</title></head>\r\n"
                       "<h1><center>Validation Results</center></h1>\r\n<table>\r\n");
    for (const ImExFormatPtr& format : *formats)
      print(file, *format);
    std::fprintf(file, "</table></html>\r\n");
    size = std::ftell(file);
    std::fclose(file);
  }
  if (static_cast<std::size_t>(size) != finishedPage(reply).size())
    state.SkipWithError("not the same page");
}

void pageOurs(benchmark::State& state) {
  ImExReply reply = readAnswer(Reference::of(sizeOf(state)).answer);
  const BenchHost host;
  for (auto _ : state)
    writePage(ourPage(), reply);
}

IMEX_BENCHMARK("W4/limit", pageLimit);
IMEX_BENCHMARK("W4/fprintf", pageFprintf);
IMEX_BENCHMARK("W4/ours", pageOurs);

} // namespace

} // namespace imex::bench
