#pragma once

#include <string>

namespace imex::import_service::test {

/// A connection of one's own to a port of the loopback address, to send what no client sends.
class Connection {
 public:
  explicit Connection(int port);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// False where the server takes no more.
  bool send(const std::string& bytes) const;

  /// Sends the text byte by byte, each when nothing has come back for a few milliseconds, until something does.
  void dribble(const std::string& text) const;

  /// All that comes back until the server closes the connection.
  std::string rest() const;

 private:
  int m_socket;
};

/// Sends these bytes and returns all that comes back until the server closes the connection.
std::string exchange(int port, const std::string& bytes);

} // namespace imex::import_service::test
