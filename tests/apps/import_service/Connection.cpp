#include "apps/import_service/Connection.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace imex::import_service::test {

Connection::Connection(int port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

Connection::~Connection() {
  close(m_socket);
}

bool Connection::send(const std::string& bytes) const {
  return ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

void Connection::dribble(const std::string& text) const {
  pollfd incoming{m_socket, POLLIN, 0};
  for (const char byte : text)
    if (poll(&incoming, 1, 5) != 0 || !send(std::string(1, byte)))
      return;
}

std::string Connection::rest() const {
  std::string answer;
  std::array<char, 1024> buffer{};
  for (ssize_t size = 1; size > 0; answer.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))))
    size = recv(m_socket, buffer.data(), buffer.size(), 0);
  return answer;
}

std::string exchange(int port, const std::string& bytes) {
  const Connection connection(port);
  EXPECT_TRUE(connection.send(bytes));
  return connection.rest();
}

} // namespace imex::import_service::test
