#include "request/ImExRequest.h"

#include "host/Files.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/resultsPage.h"
#include "request/shared.h"

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

} // namespace

/// The path of the page. Error 75 where the import file itself stands there: the user's file is never written.
std::string ImExRequest::resultsPagePath() const {
  const std::string path = Directory() + std::string(kResultsPageName);
  if (host::required(host::services().files).isSameFile(path, CheckedFileName()))
    throw RuntimeError(ErrorNumber::pathFileAccessError, kSource);
  return path;
}

void ImExRequest::writeResultsReport() {
  traced(
      {kSource, "writeResultsReport"},
      [&] {
        const ImExFormatsPtr formats = m_currentReply->ImExFormats();
        writeResultsPage(resultsPagePath(), *formats);
      },
      [&](const CaughtError&) { SerializationFailed.raise(std::string(kResultsNotDisplayed)); });
}

void ImExRequest::writeErrorListReport(const Strings& texts) {
  traced(
      {kSource, "writeErrorListReport"},
      [&] {
        const std::string path = resultsPagePath();
        writeTextPage(path, texts);
        if (!texts.isEmpty())
          ImExModule::launchInternetExplorer(path);
      },
      // The lower-case start is part of the text.
      [&](const CaughtError&) { SerializationFailed.raise("the results cannot be displayed in Internet Explorer."); });
}

} // namespace imex
