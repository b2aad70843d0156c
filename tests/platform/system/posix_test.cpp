#include "platform/files/DiskFilesTest.h"
#include "platform/system/system.h"
#include "support/FileSizeLimit.h"

#include <cerrno>
#include <cstdlib>
#include <locale>
#include <optional>
#include <vector>

#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

// What holds on POSIX systems alone. windows_test.cpp has the counterparts.

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

/// The number of the error that is raised for a code of the system's.
std::int32_t numberOf(int code, const fs::path& path = {}) {
  return raisedNumber([&] {
    errno = code;
    platform::system::raiseLastFailure(path);
  });
}

using PosixFiles = DiskFiles;

} // namespace

// --- Paths -----------------------------------------------------------------------------------------------------------

TEST_F(PosixFiles, aPathThatExistsAsWritten_isTakenSo) {
  folder.write("a\\b.txt", "");
  folder.write("a/b.txt", "");
  EXPECT_EQ(nativePath(folder / "a\\b.txt"), folder / "a\\b.txt");
  EXPECT_EQ(nativePath(folder / "a/b.txt"), folder / "a/b.txt");
}

TEST_F(PosixFiles, whereTheExactNameIsMissing_caseIsIgnored) {
  folder.write("Docs/SPECInvoiceAgent.html", "");
  EXPECT_EQ(nativePath(folder / "docs/specinvoiceagent.HTML"), folder / "Docs/SPECInvoiceAgent.html");
  EXPECT_EQ(nativePath(backslashed("DOCS\\SPECINVOICEAGENT.html")), folder / "Docs/SPECInvoiceAgent.html");
}

TEST_F(PosixFiles, caseIsIgnoredForEveryLetter) {
  folder.write("\u00C9t\u00E9.txt", "");
  EXPECT_EQ(nativePath(folder / "\u00E9T\u00C9.TXT"), folder / "\u00C9t\u00E9.txt");
}

TEST_F(PosixFiles, theExactName_isPreferred) {
  folder.write("DATA/a.txt", "");
  folder.write("data/a.txt", "");
  folder.write("data/A.txt", "");
  EXPECT_EQ(nativePath(folder / "data/a.txt"), folder / "data/a.txt");
  EXPECT_EQ(nativePath(backslashed("data\\A.txt")), folder / "data/A.txt");
  EXPECT_EQ(nativePath(backslashed("DATA\\a.txt")), folder / "DATA/a.txt");
}

TEST_F(PosixFiles, ofSeveralNames_theFirstIsTaken) {
  const std::vector<std::string> names = {"DATA.txt", "DATa.txt", "DAtA.txt", "DaTA.txt",
                                          "Data.txt", "dATA.txt", "dAtA.txt", "data.txt"};
  for (const std::string& name : names)
    folder.write(name, "");
  for (const std::string& name : names) {
    EXPECT_EQ(nativePath(folder / "dAta.TXT"), folder / name);
    fs::remove(folder / name);
  }
}

TEST_F(PosixFiles, whatIsNotFound_keepsItsName) {
  fs::create_directory(folder / "Docs");
  EXPECT_EQ(nativePath(backslashed("docs\\New.txt")), folder / "Docs/New.txt");
  EXPECT_EQ(nativePath(backslashed("Missing\\docs\\New.txt")), folder / "Missing/docs/New.txt");
}

TEST_F(PosixFiles, aRelativePath_startsAtTheCurrentDirectory) {
  folder.write("Docs/a.txt", "");
  fs::current_path(folder.path());
  EXPECT_EQ(nativePath("docs\\A.TXT"), "Docs/a.txt");
  EXPECT_EQ(nativePath(".\\docs\\..\\docs\\A.TXT"), "./Docs/../Docs/a.txt");
}

TEST_F(PosixFiles, aDanglingLink_exists) {
  fs::create_symlink(folder / "nowhere", folder / "Link");
  EXPECT_EQ(nativePath(folder / "link"), folder / "Link");
}

// --- Failures --------------------------------------------------------------------------------------------------------

TEST_F(PosixFiles, everyCodeOfTheSystem_hasItsError) {
  EXPECT_EQ(numberOf(EACCES), 70);
  EXPECT_EQ(numberOf(EPERM), 70);
  EXPECT_EQ(numberOf(EROFS), 70);
  EXPECT_EQ(numberOf(EISDIR), 75);
  EXPECT_EQ(numberOf(EEXIST), 75);
  EXPECT_EQ(numberOf(ENXIO), 75);
  EXPECT_EQ(numberOf(ELOOP), 75);
  EXPECT_EQ(numberOf(ENOTDIR), 76);
  EXPECT_EQ(numberOf(ENOSPC), 61);
  EXPECT_EQ(numberOf(EDQUOT), 61);
  EXPECT_EQ(numberOf(EFBIG), 61);
  EXPECT_EQ(numberOf(ENOMEM), 7);
  EXPECT_EQ(numberOf(EIO), 57);
}

TEST_F(PosixFiles, whatIsNotFound_isAFileOrItsFolder) {
  EXPECT_EQ(numberOf(ENOENT, folder.path() / "missing.txt"), 53);
  EXPECT_EQ(numberOf(ENOENT, folder.path() / "missing/missing.txt"), 76);
  EXPECT_EQ(numberOf(ENOENT, "missing.txt"), 53);
}

TEST_F(PosixFiles, aLinkToNothing_isError53) {
  fs::create_symlink(folder / "nowhere", folder / "link.txt");
  EXPECT_EQ(errorOfInput(folder / "link.txt"), 53);
}

TEST_F(PosixFiles, aLink_isWrittenThroughUnlessLinksAreRefused) {
  folder.write("a.txt", "text");
  fs::create_symlink(folder / "a.txt", folder / "link.txt");
  EXPECT_EQ(raisedNumber([&] { files.openForOutput(folder / "link.txt", host::Owner::component); }), 75);
  EXPECT_EQ(folder.read("a.txt"), "text");
  files.openForOutput(folder / "link.txt", host::Owner::user)->write("new");
  EXPECT_EQ(folder.read("a.txt"), "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link.txt"));
}

TEST_F(PosixFiles, whereLinksAreRefused_noneToNothingAndNoneInACircleIsFollowed) {
  fs::create_symlink(folder / "nowhere", folder / "dangling.txt");
  fs::create_symlink(folder / "circle.txt", folder / "circle.txt");
  for (const std::string_view name : {"dangling.txt", "circle.txt"})
    EXPECT_EQ(raisedNumber([&] { files.openForOutput(folder / name, host::Owner::component); }), 75) << name;
  EXPECT_EQ(errorOfOutput(folder / "circle.txt"), 75);
  EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(PosixFiles, aDevice_isError75) {
  EXPECT_EQ(errorOfInput("/dev/null"), 75);
  EXPECT_EQ(errorOfOutput("/dev/null"), 75);
  EXPECT_EQ(errorOfOutput("/dev/full"), 75);
}

// Opening one in the ordinary way waits for somebody at its other end.
TEST_F(PosixFiles, aPipe_isError75) {
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(errorOfInput(pipe), 75);
  EXPECT_EQ(errorOfOutput(pipe), 75);
}

TEST_F(PosixFiles, aSocket_isError75) {
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

TEST_F(PosixFiles, aFileWithoutAccess_isError70) {
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

TEST_F(PosixFiles, whereThereIsNoRoom_writingIsError61) {
  const std::unique_ptr<ByteSink> sink = files.openForOutput(folder / "new.txt");
  const FileSizeLimit limit(1000);
  sink->write(std::string(1000, 'x'));
  EXPECT_EQ(raisedNumber([&] { sink->write("x"); }), 61);
}

TEST_F(PosixFiles, aFileWhoseWritingFailed_hasWhatWasWrittenAndNothingElse) {
  const std::string path = folder.write("old.txt", std::string(3000, 'o'));
  for (const host::Owner owner : {host::Owner::user, host::Owner::component}) {
    std::unique_ptr<ByteSink> sink = files.openForOutput(path, owner);
    {
      const FileSizeLimit limit(1000);
      EXPECT_EQ(raisedNumber([&] { sink->write(std::string(2000, 'n')); }), 61);
    }
    sink.reset();
    EXPECT_EQ(folder.read("old.txt"), std::string(1000, 'n'));
    folder.write("old.txt", std::string(3000, 'o'));
  }
}

TEST_F(PosixFiles, aDirectoryWithoutAccess_isError70) {
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

// --- Working directory -----------------------------------------------------------------------------------------------

TEST_F(PosixFiles, theWorkingDirectory_isInTheUsersCache) {
  const Environment home("HOME", folder.path().c_str());
  const Environment cache("XDG_CACHE_HOME", "/var/cache/ann");
  EXPECT_EQ(files.workingDirectory(), "/var/cache/ann/corvana/temp/");
}

TEST_F(PosixFiles, theWorkingDirectory_isBelowHomeWhereNoCacheIsNamed) {
  const Environment home("HOME", "/home/ann");
  for (const char* none : {static_cast<const char*>(nullptr), "", "relative/cache"}) {
    const Environment cache("XDG_CACHE_HOME", none);
    EXPECT_EQ(files.workingDirectory(), "/home/ann/.cache/corvana/temp/");
  }
}

TEST_F(PosixFiles, theWorkingDirectory_isFoundWithoutAnEnvironment) {
  const Environment home("HOME", nullptr);
  const Environment cache("XDG_CACHE_HOME", nullptr);
  const passwd* user = ::getpwuid(::getuid());
  if (user == nullptr)
    GTEST_SKIP() << "this user has no entry";
  EXPECT_EQ(files.workingDirectory(), std::string(user->pw_dir) + "/.cache/corvana/temp/");
}

TEST_F(PosixFiles, theWorkingDirectory_isNotMadeByAskingForIt) {
  const Environment cache("XDG_CACHE_HOME", (folder / "cache").c_str());
  EXPECT_EQ(files.workingDirectory(), (folder / "cache") + "/corvana/temp/");
  EXPECT_FALSE(fs::exists(folder / "cache"));
}

// --- Locale ----------------------------------------------------------------------------------------------------------

TEST_F(PosixFiles, theLocaleOfTheUser_isTheOneOfTheEnvironment) {
  const Environment locale("LC_ALL", "C");
  EXPECT_EQ(platform::system::userLocale().name(), "C");
}

TEST_F(PosixFiles, whereTheLocaleOfTheUserIsUnknown_theClassicOneHolds) {
  const Environment locale("LC_ALL", "xx_XX.no-such-locale");
  EXPECT_EQ(platform::system::userLocale(), std::locale::classic());
}

} // namespace imex::test
