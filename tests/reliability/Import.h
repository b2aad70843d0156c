#pragma once

#include "allocations.h"
#include "request/ImExRequest.h"
#include "support/FakeTransport.h"
#include "support/TestHost.h"
#include "support/texts.h"

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// How many descriptors the process has open.
std::size_t openDescriptors();

/// Waits until no more than `count` are open: a server of the test closes its end of a connection a moment later than
/// the client. False where they stay open, and where there are fewer.
bool areDescriptorsBackTo(std::size_t count);

/// What a user does with a file.
struct Way {
  enum class Call { send, instant, projectItems };

  std::string name;
  Call call;
  std::string dataType;
  std::string file;  ///< the bytes of the import file
  int customers = 0; ///< that the service gives a verdict on
  std::size_t nameSize = 0;
};
std::ostream& operator<<(std::ostream& stream, const Way& way);

/// The ways through the component: customers on either road, line items that are good and some that are not, and a
/// file that the user wants to correct in the editor. The files and their answers take more than one read and write.
const std::vector<Way>& ways();
const Way& wayNamed(std::string_view name);

/// The same ways with files of three short lines.
const std::vector<Way>& shortWays();

/// One request among fakes, with a catalogue of its own, that goes one way as often as a test wants.
///
/// What comes of an import is a list of texts, in order: events, boxes and an error that reached the caller, then what
/// was sent, what was returned, and the results page.
class Import {
 public:
  explicit Import(const Way& way);
  ~Import();
  Import(const Import&) = delete;
  Import& operator=(const Import&) = delete;

  Texts run();

  /// The same without a trace log that takes traces.
  void stopTracing();

  std::string path() const { return host.folder / "import.txt"; }
  std::string pagePath() const { return host.folder / "out/validationresults.html"; }

  /// The bytes of the page that the last run wrote; empty where it left the one that was there.
  std::string page() const;

  /// Forgets the catalogue and loads it again, as a new process does, and gives the boxes that this showed.
  Texts restart();

  /// Whether the user's file is as it was and no file is open.
  bool isFileClosed() const;

  /// The same, and no descriptor is open that was not before the first import.
  bool isTidy() const { return isFileClosed() && openDescriptors() == m_descriptors; }

  TestHost host;
  FakeTransportFactory transports;
  ImExRequest request;
  std::string oldPage = "of the import before"; ///< that is there before each run
  Texts errors; ///< that were recorded during the last run, "number source: description"

 private:
  class ErrorLog;
  class Boxes;

  void connectEvents();
  void forget();
  void keep(const std::string& text);
  void call();
  void collect();

  const Way& m_way;
  std::shared_ptr<ErrorLog> m_trace;
  std::unique_ptr<Boxes> m_boxes;
  Texts m_result;
  std::size_t m_descriptors = 0;
};

/// "box 64 Corvana Maintenance: Unable to open the file selected. Please try again."
std::string unreadableBox(int style);
inline constexpr const char* kUnreadableEvent =
    "SerializationFailed Unable to open the file selected. Please try again.";
inline constexpr const char* kPageFailed =
    "SerializationFailed The server responded, but the results could not be displayed.";

/// The texts of `result` that tell what was done with the page left out.
Texts withoutPage(Texts result);

} // namespace imex::test
