#include "commands.h"

#include "lineItems.h"
#include "request/shared.h"
#include "requests.h"
#include "runtime/address.h"
#include "runtime/text.h"

#include <algorithm>
#include <iostream>

namespace imex::cli {

namespace {

std::vector<std::string> texts(const StringsPtr& list) {
  if (isEmpty(list))
    return {};
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
  void explain(const Options& options, const std::string& lastError) const {
    const std::string address =
        shownAddress(options.dataType == "BALLASTS" ? options.unsecuredAddress : options.securedAddress);
    for (const std::string& failure : m_failures) {
      std::cerr << "imex: " << withoutLastBreak(failure) << '\n';
      if (failure == kCannotOpenFile)
        std::cerr << "imex: " << options.file << ": " << lastError << '\n';
      else if (failure == kResultsNotDisplayed)
        std::cerr << "imex: " << pagePath() << ": " << lastError << '\n';
      else if (failure.find(address) == std::string::npos)
        std::cerr << "imex: the address was " << address << '\n';
    }
  }

  /// How it ended. A request that says nothing has asked whether to correct the file, or has sent it and does not read
  /// the answer.
  Ending ending(bool hasAskedQuestion) const {
    if (m_reply)
      return isRejected() ? kRejected : kAccepted;
    if (hasFailedWith(kCannotOpenFile))
      return kUnreadable;
    if (!m_failures.empty())
      return kFailed;
    return hasAskedQuestion ? kRefused : kSent;
  }

  void describe(Results& results) const {
    if (!m_reply)
      return;
    results.reply = m_reply->reply();
    if (!hasFailedWith(kResultsNotDisplayed))
      results.report = pagePath();
    for (const ImExFormatPtr& format : *m_reply->ImExFormats())
      results.lines.push_back(
          {format->LineNumber(), format->ActionSuccessful(), texts(format->cErrors), texts(format->cWarnings)});
  }

 private:
  std::string pagePath() const { return m_request.Directory() + std::string(kResultsPageName); }

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
  if (const auto problem = problemWith(request, options, host)) {
    results.outcome = problem->outcome;
    print(results, options);
    return problem->status;
  }
  Import run(request, options.road);
  run.run();
  run.explain(options, host.lastError());
  const Ending ending = run.ending(host.hasAskedQuestion());
  results.outcome = ending.outcome;
  run.describe(results);
  if (ending.status == ExitStatus::refused)
    results.lines = failingLines(request, host);
  remark(options, ending);
  print(results, options);
  return ending.status;
}

} // namespace

ExitStatus runImport(const Options& options, const ConsoleHost& host) {
  return areLineItems(options) ? runLineItems(options, host) : runServiceImport(options, host);
}

} // namespace imex::cli
