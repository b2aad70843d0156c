#pragma once

#include "import_service/Endpoint.h"
#include "import_service/Fault.h"
#include "import_service/Formats.h"
#include "import_service/ImportRequest.h"
#include "import_service/ImportResult.h"
#include "import_service/Store.h"

#include <functional>
#include <string>
#include <string_view>

namespace imex::import_service {

/// What goes back to the caller: a status of HTTP and a body.
struct Answer {
  int status = 0;
  std::string body;
};

/// Carries out requests: reads one, checks that it belongs where it was sent, judges its lines, and stores all of them
/// or none. It knows nothing of sockets. Calls may come from any thread.
class ImportService {
 public:
  /// Takes one line about each request, from any thread.
  using Log = std::function<void(const std::string& line)>;

  /// The store must outlive the service.
  ImportService(Formats formats, Users users, Store& store, Log log);

  /// Answers a request that was sent to this endpoint: 200 with the verdicts, whether the file was accepted or not; 500
  /// with a SOAP fault for a request that is wrong (Client) and for a failure of the service (Server), and then
  /// nothing is stored.
  Answer answer(const Endpoint& endpoint, std::string body);

  /// 200 with {"status": "ok", "rows": {"CUSTOMERAGENT": 12}} in JSON, the number of rows of each format, or 503 with
  /// {"status": "failed", "error": …} when the store does not answer.
  Answer health();

 private:
  ImportResult import(const ImportRequest& request);
  ImportResult judge(const ImportRequest& request, const Format& format, Store::Import& import) const;
  const Format& formatOf(const ImportRequest& request) const;
  Answer fail(const Endpoint& endpoint, const Fault& fault) const;

  Formats m_formats;
  Users m_users;
  Store& m_store;
  Log m_log;
};

} // namespace imex::import_service
