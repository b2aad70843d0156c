#include "platform/soap/watchedCurl.h"

#include <cstdarg>
#include <utility>

#include <curl/curl.h>

extern "C" {

// The linker puts the second of each pair in the place of the program's calls, and gives the library's own the first
// name.
CURLcode __real_curl_easy_setopt(CURL* handle, CURLoption option, ...);
CURLcode __real_curl_easy_perform(CURL* handle);

/// Every value is one word, be it a number or an address.
CURLcode __wrap_curl_easy_setopt(CURL* handle, CURLoption option, ...) {
  va_list values;
  va_start(values, option);
  const long value = va_arg(values, long);
  va_end(values);
  if (option < CURLOPTTYPE_OBJECTPOINT)
    imex::test::watchedCurl.options[option] = value;
  return __real_curl_easy_setopt(handle, option, value);
}

CURLcode __wrap_curl_easy_perform(CURL* handle) {
  const auto result = std::exchange(imex::test::watchedCurl.resultToReturn, std::nullopt);
  return result ? static_cast<CURLcode>(*result) : __real_curl_easy_perform(handle);
}
}
