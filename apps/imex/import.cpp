#include "commands.h"

#include "lineItems.h"
#include "platform/files/DiskFiles.h"
#include "request/shared.h"
#include "requests.h"
#include "runtime/address.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>

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

/// What the user is told of a failure, and the error behind it where one was recorded.
struct Failure {
  std::string text;
  std::optional<RuntimeError> cause;
};

/// Whether the error has nothing but the standing description of one that an answer causes: adapters, which read and
/// write what is exchanged, have words of their own.
bool isOfAnswer(const RuntimeError& error) {
  constexpr std::array kOfAnswers = {ErrorNumber::invalidProcedureCall, ErrorNumber::overflow,
                                     ErrorNumber::subscriptOutOfRange, ErrorNumber::typeMismatch,
                                     ErrorNumber::objectVariableNotSet};
  return std::any_of(kOfAnswers.begin(), kOfAnswers.end(),
                     [&](ErrorNumber number) { return error.is(number) && error.description() == describe(number); });
}

/// Runs one request and keeps what it says.
class Import {
 public:
  Import(ImExRequest& request, const Options& options, const ConsoleHost& host)
      : m_request(request), m_options(options), m_host(host), m_errorsBefore(host.errorCount()) {
    request.MessageReceived.connect([this](const std::shared_ptr<ImExReply>& reply) { m_reply = reply; });
    request.SerializationFailed.connect([this](const std::string& message) {
      m_failures.push_back({message, m_host.errorCount() != m_errorsBefore ? m_host.lastError() : std::nullopt});
    });
  }

  /// Sends the file. An error of the exchange becomes a failure like the others.
  void run() {
    try {
      if (m_options.road == Road::send)
        m_request.send();
      else
        m_request.Serialize();
    } catch (const RuntimeError& error) {
      m_failures.push_back({error.description(), error});
    }
  }

  /// Tells the user what failed, and why and where when the text for the user does not say it.
  void explain() const {
    for (const Failure& failure : m_failures) {
      std::cerr << "imex: " << withoutLastBreak(failure.text) << '\n';
      if (failure.text == kCannotOpenFile)
        explainPath(m_options.file, failure.cause);
      else if (failure.text == kResultsNotDisplayed)
        explainPath(pagePath(), failure.cause);
      else
        explainExchange(failure);
    }
  }

  /// How it ended. A request that says nothing has asked whether to correct the file, could not read it any more, or
  /// has sent it and does not read the answer.
  Ending ending() const {
    if (m_reply)
      return isRejected() ? kRejected : kAccepted;
    if (hasFailedWith(kCannotOpenFile))
      return kUnreadable;
    if (!m_failures.empty())
      return kFailed;
    if (m_host.hasAskedQuestion())
      return kRefused;
    return m_host.lastPrompt() == kCannotOpenFile ? tellUnreadable(m_options, std::nullopt) : kSent;
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
  static void explainPath(const std::string& path, const std::optional<RuntimeError>& cause) {
    if (cause)
      std::cerr << "imex: " << path << ": " << reasonOf(*cause) << '\n';
  }

  void explainExchange(const Failure& failure) const {
    const bool ballasts = m_options.dataType == "BALLASTS";
    const std::string address = shownAddress(ballasts ? m_options.unsecuredAddress : m_options.securedAddress);
    if (failure.cause && failure.text.find(failure.cause->description()) == std::string::npos)
      std::cerr << "imex: " << reasonOf(*failure.cause) << '\n';
    if (failure.cause && isOfAnswer(*failure.cause))
      std::cerr << "imex: the answer of " << address << " could not be understood\n";
    else if (failure.text.find(address) == std::string::npos)
      std::cerr << "imex: the address was " << address << '\n';
  }

  /// As the disk has it: the file may have been named in another case or with backslashes.
  std::string pagePath() const {
    return platform::nativePath(m_request.Directory() + std::string(kResultsPageName)).string();
  }

  bool hasFailedWith(std::string_view message) const {
    return std::any_of(m_failures.begin(), m_failures.end(),
                       [&](const Failure& failure) { return failure.text == message; });
  }

  bool isRejected() const {
    const ImExFormatsPtr formats = m_reply->ImExFormats();
    return m_reply->hasErrors() || std::any_of(formats->begin(), formats->end(),
                                               [](const ImExFormatPtr& format) { return !format->ActionSuccessful(); });
  }

  ImExRequest& m_request;
  const Options& m_options;
  const ConsoleHost& m_host;
  int m_errorsBefore; ///< how many errors others have recorded
  std::shared_ptr<ImExReply> m_reply;
  std::vector<Failure> m_failures;
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
  Import run(request, options, host);
  run.run();
  run.explain();
  const Ending ending = run.ending();
  results.outcome = ending.outcome;
  run.describe(results);
  if (ending.status == ExitStatus::refused)
    listFailingLines(results.lines, request, options, host); // what cannot be read any more does not change the refusal
  remark(options, ending);
  print(results, options);
  return ending.status;
}

} // namespace

ExitStatus runImport(const Options& options, const ConsoleHost& host) {
  return areLineItems(options) ? runLineItems(options, host) : runServiceImport(options, host);
}

} // namespace imex::cli
