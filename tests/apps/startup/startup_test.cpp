#include "startup/startup.h"

#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace imex::test {
namespace {

/// Closes a standard stream of the test and gives it back at the end.
class ClosedStream {
 public:
  explicit ClosedStream(int descriptor)
      : m_descriptor(descriptor), m_copy(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    ::close(descriptor);
  }
  ~ClosedStream() {
    ::dup2(m_copy, m_descriptor);
    ::close(m_copy);
  }
  ClosedStream(const ClosedStream&) = delete;
  ClosedStream& operator=(const ClosedStream&) = delete;

 private:
  int m_descriptor;
  int m_copy;
};

/// What the next file that is opened gets as its number.
int nextDescriptor() {
  const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(descriptor);
  return descriptor;
}

TEST(Startup, closedStreams_areNotGivenToFiles) {
  int next = 0;
  std::array<ssize_t, 2> written = {};
  {
    const ClosedStream in(STDIN_FILENO);
    const ClosedStream out(STDOUT_FILENO);
    const ClosedStream error(STDERR_FILENO);
    keepStandardStreams();
    next = nextDescriptor();
    written = {::write(STDOUT_FILENO, "x", 1), ::write(STDERR_FILENO, "x", 1)};
  }
  EXPECT_GT(next, STDERR_FILENO);
  EXPECT_EQ((std::array<ssize_t, 2>{-1, -1}), written) << "what goes nowhere is an error";
}

TEST(Startup, openStreams_stayAsTheyAre) {
  const TemporaryFolder folder;
  const std::string file = folder / "out.txt";
  {
    const ClosedStream out(STDOUT_FILENO);
    ASSERT_EQ(STDOUT_FILENO, ::open(file.c_str(), O_WRONLY | O_CREAT, 0600));
    keepStandardStreams();
    EXPECT_EQ(1, ::write(STDOUT_FILENO, "x", 1));
  }
  EXPECT_EQ("x", folder.read("out.txt"));
}

/// A process whose current directory another one has removed.
class GoneDirectory : public testing::Test {
 protected:
  GoneDirectory() {
    std::filesystem::create_directory(m_folder / "gone");
    std::filesystem::current_path(m_folder / "gone");
    std::filesystem::remove(m_folder / "gone");
  }
  ~GoneDirectory() override { std::filesystem::current_path(m_before); }

 private:
  std::filesystem::path m_before = std::filesystem::current_path();
  TemporaryFolder m_folder;
};

TEST_F(GoneDirectory, relativePath_isError76ThatNamesIt) {
  const auto error = raised([] { absolutePath("a/b.txt"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(76, error->number());
  EXPECT_EQ("a/b.txt: the current directory cannot be found: No such file or directory", error->description());
}

TEST_F(GoneDirectory, otherPaths_needNone) {
  EXPECT_EQ("/a/b.txt", absolutePath("/a/b.txt"));
  EXPECT_EQ("", absolutePath(""));
}

TEST(Startup, missingValue_isSaidInPlainWords) {
  EXPECT_EQ("--config needs a value", plainWords("--config: 1 required FILE missing"));
  EXPECT_EQ("--port needs a value", plainWords("--port: 1 required INT:INT in [0 - 65535] missing"));
}

TEST(Startup, otherWords_stay) {
  for (const char* words : {"A subcommand is required", "--type is required", "--x: 1 required once"})
    EXPECT_EQ(words, plainWords(words));
}

} // namespace
} // namespace imex::test
