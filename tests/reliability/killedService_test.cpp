#include "apps/imex/ProgramTest.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <regex>
#include <stdexcept>
#include <thread>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

namespace imex::test {
namespace {

using testing::HasSubstr;

sockaddr_in localAddress(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// Hands the bytes of one connection on between a client and a service until so many bytes of the answer have come by.
/// Then it calls back, and ends the connection once the service's end of it is gone: what the system still holds of the
/// answer does not arrive.
class Relay {
 public:
  Relay(int servicePort, std::size_t bytes, std::function<void()> reached)
      : m_servicePort(servicePort), m_bytes(bytes), m_reached(std::move(reached)),
        m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = localAddress(0);
    socklen_t size = sizeof address;
    if (::bind(m_listener.number(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(m_listener.number(), 1) != 0 ||
        ::getsockname(m_listener.number(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
      throw std::runtime_error("no relay");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
  }
  ~Relay() {
    if (m_thread.joinable())
      waitForEnd();
  }
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

  std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/secured"; }

  /// Waits until the connection has ended, and gives how many bytes of the answer were handed on.
  std::size_t answered() {
    waitForEnd();
    return m_answered;
  }

 private:
  static constexpr std::size_t kBuffer = 4096;

  void waitForEnd() {
    ::shutdown(m_listener.number(), SHUT_RDWR); // where nobody ever connected
    m_thread.join();
  }

  Descriptor connectToService() const {
    Descriptor service(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = localAddress(m_servicePort);
    if (::connect(service.number(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
      throw std::runtime_error("no service");
    return service;
  }

  void run() {
    const Descriptor client(::accept(m_listener.number(), nullptr, nullptr));
    if (client.number() < 0)
      return;
    const Descriptor service = connectToService();
    while (handOn(client.number(), service.number())) {
    }
  }

  /// Waits for either side and hands on what it sent. False where one of them is gone.
  bool handOn(int client, int service) {
    std::array<pollfd, 2> sides = {pollfd{client, POLLIN, 0}, pollfd{service, POLLIN, 0}};
    if (::poll(sides.data(), sides.size(), -1) < 0)
      return false;
    if (sides[0].revents != 0 && copy(client, service) == 0)
      return false;
    if (sides[1].revents == 0)
      return true;
    if (m_answered >= m_bytes)
      return isOpen(service);
    const std::size_t count = copy(service, client);
    m_answered += count;
    if (m_answered >= m_bytes)
      m_reached();
    return count > 0;
  }

  /// Takes what is left on the way. False where the sender's end is gone.
  static bool isOpen(int from) {
    std::array<char, kBuffer> buffer = {};
    return ::recv(from, buffer.data(), buffer.size(), 0) > 0;
  }

  static std::size_t copy(int from, int to) {
    std::array<char, kBuffer> buffer = {};
    const ssize_t count = ::recv(from, buffer.data(), buffer.size(), 0);
    if (count <= 0)
      return 0;
    const auto size = static_cast<std::size_t>(count);
    return ::send(to, buffer.data(), size, MSG_NOSIGNAL) == count ? size : 0;
  }

  int m_servicePort;
  std::size_t m_bytes;
  std::function<void()> m_reached;
  Descriptor m_listener;
  int m_port = 0;
  std::size_t m_answered = 0;
  std::thread m_thread;
};

/// The service ends, at once and without a chance to tidy up, while `imex` receives its answer.
class KilledService : public RoadTest {
 protected:
  static constexpr int kLines = 2000;

  void SetUp() override {
    for (int i = 1; i <= kLines; ++i)
      m_bytes += customer("C" + std::to_string(i), "Firm " + std::string(30, 'n')) + "\r\n";
    m_file = folder.write("customers.txt", m_bytes);
    start();
  }

  void start() {
    m_service = std::make_unique<BackgroundProcess>(
        IMPORT_SERVICE_PROGRAM, std::vector<std::string>{"--app-dir", IMEX_SOURCE_DIR "/share", "--store",
                                                         "sqlite://" + (folder / "store.db"), "--user", "agent1"});
    const std::string line = m_service->readLine();
    const std::string address = line.substr(line.find("http://"));
    m_port = std::stoi(address.substr(address.rfind(':') + 1));
    secured = address + "/secured";
  }

  /// What the user reads, with "N" in the place of a number that depends on how fast the service was.
  std::string words() const {
    const std::string cut =
        "The answer from " + secured + " was cut off: transfer closed with N bytes remaining to read";
    return GetParam() == "send" ? "imex: " + cut + '\n'
                                : "imex: Exception while attempting to import CUSTOMER. \n" + cut + ".\n";
  }

  /// Imports through a relay that kills the service behind so many bytes of its answer.
  void killAfter(std::size_t bytes) {
    constexpr int kKilled = 128 + SIGKILL;
    int status = 0;
    Relay relay(m_port, bytes, [&] { status = m_service->kill(); });
    secured = relay.address();
    const Ended ended = importOnRoad(m_file);
    const std::size_t answered = relay.answered();
    std::cout << "bytes of the answer that arrived: " << answered << '\n';
    EXPECT_GE(answered, bytes);
    EXPECT_EQ(kKilled, status);
    EXPECT_EQ(3, ended.status) << ended.err;
    EXPECT_EQ(words(), std::regex_replace(ended.err, std::regex("with [1-9][0-9]* bytes"), "with N bytes"));
    EXPECT_EQ("Outcome: failed\n", ended.out);
    EXPECT_EQ(m_bytes, folder.read("customers.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder / "validationresults.html"));
  }

  /// The rows may be there already: the service had stored them when it began to answer.
  void expectNextImportIsRight() {
    start();
    const Ended ended = importOnRoad(m_file, {"--allow-warnings"});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("Line " + std::to_string(kLines) + ": accepted"));
    EXPECT_THAT(ended.out, HasSubstr("Outcome: accepted\n"));
    EXPECT_EQ(m_bytes, folder.read("customers.txt"));
  }

 private:
  std::string m_bytes;
  std::string m_file;
  int m_port = 0;
  std::unique_ptr<BackgroundProcess> m_service;
};

TEST_P(KilledService, behindTheFirstBytesOfItsAnswer_isAFailure_andTheNextImportIsRight) {
  killAfter(1);
  expectNextImportIsRight();
}

TEST_P(KilledService, inMidAnswer_isAFailure_andTheNextImportIsRight) {
  killAfter(100'000);
  expectNextImportIsRight();
}

INSTANTIATE_TEST_SUITE_P(, KilledService, testing::Values("send", "instant"),
                         [](const auto& road) { return road.param; });

} // namespace
} // namespace imex::test
