#include "commands.h"

#include "formats.h"
#include "lineItems.h"
#include "request/shared.h"
#include "requests.h"
#include "runtime/text.h"

#include <algorithm>
#include <iostream>

namespace imex::cli {

namespace {

std::vector<std::string> texts(const StringsPtr& list) {
  return {list->begin(), list->end()};
}

std::string withoutLastBreak(std::string_view text) {
  const std::size_t last = text.find_last_not_of("\r\n ");
  return without(text.substr(0, last == std::string_view::npos ? 0 : last + 1), "\r");
}

/// Runs one request and keeps what it says.
class Import {
 public:
  Import(ImExRequest& request, Road road) : m_request(request), m_road(road) {
    request.MessageReceived.connect([this](const std::shared_ptr<ImExReply>& reply) { m_reply = reply; });
    request.SerializationFailed.connect([this](const std::string& message) { m_failures.push_back(message); });
  }

  /// Sends the file. An error of the exchange becomes a failure like the others.
  void run() {
    try {
      if (m_road == Road::send)
        m_request.send();
      else
        m_request.Serialize();
    } catch (const RuntimeError& error) {
      m_failures.push_back(error.description());
    }
  }

  /// Tells the user what failed, and why and where when the text for the user does not say it.
  void explain(const std::string& file, const std::string& address, const std::string& lastError) const {
    for (const std::string& failure : m_failures) {
      std::cerr << "imex: " << withoutLastBreak(failure) << '\n';
      if (!m_reply && !isAboutFile(failure) && failure.find(address) == std::string::npos)
        std::cerr << "imex: the address was " << address << '\n';
    }
    const bool isAboutAFile = std::any_of(m_failures.begin(), m_failures.end(), isAboutFile);
    if (isAboutAFile && !lastError.empty())
      std::cerr << "imex: " << file << ": " << lastError << '\n';
  }

  /// How it ended. A request that says nothing has refused the file, or has sent it and does not read the answer;
  /// `hasFailingLines` tells which.
  Ending ending(bool hasFailingLines) const {
    if (m_reply)
      return isRejected() ? kRejected : kAccepted;
    if (hasFailedWith(kCannotOpenFile))
      return kUnreadable;
    if (!m_failures.empty())
      return kFailed;
    return hasFailingLines ? kRefused : kSent;
  }

  bool isSilent() const { return !m_reply && m_failures.empty(); }

  void describe(Results& results) const {
    if (!m_reply)
      return;
    results.reply = m_reply->reply();
    if (!hasFailedWith(kResultsNotDisplayed))
      results.report = m_request.Directory() + std::string(kResultsPageName);
    for (const ImExFormatPtr& format : *m_reply->ImExFormats())
      results.lines.push_back(
          {format->LineNumber(), format->ActionSuccessful(), texts(format->errors()), texts(format->Warnings())});
  }

 private:
  /// The texts about the import file and the results page, which do not say why.
  static bool isAboutFile(std::string_view failure) {
    return failure == kCannotOpenFile || failure == kResultsNotDisplayed;
  }

  bool hasFailedWith(std::string_view message) const {
    return std::find(m_failures.begin(), m_failures.end(), message) != m_failures.end();
  }

  bool isRejected() const {
    const ImExFormatsPtr formats = m_reply->ImExFormats();
    return m_reply->hasErrors() || std::any_of(formats->begin(), formats->end(),
                                               [](const ImExFormatPtr& format) { return !format->ActionSuccessful(); });
  }

  ImExRequest& m_request;
  Road m_road;
  std::shared_ptr<ImExReply> m_reply;
  std::vector<std::string> m_failures;
};

/// What the road keeps from the user.
void remark(const Options& options, const Ending& ending) {
  if (!areLinesSent(options.dataType, options.dataOrigin, options.road))
    std::cerr << "imex: lines of this layout are sent on the instant road only; none was sent (--road instant)\n";
  else if (ending.outcome == kSent.outcome)
    std::cerr << "imex: the service's answer is not read on this road; --road instant shows it\n";
}

ExitStatus runServiceImport(const Options& options, const ConsoleHost& host) {
  ImExRequest request;
  fill(request, options);
  Results results;
  if (const auto problem = fileProblem(request, options, host)) {
    results.outcome = problem->outcome;
    print(results, options);
    return problem->status;
  }
  Import import(request, options.road);
  import.run();
  import.explain(options.file, options.dataType == "BALLASTS" ? options.unsecuredAddress : options.securedAddress,
                 host.lastError());
  if (import.isSilent())
    results.lines = failingLines(request);
  const Ending ending = import.ending(!results.lines.empty());
  results.outcome = ending.outcome;
  import.describe(results);
  remark(options, ending);
  print(results, options);
  return ending.status;
}

} // namespace

ExitStatus runImport(const Options& options, const ConsoleHost& host) {
  if (const auto problem = formatProblem(options))
    return *problem;
  return areLineItems(options) ? runLineItems(options, host) : runServiceImport(options, host);
}

} // namespace imex::cli
