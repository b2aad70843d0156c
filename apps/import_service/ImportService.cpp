#include "import_service/ImportService.h"

#include "import_service/AnswerWriter.h"
#include "import_service/RequestReader.h"
#include "import_service/wording.h"

#include <nlohmann/json.hpp>

#include <array>
#include <ctime>
#include <utility>
#include <vector>

namespace imex::import_service {

namespace {

constexpr int kOk = 200;
constexpr int kFault = 500;
constexpr int kUnavailable = 503;

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

Fault serverFault(const std::string& what, const std::exception& error) {
  return {FaultCode::server, "Nothing was imported: the " + what + " failed (" + error.what() + ")."};
}

} // namespace

ImportService::ImportService(Formats formats, Users users, Store& store, Log log)
    : m_formats(std::move(formats)), m_users(std::move(users)), m_store(store), m_log(std::move(log)) {}

Answer ImportService::answer(const Endpoint& endpoint, std::string body) {
  try {
    const ImportRequest request = readRequest(std::move(body));
    requireAdmissible(request, endpoint, m_users);
    const ImportResult result = import(request);
    m_log(std::string(endpoint.path) + ": " + describe(request) + ": " + result.reply);
    return {kOk, writeAnswer(request, result)};
  } catch (const Fault& fault) {
    return fail(endpoint, fault);
  } catch (const StoreError& error) {
    return fail(endpoint, serverFault("store", error));
  } catch (const std::exception& error) {
    return fail(endpoint, serverFault("service", error));
  }
}

Answer ImportService::fail(const Endpoint& endpoint, const Fault& fault) const {
  m_log(std::string(endpoint.path) + ": refused: " + fault.what());
  return {kFault, writeFault(fault)};
}

ImportResult ImportService::import(const ImportRequest& request) {
  const Format& format = formatOf(request);
  Store::Import import = m_store.begin(originOf(request));
  ImportResult result = judge(request, format, import);
  if (!result.isAccepted)
    return result;
  for (const Verdict& verdict : result.verdicts)
    import.put(verdict.key, jsonArray(verdict.fields));
  import.commit();
  return result;
}

ImportResult ImportService::judge(const ImportRequest& request, const Format& format, Store::Import& import) const {
  Judge judge(format, {request.delimiter, request.allowTruncation},
              [&import](const std::string& key) { return import.contains(key); });
  std::vector<Verdict> verdicts;
  verdicts.reserve(request.lines.size());
  for (const std::string& line : request.lines)
    verdicts.push_back(judge.judge(line));
  return decide(std::move(verdicts), request.allowWarnings);
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
