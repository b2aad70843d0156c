#include "platform/files/DiskFiles.h"
#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace imex::test {
namespace {

namespace fs = std::filesystem;
using platform::nativePath;

/// Sets an environment variable, or unsets it, for the life of the object.
class Environment {
 public:
  Environment(const char* name, const char* value) : m_name(name) {
    if (const char* before = std::getenv(name))
      m_before = before;
    set(value);
  }
  ~Environment() { set(m_before ? m_before->c_str() : nullptr); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void set(const char* value) const {
    if (value != nullptr)
      ::setenv(m_name, value, 1);
    else
      ::unsetenv(m_name);
  }

  const char* m_name;
  std::optional<std::string> m_before;
};

/// Access rights do not bind the superuser, so a test of them runs as somebody else.
class OrdinaryUser {
 public:
  OrdinaryUser() : m_superuser(::geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    m_ordinary = !m_superuser || ::seteuid(kNobody) == 0;
  }
  ~OrdinaryUser() {
    if (m_superuser)
      (void)!::seteuid(0);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  explicit operator bool() const { return m_ordinary; }

 private:
  bool m_superuser;
  bool m_ordinary;
};

/// No file may grow past `bytes` for the life of the object.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit m_before{};
  void (*m_handler)(int);
};

class DiskFiles : public testing::Test {
 protected:
  DiskFiles() : m_currentDirectory(fs::current_path()) {}
  ~DiskFiles() override { fs::current_path(m_currentDirectory); }

  /// The path of a name in the folder, written with backslashes.
  std::string backslashed(std::string_view name) const { return folder.path().string() + "\\" + std::string(name); }

  std::string contents(std::string_view path) {
    const std::unique_ptr<ByteSource> source = files.openForInput(path);
    return readAll(*source);
  }

  static std::string readAll(ByteSource& source) {
    std::string bytes;
    char buffer[7];
    while (const std::size_t count = source.read(buffer, sizeof buffer))
      bytes.append(buffer, count);
    return bytes;
  }

  std::int32_t errorOfInput(std::string_view path) {
    return raisedNumber([&] { files.openForInput(path); });
  }

  std::int32_t errorOfOutput(std::string_view path) {
    return raisedNumber([&] { files.openForOutput(path); });
  }

  TemporaryFolder folder;
  platform::DiskFiles files;

 private:
  fs::path m_currentDirectory;
};

using NativePath = DiskFiles;

} // namespace

// --- Paths
// ------------------------------------------------------------------------------------------------------------

TEST_F(NativePath, backslashes_areSeparators) {
  folder.write("app/docs/format.dat", "");
  EXPECT_EQ(nativePath(backslashed("app\\docs\\format.dat")), folder / "app/docs/format.dat");
  EXPECT_EQ(nativePath((folder / "app") + "\\docs/format.dat"), folder / "app/docs/format.dat");
}

TEST_F(NativePath, aPathThatExistsAsWritten_isTakenSo) {
  folder.write("a\\b.txt", "");
  folder.write("a/b.txt", "");
  EXPECT_EQ(nativePath(folder / "a\\b.txt"), folder / "a\\b.txt");
  EXPECT_EQ(nativePath(folder / "a/b.txt"), folder / "a/b.txt");
}

TEST_F(NativePath, whereTheExactNameIsMissing_caseIsIgnored) {
  folder.write("Docs/SPECInvoiceAgent.html", "");
  EXPECT_EQ(nativePath(folder / "docs/specinvoiceagent.HTML"), folder / "Docs/SPECInvoiceAgent.html");
  EXPECT_EQ(nativePath(backslashed("DOCS\\SPECINVOICEAGENT.html")), folder / "Docs/SPECInvoiceAgent.html");
}

TEST_F(NativePath, caseIsIgnoredForEveryLetter) {
  folder.write("\u00C9t\u00E9.txt", "");
  EXPECT_EQ(nativePath(folder / "\u00E9T\u00C9.TXT"), folder / "\u00C9t\u00E9.txt");
}

TEST_F(NativePath, theExactName_isPreferred) {
  folder.write("DATA/a.txt", "");
  folder.write("data/a.txt", "");
  folder.write("data/A.txt", "");
  EXPECT_EQ(nativePath(folder / "data/a.txt"), folder / "data/a.txt");
  EXPECT_EQ(nativePath(backslashed("data\\A.txt")), folder / "data/A.txt");
  EXPECT_EQ(nativePath(backslashed("DATA\\a.txt")), folder / "DATA/a.txt");
}

TEST_F(NativePath, ofSeveralNames_theFirstIsTaken) {
  const std::vector<std::string> names = {"DATA.txt", "DATa.txt", "DAtA.txt", "DaTA.txt",
                                          "Data.txt", "dATA.txt", "dAtA.txt", "data.txt"};
  for (const std::string& name : names)
    folder.write(name, "");
  for (const std::string& name : names) {
    EXPECT_EQ(nativePath(folder / "dAta.TXT"), folder / name);
    fs::remove(folder / name);
  }
}

TEST_F(NativePath, whatIsNotFound_keepsItsName) {
  fs::create_directory(folder / "Docs");
  EXPECT_EQ(nativePath(backslashed("docs\\New.txt")), folder / "Docs/New.txt");
  EXPECT_EQ(nativePath(backslashed("Missing\\docs\\New.txt")), folder / "Missing/docs/New.txt");
}

TEST_F(NativePath, aRelativePath_startsAtTheCurrentDirectory) {
  folder.write("Docs/a.txt", "");
  fs::current_path(folder.path());
  EXPECT_EQ(nativePath("docs\\A.TXT"), "Docs/a.txt");
  EXPECT_EQ(nativePath(".\\docs\\..\\docs\\A.TXT"), "./Docs/../Docs/a.txt");
}

TEST_F(NativePath, aDanglingLink_exists) {
  fs::create_symlink(folder / "nowhere", folder / "Link");
  EXPECT_EQ(nativePath(folder / "link"), folder / "Link");
}

// --- Reading
// ----------------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, aFileIsRead) {
  const std::string bytes("first\r\nsecond\0third", 19);
  EXPECT_EQ(contents(folder.write("a.txt", bytes)), bytes);
  EXPECT_EQ(contents(folder.write("empty.txt", "")), "");
}

TEST_F(DiskFiles, aFileIsReadByAnyWayOfWritingItsPath) {
  folder.write("app/Docs/format.dat", "columns");
  EXPECT_EQ(contents(backslashed("app\\docs\\FORMAT.DAT")), "columns");
}

TEST_F(DiskFiles, aSourceCanBeReadAgainFromItsStart) {
  const std::unique_ptr<ByteSource> source = files.openForInput(folder.write("a.txt", "longer than a buffer"));
  EXPECT_EQ(readAll(*source), "longer than a buffer");
  char byte = 0;
  EXPECT_EQ(source->read(&byte, 1), 0u);
  source->rewind();
  EXPECT_EQ(readAll(*source), "longer than a buffer");
}

TEST_F(DiskFiles, aLinkToAFileIsRead) {
  folder.write("a.txt", "text");
  fs::create_symlink(folder / "a.txt", folder / "link.txt");
  EXPECT_EQ(contents(folder / "link.txt"), "text");
}

TEST_F(DiskFiles, aMissingFile_isError53) {
  EXPECT_EQ(errorOfInput(folder / "missing.txt"), 53);
  EXPECT_EQ(errorOfInput(backslashed("missing.txt")), 53);
  fs::create_symlink(folder / "nowhere", folder / "link.txt");
  EXPECT_EQ(errorOfInput(folder / "link.txt"), 53);
  fs::current_path(folder.path());
  EXPECT_EQ(errorOfInput("missing.txt"), 53);
}

TEST_F(DiskFiles, aMissingFolder_isError76) {
  folder.write("file.txt", "");
  for (const std::string_view name : {"missing/a.txt", "missing\\docs\\a.txt", "file.txt/a.txt"}) {
    EXPECT_EQ(errorOfInput(folder / name), 76) << name;
    EXPECT_EQ(errorOfOutput(folder / name), 76) << name;
  }
  EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST_F(DiskFiles, aFolder_isError75) {
  fs::create_directory(folder / "docs");
  for (const std::string& path : {folder / "docs", (folder / "docs") + "/", backslashed("DOCS"), std::string("/")}) {
    EXPECT_EQ(errorOfInput(path), 75) << path;
    EXPECT_EQ(errorOfOutput(path), 75) << path;
  }
}

TEST_F(DiskFiles, aDevice_isError75) {
  EXPECT_EQ(errorOfInput("/dev/null"), 75);
  EXPECT_EQ(errorOfOutput("/dev/null"), 75);
  EXPECT_EQ(errorOfOutput("/dev/full"), 75);
}

// Opening one in the ordinary way waits for somebody at its other end.
TEST_F(DiskFiles, aPipe_isError75) {
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(errorOfInput(pipe), 75);
  EXPECT_EQ(errorOfOutput(pipe), 75);
}

TEST_F(DiskFiles, aSocket_isError75) {
  const std::string path = folder / "socket";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(socket, 0);
  EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(errorOfInput(path), 75);
  EXPECT_EQ(errorOfOutput(path), 75);
  ::close(socket);
}

TEST_F(DiskFiles, aFileWithoutAccess_isError70) {
  fs::permissions(folder.path(), fs::perms::all);
  const std::string hidden = folder.write("hidden.txt", "text");
  fs::permissions(hidden, fs::perms::none);
  const std::string readOnly = folder.write("readOnly.txt", "text");
  fs::permissions(readOnly, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const std::string closed = folder.write("closed/a.txt", "text");
  fs::permissions(folder / "closed", fs::perms::none);
  {
    const OrdinaryUser user;
    if (!user)
      GTEST_SKIP() << "the superuser cannot be another user here";
    EXPECT_EQ(errorOfInput(hidden), 70);
    EXPECT_EQ(errorOfOutput(hidden), 70);
    EXPECT_EQ(contents(readOnly), "text");
    EXPECT_EQ(errorOfOutput(readOnly), 70);
    EXPECT_EQ(errorOfInput(closed), 70);
    EXPECT_EQ(errorOfOutput(folder / "closed/new.txt"), 70);
  }
  fs::permissions(folder / "closed", fs::perms::owner_all);
  EXPECT_EQ(folder.read("readOnly.txt"), "text");
}

TEST_F(DiskFiles, anErrorDescribesItself) {
  const std::optional<RuntimeError> error = raised([&] { files.openForInput(folder / "missing.txt"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "File not found");
}

// --- Writing
// ----------------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, aFileIsWritten) {
  const std::unique_ptr<ByteSink> sink = files.openForOutput(backslashed("new.txt"));
  sink->write("first\r\n");
  sink->write("");
  sink->write(std::string("\0second", 7));
  sink->close();
  EXPECT_EQ(folder.read("new.txt"), std::string("first\r\n\0second", 14));
}

TEST_F(DiskFiles, aLongTextIsWrittenWhole) {
  const std::string bytes(3'000'000, 'x');
  const std::unique_ptr<ByteSink> sink = files.openForOutput(folder / "new.txt");
  sink->write(bytes);
  sink->close();
  EXPECT_EQ(folder.read("new.txt"), bytes);
}

TEST_F(DiskFiles, anExistingFileIsEmptied) {
  folder.write("Old.txt", "a long text that was here");
  files.openForOutput(backslashed("OLD.TXT"))->write("new");
  EXPECT_EQ(folder.read("Old.txt"), "new");
  EXPECT_FALSE(fs::exists(folder / "OLD.TXT"));
}

TEST_F(DiskFiles, aSinkThatGoes_closesItsFile) {
  files.openForOutput(folder / "new.txt")->write("text");
  EXPECT_EQ(folder.read("new.txt"), "text");
}

TEST_F(DiskFiles, whereThereIsNoRoom_writingIsError61) {
  const std::unique_ptr<ByteSink> sink = files.openForOutput(folder / "new.txt");
  const FileSizeLimit limit(1000);
  sink->write(std::string(1000, 'x'));
  EXPECT_EQ(raisedNumber([&] { sink->write("x"); }), 61);
}

// --- Directories
// ------------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, changesTheCurrentDirectory) {
  fs::create_directories(folder / "Work/temp");
  files.changeDirectory(backslashed("work\\TEMP"));
  EXPECT_TRUE(fs::equivalent(fs::current_path(), folder / "Work/temp"));
  files.changeDirectory("..");
  EXPECT_TRUE(fs::equivalent(fs::current_path(), folder / "Work"));
}

TEST_F(DiskFiles, whatIsNoDirectory_cannotBecomeTheCurrentOne) {
  folder.write("file.txt", "");
  const fs::path before = fs::current_path();
  EXPECT_EQ(raisedNumber([&] { files.changeDirectory(folder / "missing/temp"); }), 76);
  EXPECT_NE(raisedNumber([&] { files.changeDirectory(folder / "missing"); }), 0);
  EXPECT_NE(raisedNumber([&] { files.changeDirectory(folder / "file.txt"); }), 0);
  EXPECT_EQ(fs::current_path(), before);
}

TEST_F(DiskFiles, makesADirectoryWithThoseAboveIt) {
  fs::create_directory(folder / "Cache");
  files.makeDirectory(backslashed("cache\\corvana\\temp"));
  EXPECT_TRUE(fs::is_directory(folder / "Cache/corvana/temp"));
  EXPECT_FALSE(fs::exists(folder / "cache"));
}

TEST_F(DiskFiles, makesADirectoryOfAPathWithASeparatorAtItsEnd) {
  files.makeDirectory(backslashed("new\\temp\\"));
  EXPECT_TRUE(fs::is_directory(folder / "new/temp"));
}

TEST_F(DiskFiles, aDirectoryThatExists_isError75) {
  fs::create_directory(folder / "temp");
  folder.write("file", "");
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory(folder / "temp"); }), 75);
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory((folder / "temp") + "/"); }), 75);
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory(folder / "TEMP"); }), 75);
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory(folder / "file"); }), 75);
}

TEST_F(DiskFiles, aDirectoryBelowAFile_isError76) {
  folder.write("file", "");
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory(folder / "file/temp"); }), 76);
}

TEST_F(DiskFiles, aDirectoryWithoutAccess_isError70) {
  fs::create_directory(folder / "closed");
  fs::permissions(folder.path(), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
  fs::permissions(folder / "closed", fs::perms::none);
  {
    const OrdinaryUser user;
    if (!user)
      GTEST_SKIP() << "the superuser cannot be another user here";
    EXPECT_EQ(raisedNumber([&] { files.changeDirectory(folder / "closed"); }), 70);
    EXPECT_EQ(raisedNumber([&] { files.makeDirectory(folder / "closed/temp"); }), 70);
  }
  fs::permissions(folder / "closed", fs::perms::owner_all);
}

// --- Working directory
// ------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, theWorkingDirectory_isInTheUsersCache) {
  const Environment home("HOME", folder.path().c_str());
  const Environment cache("XDG_CACHE_HOME", "/var/cache/ann");
  EXPECT_EQ(files.workingDirectory(), "/var/cache/ann/corvana/temp/");
}

TEST_F(DiskFiles, theWorkingDirectory_isBelowHomeWhereNoCacheIsNamed) {
  const Environment home("HOME", "/home/ann");
  for (const char* none : {static_cast<const char*>(nullptr), "", "relative/cache"}) {
    const Environment cache("XDG_CACHE_HOME", none);
    EXPECT_EQ(files.workingDirectory(), "/home/ann/.cache/corvana/temp/");
  }
}

TEST_F(DiskFiles, theWorkingDirectory_isFoundWithoutAnEnvironment) {
  const Environment home("HOME", nullptr);
  const Environment cache("XDG_CACHE_HOME", nullptr);
  const passwd* user = ::getpwuid(::getuid());
  if (user == nullptr)
    GTEST_SKIP() << "this user has no entry";
  EXPECT_EQ(files.workingDirectory(), std::string(user->pw_dir) + "/.cache/corvana/temp/");
}

TEST_F(DiskFiles, theWorkingDirectory_isNotMadeByAskingForIt) {
  const Environment cache("XDG_CACHE_HOME", (folder / "cache").c_str());
  EXPECT_EQ(files.workingDirectory(), (folder / "cache") + "/corvana/temp/");
  EXPECT_FALSE(fs::exists(folder / "cache"));
}

} // namespace imex::test
