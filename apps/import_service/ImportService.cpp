#include "import_service/ImportService.h"

#include "import_service/AnswerWriter.h"
#include "import_service/Attempts.h"
#include "import_service/RequestReader.h"
#include "import_service/wording.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <ctime>
#include <unordered_set>
#include <utility>
#include <vector>

namespace imex::import_service {

namespace {

constexpr int kOk = 200;
constexpr int kFault = 500;
constexpr int kUnavailable = 503;

/// An import that has met others so often begins anew when nobody else is at work.
constexpr int kSharedAttempts = 4;

std::string utcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

ImportOrigin originOf(const ImportRequest& request) {
  return {request.formatKey(), request.userId.empty() ? request.userName : request.userId, utcNow()};
}

std::string describe(const ImportRequest& request) {
  return request.methodName + ' ' + request.formatKey() + ", " + counted(request.lines.size(), "line") + " from " +
         inQuotes(originOf(request).importedBy);
}

Fault serverFault(const std::string& text) {
  return {FaultCode::server, text};
}

/// What the client is told of a store that fails.
Fault storeFault(const StoreError& error) {
  if (dynamic_cast<const StoreUncertain*>(&error) != nullptr)
    return serverFault("It is not known whether the file was imported: the store " + std::string(error.what()) +
                       ". Send it again; lines that are stored are then reported as such.");
  if (dynamic_cast<const StoreUnreachable*>(&error) != nullptr)
    return serverFault("Nothing was imported: the store " + std::string(error.what()) + '.');
  if (dynamic_cast<const StoreConflict*>(&error) != nullptr)
    return serverFault("Nothing was imported: other imports were changing the same records. Send the file again.");
  return serverFault("Nothing was imported: the store failed (" + std::string(error.what()) + ").");
}

std::vector<std::string> keysToAskFor(const std::vector<Verdict>& verdicts) {
  std::vector<std::string> keys;
  for (const Verdict& verdict : verdicts)
    if (!verdict.hasErrors())
      keys.push_back(verdict.key);
  return keys;
}

/// In the order of their keys, as the store wants them.
std::vector<StoreRow> rowsOf(const std::vector<Verdict>& verdicts) {
  std::vector<StoreRow> rows;
  rows.reserve(verdicts.size());
  for (const Verdict& verdict : verdicts)
    rows.push_back({verdict.key, jsonArray(verdict.fields)});
  std::sort(rows.begin(), rows.end(), [](const StoreRow& a, const StoreRow& b) { return a.key < b.key; });
  return rows;
}

std::size_t sizeOf(const std::vector<std::string>& texts) {
  std::size_t size = 0;
  for (const std::string& text : texts)
    size += text.size();
  return size;
}

} // namespace

ImportService::ImportService(Formats formats, Users users, Store& store, Log log, std::size_t greatestVerdicts)
    : m_formats(std::move(formats)), m_users(std::move(users)), m_store(store), m_log(std::move(log)),
      m_greatestVerdicts(greatestVerdicts) {}

Answer ImportService::answer(const Endpoint& endpoint, std::string body) {
  try {
    const ImportRequest request = readRequest(std::move(body));
    requireAdmissible(request, endpoint, m_users);
    const ImportResult result = import(request);
    log(endpoint, describe(request) + ": " + result.reply);
    return {kOk, writeAnswer(request, result)};
  } catch (const Fault& fault) {
    return fail(endpoint, fault);
  } catch (const StoreError& error) {
    return fail(endpoint, storeFault(error));
  } catch (const std::exception& error) {
    return fail(endpoint, serverFault("Nothing was imported: the service failed (" + std::string(error.what()) + ")."));
  }
}

Answer ImportService::fail(const Endpoint& endpoint, const Fault& fault) const {
  log(endpoint, std::string("refused: ") + fault.what());
  return {kFault, writeFault(fault)};
}

void ImportService::log(const Endpoint& endpoint, const std::string& text) const {
  m_log(std::string(endpoint.path) + ": " + printable(text));
}

ImportResult ImportService::import(const ImportRequest& request) {
  Judge judge(formatOf(request), {request.delimiter, request.allowTruncation});
  const std::vector<Verdict> verdicts = judgeAll(request, judge);
  return attempt<StoreConflict>([&](int number) {
    const auto company = number > kSharedAttempts ? Store::Company::alone : Store::Company::shared;
    return store(request, judge, verdicts, company);
  });
}

std::vector<Verdict> ImportService::judgeAll(const ImportRequest& request, Judge& judge) const {
  std::vector<Verdict> verdicts;
  verdicts.reserve(request.lines.size());
  std::size_t size = 0;
  for (const std::string& line : request.lines) {
    verdicts.push_back(judge.judge(line));
    size += sizeOf(verdicts.back().errors) + sizeOf(verdicts.back().warnings);
    if (size > m_greatestVerdicts)
      throw ClientFault("The file has more errors and warnings than can be reported, and nothing was imported.");
  }
  return verdicts;
}

ImportResult ImportService::store(const ImportRequest& request, const Judge& judge, std::vector<Verdict> verdicts,
                                  Store::Company company) {
  Store::Import import = m_store.begin(originOf(request), company);
  const std::unordered_set<std::string> stored = import.storedAmong(keysToAskFor(verdicts));
  for (Verdict& verdict : verdicts)
    if (!verdict.hasErrors() && stored.contains(verdict.key))
      judge.warnOfStoredRow(verdict);
  ImportResult result = decide(std::move(verdicts), request.allowWarnings);
  if (!result.isAccepted)
    return result;
  import.put(rowsOf(result.verdicts));
  import.commit();
  return result;
}

const Format& ImportService::formatOf(const ImportRequest& request) const {
  const auto found = m_formats.find(request.formatKey());
  if (found == m_formats.end())
    throw ClientFault("There is no format for the data type " + inQuotes(request.dataType) + " and the data origin " +
                      inQuotes(request.dataOrigin) + ".");
  return found->second;
}

Answer ImportService::health() {
  try {
    const nlohmann::json rows(m_store.rowCounts());
    return {kOk, nlohmann::json{{"status", "ok"}, {"rows", rows}}.dump() + '\n'};
  } catch (const StoreError& error) {
    return {kUnavailable, nlohmann::json{{"status", "failed"}, {"error", error.what()}}.dump() + '\n'};
  }
}

} // namespace imex::import_service
