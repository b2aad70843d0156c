#include "apps/import_service/requests.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <vector>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;

const std::string kShare = IMEX_SOURCE_DIR "/share";

/// The program in a process of its own, its standard output and standard error in pipes.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments);
  ~Program() { stop(SIGKILL); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The next line of standard output, read as soon as it is there; empty at the end.
  std::string line();

  /// Waits for the end and returns the exit code; -1 where the program was killed.
  int wait();

  void stop(int signal);

  /// All of standard error, after wait().
  std::string errors() const;

 private:
  [[noreturn]] void run(std::vector<std::string>& arguments, int output, int errorOutput);

  pid_t m_process = -1;
  std::array<int, 2> m_output{};
  std::array<int, 2> m_errors{};
};

Program::Program(std::vector<std::string> arguments) {
  EXPECT_EQ(pipe(m_output.data()), 0);
  EXPECT_EQ(pipe(m_errors.data()), 0);
  m_process = fork();
  EXPECT_GE(m_process, 0);
  if (m_process == 0)
    run(arguments, m_output[1], m_errors[1]);
  close(m_output[1]);
  close(m_errors[1]);
}

void Program::run(std::vector<std::string>& arguments, int output, int errorOutput) {
  std::string name = IMPORT_SERVICE_PROGRAM;
  std::vector<char*> argv{name.data()};
  for (std::string& argument : arguments)
    argv.push_back(argument.data());
  argv.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  dup2(errorOutput, STDERR_FILENO);
  execv(name.c_str(), argv.data());
  _exit(127);
}

std::string Program::line() {
  std::string text;
  for (char c = 0; read(m_output[0], &c, 1) == 1 && c != '\n';)
    text += c;
  return text;
}

int Program::wait() {
  int status = 0;
  EXPECT_EQ(waitpid(m_process, &status, 0), m_process);
  m_process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Program::stop(int signal) {
  if (m_process > 0)
    kill(m_process, signal);
  if (m_process > 0 && signal == SIGKILL)
    wait();
}

std::string Program::errors() const {
  std::string text;
  for (char c = 0; read(m_errors[0], &c, 1) == 1;)
    text += c;
  return text;
}

/// The exit code and the standard error of a start that fails.
std::pair<int, std::string> failure(std::vector<std::string> arguments) {
  Program program(std::move(arguments));
  const int code = program.wait();
  return {code, program.errors()};
}

std::string behind(const std::string& text, const std::string& start) {
  EXPECT_EQ(text.substr(0, start.size()), start);
  return text.substr(std::min(start.size(), text.size()));
}

TEST(ImportServiceProgram, aStart_isAnnouncedAndASignalEndsIt) {
  const TemporaryFolder folder;
  for (const int signal : {SIGTERM, SIGINT}) {
    const std::string store = "sqlite://" + (folder / "rows.db");
    Program program({"--app-dir", kShare, "--store", store, "--user", "ann", "--user", "bob"});
    const std::string url = behind(program.line(), "import-service: listening on ");
    EXPECT_EQ(program.line(), "import-service: secured address " + url + "/secured (users: ann, bob)");
    EXPECT_EQ(program.line(), "import-service: unsecured address " + url + "/unsecured");
    EXPECT_EQ(program.line(), "import-service: store " + store);
    const httplib::Result health = httplib::Client(url).Get("/health");
    ASSERT_TRUE(health);
    EXPECT_EQ(health->status, 200);
    program.stop(signal);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
  }
}

TEST(ImportServiceProgram, eachRequest_isReportedOnStandardError) {
  Program program({"--app-dir", kShare, "--store", "sqlite://:memory:"});
  const std::string url = behind(program.line(), "import-service: listening on ");
  RequestParts parts;
  parts.lines = {"C1"};
  ASSERT_TRUE(httplib::Client(url).Post("/secured", requestXml(parts), "text/xml"));
  program.stop(SIGTERM);
  EXPECT_EQ(program.wait(), 0);
  EXPECT_EQ(program.errors(), "import-service: /secured: importCustomersInstant CUSTOMERAGENT, 1 line from \"agent1\": "
                              "Nothing was imported: 1 of 1 line has errors.\n");
}

TEST(ImportServiceProgram, helpAndVersion_goToStandardOutput) {
  Program help({"--help"});
  EXPECT_EQ(help.line(),
            "Takes import files over SOAP, judges their lines and stores them. For development and tests.");
  EXPECT_EQ(help.wait(), 0);
  Program version({"--version"});
  EXPECT_EQ(version.line().find("import-service "), 0U);
  EXPECT_EQ(version.wait(), 0);
}

TEST(ImportServiceProgram, aStartThatFails_hasItsExitCodeAndItsReason) {
  const TemporaryFolder folder;
  using Failure = std::pair<int, std::string>;
  EXPECT_EQ(failure({"--port", "x"}).first, 64);
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", "rows.db"}),
            Failure(64, "import-service: The store \"rows.db\" is of no database system that this program knows; give "
                        "sqlite://PATH or sqlite://:memory:.\n"));
  EXPECT_EQ(failure({"--app-dir", folder.path().string()}),
            Failure(66, "import-service: " + (folder / "docs/columns.json") +
                            ": Path not found (the application directory is the folder that holds docs)\n"));
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", "sqlite://:memory:", "--host", "192.0.2.1", "--port", "80"}),
            Failure(69, "import-service: Cannot listen at http://192.0.2.1:80: the address is in use or not of this "
                        "machine.\n"));
  const std::string store = "sqlite://" + (folder / "missing/rows.db");
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", store}),
            Failure(74, "import-service: The store " + store +
                            " cannot be opened: Cannot establish connection to the database. unable to open database "
                            "file.\n"));
}

} // namespace imex::import_service::test
