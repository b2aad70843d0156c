#include "platform/trace/FileTraceLog.h"

#include "runtime/text.h"

#include <spdlog/async.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace imex::platform {

namespace {

constexpr std::size_t kGreatestFileSize = 64UL * 1024 * 1024;
constexpr std::size_t kOldFiles = 3;
constexpr std::size_t kQueueSize = 8192; // a full queue makes the caller wait, so that no line is lost
constexpr std::size_t kThreads = 1;      // one thread keeps the order of the calls

/// Makes a missing file for its owner alone, before the library opens it: a trace has names of files, the keys that are
/// pressed in the editor, and an answer's beginning where that was no SOAP message. Where that fails, the library says
/// why the file cannot be opened.
void makeForOwner(const spdlog::filename_t& path) {
  const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file >= 0)
    ::close(file);
}

spdlog::file_event_handlers fileHandlers() {
  spdlog::file_event_handlers handlers;
  handlers.before_open = makeForOwner;
  return handlers;
}

std::string onOneLine(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n')
      result += "\\n";
    else if (c == '\r')
      result += "\\r";
    else if (c == '\t')
      result += "\\t";
    else if (byte < 0x20 || byte == 0x7F)
      result += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    else
      result += c;
  }
  return result;
}

std::string textOf(const RuntimeError& error, std::int32_t line) {
  std::string text = "Error " + std::to_string(error.number()) + " (" + error.source() + "): " + error.description();
  if (line != 0)
    text += " at line " + std::to_string(line);
  return text;
}

/// The library would make missing folders, and wait for somebody at the other end of a pipe.
void requirePlaceOfAFile(const std::filesystem::path& path) {
  std::error_code error;
  if (path.has_parent_path() && !std::filesystem::is_directory(path.parent_path(), error))
    throw spdlog::spdlog_ex("its folder does not exist");
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
    throw spdlog::spdlog_ex("it is no regular file");
}

/// The first failure of the writing, in whichever thread it comes. Those that follow say the same.
class FirstFailure {
 public:
  void take(const std::string& text) {
    const std::lock_guard lock(m_mutex);
    if (m_text.empty())
      m_text = text;
  }

  std::string text() const {
    const std::lock_guard lock(m_mutex);
    return m_text;
  }

 private:
  mutable std::mutex m_mutex;
  std::string m_text;
};

using Sink = spdlog::sinks::rotating_file_sink_mt;

} // namespace

struct FileTraceLog::Writer {
  explicit Writer(const std::string& path)
      : pool(std::make_shared<spdlog::details::thread_pool>(kQueueSize, kThreads)),
        logger(std::make_shared<spdlog::async_logger>(
            "trace", std::make_shared<Sink>(path, kGreatestFileSize, kOldFiles, false, fileHandlers()), pool,
            spdlog::async_overflow_policy::block)) {
    logger->set_error_handler([failure = failure](const std::string& text) { failure->take(text); });
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%e\t%l\t%v");
    logger->set_level(spdlog::level::trace);
    logger->flush_on(spdlog::level::warn); // an error is to be read while the program runs, and after it crashed
  }

  void write(spdlog::level::level_enum level, std::string_view source, std::string_view procedure,
             std::string_view message) {
    logger->log(level, "{}\t{}\t{}", onOneLine(source), onOneLine(procedure), onOneLine(message));
  }

  std::shared_ptr<FirstFailure> failure = std::make_shared<FirstFailure>();
  std::shared_ptr<spdlog::details::thread_pool> pool;
  std::shared_ptr<spdlog::async_logger> logger;
};

FileTraceLog::FileTraceLog(const std::string& path) {
  try {
    requirePlaceOfAFile(path);
    m_writer = std::make_unique<Writer>(path);
  } catch (const spdlog::spdlog_ex& error) {
    throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::deviceIoError), "FileTraceLog",
                       "The trace file " + path + " cannot be opened: " + error.what());
  }
}

FileTraceLog::~FileTraceLog() {
  finish();
}

std::vector<std::string> FileTraceLog::files(const std::string& path) {
  std::vector<std::string> names;
  for (std::size_t number = 0; number <= kOldFiles; ++number)
    names.push_back(Sink::calc_filename(path, number));
  return names;
}

std::string FileTraceLog::finish() {
  if (!m_writer)
    return m_failure;
  const std::shared_ptr<FirstFailure> failure = m_writer->failure;
  m_writer->logger->flush();
  m_writer.reset(); // the pool's thread writes what is queued before it ends
  if (!failure->text().empty())
    m_failure = "The trace file is not complete: " + failure->text();
  return m_failure;
}

void FileTraceLog::LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                            std::int32_t line) {
  if (m_writer)
    m_writer->write(spdlog::level::err, source, procedure, textOf(error, line));
}

void FileTraceLog::Trace(std::string_view source, std::string_view procedure, std::string_view message,
                         std::int32_t /*level*/) {
  if (m_writer)
    m_writer->write(spdlog::level::trace, source, procedure, message);
}

void FileTraceLog::LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                                   std::int32_t line) {
  if (m_writer)
    m_writer->write(spdlog::level::warn, source, procedure, textOf(error, line));
}

} // namespace imex::platform
