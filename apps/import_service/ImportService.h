#pragma once

#include "import_service/Endpoint.h"
#include "import_service/Fault.h"
#include "import_service/Formats.h"
#include "import_service/ImportRequest.h"
#include "import_service/ImportResult.h"
#include "import_service/Judge.h"
#include "import_service/Store.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace imex::import_service {

/// What goes back to the caller: a status of HTTP and a body.
struct Answer {
  int status = 0;
  std::string body;
};

/// The texts of the verdicts on one file, together, may have this many bytes: what a client takes as an answer.
inline constexpr std::size_t kGreatestVerdicts = 256UL * 1024 * 1024;

/// Carries out requests: reads one, checks that it belongs where it was sent, judges its lines, and stores all of them
/// or none. Where another import of the same records is at work, one of the two is done anew after the other. It knows
/// nothing of sockets. Calls may come from any thread.
class ImportService {
 public:
  /// Takes one line about each request, from any thread. What the line has of the request has its control characters
  /// spelled out.
  using Log = std::function<void(const std::string& line)>;

  /// The store must outlive the service.
  ImportService(Formats formats, Users users, Store& store, Log log, std::size_t greatestVerdicts = kGreatestVerdicts);

  /// Answers a request that was sent to this endpoint: 200 with the verdicts, whether the file was accepted or not; 500
  /// with a SOAP fault for a request that is wrong (Client) and for a failure of the service (Server), and then
  /// nothing is stored. The one exception is a connection to the store that is lost while a file is committed; the
  /// fault says that its outcome is not known.
  Answer answer(const Endpoint& endpoint, std::string body);

  /// 200 with {"status": "ok", "rows": {"CUSTOMERAGENT": 12}} in JSON, the number of rows of each format, or 503 with
  /// {"status": "failed", "error": …} when the store does not answer.
  Answer health();

 private:
  ImportResult import(const ImportRequest& request);
  ImportResult store(const ImportRequest& request, const Judge& judge, std::vector<Verdict> verdicts,
                     Store::Company company);
  const Format& formatOf(const ImportRequest& request) const;
  std::vector<Verdict> judgeAll(const ImportRequest& request, Judge& judge) const;
  Answer fail(const Endpoint& endpoint, const Fault& fault) const;
  void log(const Endpoint& endpoint, const std::string& text) const;

  Formats m_formats;
  Users m_users;
  Store& m_store;
  Log m_log;
  std::size_t m_greatestVerdicts;
};

} // namespace imex::import_service
