#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace imex::test {

/// The bytes of one connection. A class of its own because a test may put TLS around the socket.
class Stream {
 public:
  virtual ~Stream() = default;

  /// Reads at most `size` bytes and returns how many; 0 where the client is gone.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;

  /// Writes all bytes. False where the client is gone.
  virtual bool write(std::string_view bytes) = 0;
};

/// Makes the stream of a connected socket, which stays the caller's. Null where no stream comes about.
using MakeStream = std::function<std::unique_ptr<Stream>(int socket)>;

/// The stream that is the socket itself.
std::unique_ptr<Stream> plainStream(int socket);

/// A file descriptor, closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : m_number(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
  }
  int number() const { return m_number; }

 private:
  int m_number;
};

/// A port of this machine that refuses connections, kept from other programs meanwhile.
class ClosedPort {
 public:
  ClosedPort();
  int number() const { return m_number; }

 private:
  Descriptor m_socket;
  int m_number;
};

/// An HTTP/1.1 server on 127.0.0.1 that answers as it is told, well or badly, and records what it received. It takes
/// one request a connection and one connection after the other, on a thread of its own. Used as a proxy it answers by
/// itself, so that a test sees which request reached it.
class FaultyServer {
 public:
  using Header = std::pair<std::string, std::string>;

  struct Request {
    std::string line; ///< "POST /secured HTTP/1.1"
    std::vector<Header> headers;
    std::string body;

    /// The value of a header, its name in any case; nothing where it is missing.
    std::optional<std::string> header(std::string_view name) const;
  };

  /// An answer, and the faults in it. Positions are counted in bytes from the start of the status line.
  struct Answer {
    enum class Framing { length, chunked, none };

    int status = 200;
    std::string body;
    std::string contentType = "text/xml; charset=utf-8"; ///< empty for no such header
    std::vector<Header> headers;                         ///< more of them
    Framing framing = Framing::length;                   ///< how the end of the body is told
    std::optional<std::size_t> announcedLength;          ///< a Content-Length that is not the body's
    std::optional<std::size_t> cutAfter;                 ///< the connection ends there
    std::optional<std::size_t> holdAfter;                ///< the rest waits for release() or for the client to go
    bool isReset = false;                                ///< the connection ends with a reset
    bool isDripped = false;                              ///< every byte is written by itself
    bool isEndless = false;                              ///< what follows is the body again and again
    std::optional<std::string> raw;                      ///< all of the answer's bytes, in place of the above

    /// The bytes of the whole answer, faults of the connection left out.
    std::string bytes() const;
  };

  static Answer ok(std::string body);
  static Answer soapFault(std::string_view text);
  static Answer page(int status, std::string html);

  /// Answers with success and an empty body until it is told otherwise.
  FaultyServer();
  explicit FaultyServer(Answer answer, MakeStream makeStream = plainStream);
  /// Ends whatever is under way.
  ~FaultyServer();
  FaultyServer(const FaultyServer&) = delete;
  FaultyServer& operator=(const FaultyServer&) = delete;

  /// Sets the answers to the next requests, in order; the last one serves all that follow. There is at least one.
  void answerWith(std::vector<Answer> answers);

  /// Lets an answer that is held go on; where none is held, the next one that would be.
  void release();

  int port() const { return m_port; }

  /// "http://127.0.0.1:PORT" and the path.
  std::string address(std::string_view path = "/", std::string_view scheme = "http") const;

  /// The requests that arrived whole. One is recorded before its answer starts.
  std::vector<Request> requests() const;

  /// Waits until `count` requests have arrived, and returns all there are.
  std::vector<Request> waitForRequests(std::size_t count) const;

 private:
  /// Two ends of a pipe. What is written to one can be waited for at the other.
  struct Signal {
    Signal();
    void raise() const;
    void take() const;

    Descriptor in;
    Descriptor out;
  };

  void listen();
  void run();
  void serve(int socket);
  void reply(Stream& stream, int socket);
  bool receive(Stream& stream, Request& request) const;
  bool send(Stream& stream, std::string_view bytes, const Answer& answer) const;
  bool waitForRelease(int socket) const;
  Answer takeAnswer();

  MakeStream m_makeStream;
  Signal m_stop;
  Signal m_release;
  Descriptor m_listener;
  int m_port = 0;

  mutable std::mutex m_mutex; ///< guards what follows
  mutable std::condition_variable m_arrived;
  std::vector<Answer> m_answers;
  std::vector<Request> m_requests;
  int m_connection = -1; ///< the socket being served
  bool m_isStopping = false;

  std::thread m_thread;
};

} // namespace imex::test
