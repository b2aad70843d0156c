#include "once.h"

#include "BenchHost.h"
#include "Reference.h"
#include "Sink.h"
#include "works.h"

#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>

#include <valgrind/callgrind.h>

namespace imex::bench {

namespace {

constexpr std::size_t kLines = 1000;

void count(const std::function<void()>& work) {
  work(); // what happens once in a process is not counted
  CALLGRIND_TOGGLE_COLLECT;
  work();
  CALLGRIND_TOGGLE_COLLECT;
}

} // namespace

bool doOnce(std::string_view work) {
  const Reference& reference = Reference::of(kLines);
  const BenchHost host;
  if (work == "W1") {
    count([&] { checkFile(reference); });
  } else if (work == "W2") {
    count([&] { buildRequest(reference.lines); });
  } else if (work == "W3") {
    count([&] { readAnswer(reference.answer); });
  } else if (work == "W4") {
    ImExReply reply = readAnswer(reference.answer);
    count([&] { writePage(Reference::folder() + "once.html", reply); });
  } else {
    return false;
  }
  return true;
}

void serve(std::size_t lineCount) {
  const Reference& reference = Reference::of(lineCount);
  const std::string body = buildRequest(reference.lines);
  Reference::write("request.bin", requestHead(body.size()) + body);
  const Sink sink(reference.answer);
  std::cout << sink.port() << ' ' << reference.path << ' ' << Reference::folder() << "request.bin" << std::endl;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
}

void sendRaw(int port, const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string request(std::istreambuf_iterator<char>(file), {});
  exchangeRaw(port, {}, request);
}

} // namespace imex::bench
