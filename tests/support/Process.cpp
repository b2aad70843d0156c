#include "support/Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/TemporaryFolder.h"

extern char** environ; // NOLINT: POSIX gives it this name

namespace imex::test {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts)
    result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&m_actions); }
  ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void open(int fd, const std::string& path, int flags) {
    posix_spawn_file_actions_addopen(&m_actions, fd, path.c_str(), flags, 0600);
  }
  void redirect(int from, int to) { posix_spawn_file_actions_adddup2(&m_actions, from, to); }
  const posix_spawn_file_actions_t* get() const { return &m_actions; }

 private:
  posix_spawn_file_actions_t m_actions = {};
};

pid_t spawn(const std::string& program, std::vector<std::string> arguments, std::vector<std::string> environment,
            const FileActions& actions) {
  arguments.insert(arguments.begin(), program);
  // The additions stand first, because the first setting of a variable counts.
  for (char** variable = environ; *variable != nullptr; ++variable)
    environment.emplace_back(*variable);
  pid_t pid = -1;
  const int error = posix_spawn(&pid, program.c_str(), actions.get(), nullptr, pointers(arguments).data(),
                                pointers(environment).data());
  if (error != 0)
    throw std::runtime_error("cannot start " + program);
  return pid;
}

int waitFor(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

Ended run(const std::string& program, const std::vector<std::string>& arguments,
          const std::vector<std::string>& environment) {
  const TemporaryFolder folder;
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, folder / "out", O_WRONLY | O_CREAT);
  actions.open(STDERR_FILENO, folder / "err", O_WRONLY | O_CREAT);
  const int status = waitFor(spawn(program, arguments, environment, actions));
  return {status, folder.read("out"), folder.read("err")};
}

BackgroundProcess::BackgroundProcess(const std::string& program, const std::vector<std::string>& arguments) {
  std::array<int, 2> pipe = {};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.redirect(pipe[1], STDOUT_FILENO);
  m_out = pipe[0];
  m_pid = spawn(program, arguments, {}, actions);
  ::close(pipe[1]);
}

BackgroundProcess::~BackgroundProcess() {
  end(SIGTERM);
  ::close(m_out);
}

int BackgroundProcess::kill() {
  return end(SIGKILL);
}

int BackgroundProcess::end(int signal) {
  const pid_t pid = std::exchange(m_pid, -1);
  if (pid < 0)
    return -1;
  ::kill(pid, signal);
  return waitFor(pid);
}

std::string BackgroundProcess::readLine() {
  std::string line;
  char c = '\0';
  while (::read(m_out, &c, 1) == 1 && c != '\n')
    line += c;
  return line;
}

} // namespace imex::test
