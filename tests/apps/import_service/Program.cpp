#include "apps/import_service/Program.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/wait.h>
#include <unistd.h>

namespace imex::import_service::test {

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

std::pair<int, std::string> failure(std::vector<std::string> arguments) {
  Program program(std::move(arguments));
  const int code = program.wait();
  return {code, program.errors()};
}

std::string behind(const std::string& text, const std::string& start) {
  EXPECT_EQ(text.substr(0, start.size()), start);
  return text.substr(std::min(start.size(), text.size()));
}

} // namespace imex::import_service::test
