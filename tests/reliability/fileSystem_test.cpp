#include "Import.h"
#include "platform/files/DiskFiles.h"
#include "support/FileSizeLimit.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <sys/mount.h>
#include <unistd.h>

namespace imex::test {
namespace {

namespace fs = std::filesystem;

/// A small file system in memory, mounted at a folder for the life of the object. Only a superuser can have one.
class SmallFileSystem {
 public:
  SmallFileSystem(fs::path folder, const std::string& options) : m_folder(std::move(folder)) {
    fs::create_directories(m_folder);
    m_isMounted = ::mount("tmpfs", m_folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
    m_problem = m_isMounted ? "" : std::strerror(errno);
  }
  ~SmallFileSystem() {
    if (m_isMounted)
      ::umount2(m_folder.c_str(), MNT_DETACH);
  }
  SmallFileSystem(const SmallFileSystem&) = delete;
  SmallFileSystem& operator=(const SmallFileSystem&) = delete;

  void makeReadOnly() const {
    ASSERT_EQ(0, ::mount("tmpfs", m_folder.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr));
  }

  bool isMounted() const { return m_isMounted; }
  const std::string& problem() const { return m_problem; }

 private:
  fs::path m_folder;
  bool m_isMounted = false;
  std::string m_problem;
};

/// The process is an ordinary user's for the life of the object, where it is the superuser's otherwise.
class OrdinaryUser {
 public:
  /// What is in the folder becomes the user's own.
  explicit OrdinaryUser(const fs::path& folder) {
    if (!m_isSuperuser)
      return;
    giveAway(folder);
    for (const fs::path& path : fs::recursive_directory_iterator(folder))
      giveAway(path);
    if (::seteuid(kNobody) != 0)
      throw std::runtime_error("the process stays the superuser's");
  }
  ~OrdinaryUser() {
    if (m_isSuperuser && ::seteuid(0) != 0)
      std::abort();
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;

  static void giveAway(const fs::path& path) {
    if (::lchown(path.c_str(), kNobody, kNobody) != 0)
      throw std::runtime_error("the file stays the superuser's: " + path.string());
  }

  const bool m_isSuperuser = ::geteuid() == 0;
};

/// Imports whose results page has to go where it cannot.
class FileSystemFaults : public testing::Test {
 protected:
  FileSystemFaults() : golden(trial.run()), page(trial.page()) {}

  /// The verdict is shown all the same, and the user hears of the page.
  void expectVerdictWithoutPage(ErrorNumber number) {
    Texts promised = withoutPage(golden);
    promised.insert(promised.begin() + 1, kPageFailed);
    EXPECT_EQ(promised, withoutPage(trial.run()));
    EXPECT_EQ(Texts{std::to_string(static_cast<int>(number)) + " DiskFiles: " + std::string(describe(number))},
              trial.errors);
    EXPECT_TRUE(trial.isTidy());
  }

  void expectRightAgain() {
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }

  void useDirectory(const std::string& directory) { trial.request.Directory(directory); }

  Import trial{wayNamed("send")};
  const Texts golden;
  const std::string page;
};

TEST_F(FileSystemFaults, fullFileSystem_isDiskFull_andThePageIsABeginning) {
  const fs::path folder = trial.host.folder.path() / "small";
  const SmallFileSystem small(folder, "size=64k");
  if (!small.isMounted())
    GTEST_SKIP() << "no file system of our own: " << small.problem();
  useDirectory(folder.string() + "/");
  expectVerdictWithoutPage(ErrorNumber::diskFull);
  const std::string begun = readFile(folder / "validationresults.html");
  EXPECT_TRUE(page.starts_with(begun));
  EXPECT_LT(begun.size(), page.size());
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, fileSystemWithoutRoomForAName_isDiskFull) {
  const fs::path folder = trial.host.folder.path() / "small";
  const SmallFileSystem small(folder, "nr_inodes=1");
  if (!small.isMounted())
    GTEST_SKIP() << "no file system of our own: " << small.problem();
  useDirectory(folder.string() + "/");
  expectVerdictWithoutPage(ErrorNumber::diskFull);
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, readOnlyFileSystem_isPermissionDenied_alsoForTheSuperuser) {
  const fs::path folder = trial.host.folder.path() / "small";
  const SmallFileSystem small(folder, "size=64k");
  if (!small.isMounted())
    GTEST_SKIP() << "no file system of our own: " << small.problem();
  small.makeReadOnly();
  useDirectory(folder.string() + "/");
  expectVerdictWithoutPage(ErrorNumber::permissionDenied);
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, folderThatTheKernelOwns_isPermissionDenied) {
  useDirectory("/sys/");
  expectVerdictWithoutPage(ErrorNumber::permissionDenied);
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, readOnlyFolderOfAnOrdinaryUser_isPermissionDenied) {
  const fs::path folder = trial.host.folder.path() / "locked";
  fs::create_directory(folder);
  fs::permissions(folder, fs::perms(0555));
  const OrdinaryUser user(trial.host.folder.path());
  useDirectory(folder.string() + "/");
  expectVerdictWithoutPage(ErrorNumber::permissionDenied);
  EXPECT_TRUE(fs::is_empty(folder));
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, readOnlyPageOfAnOrdinaryUser_isPermissionDenied_andThePageStays) {
  const fs::path old = trial.host.folder.write("locked/validationresults.html", "of the import before");
  fs::permissions(old, fs::perms(0444));
  const OrdinaryUser user(trial.host.folder.path());
  useDirectory(trial.host.folder / "locked/");
  expectVerdictWithoutPage(ErrorNumber::permissionDenied);
  EXPECT_EQ("of the import before", readFile(old));
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, fileLargerThanTheProcessMayWrite_isDiskFull_andThePageIsABeginning) {
  {
    const FileSizeLimit limit(4096);
    expectVerdictWithoutPage(ErrorNumber::diskFull);
  }
  const std::string begun = readFile(trial.pagePath());
  EXPECT_EQ(page.substr(0, 4096), begun);
  expectRightAgain();
}

TEST_F(FileSystemFaults, missingFolder_isPathNotFound) {
  useDirectory(trial.host.folder / "nowhere/");
  expectVerdictWithoutPage(ErrorNumber::pathNotFound);
  useDirectory(trial.host.folder / "out/");
  expectRightAgain();
}

TEST_F(FileSystemFaults, importFileOnAFullReadOnlyFileSystem_isReadAsAnyOther) {
  const fs::path folder = trial.host.folder.path() / "small";
  const SmallFileSystem small(folder, "size=512k");
  if (!small.isMounted())
    GTEST_SKIP() << "no file system of our own: " << small.problem();
  const std::string copy = trial.host.folder.write("small/import.txt", wayNamed("send").file);
  small.makeReadOnly();
  trial.request.CheckedFileName(copy);
  expectRightAgain();
  EXPECT_EQ(wayNamed("send").file, readFile(copy));
}

} // namespace
} // namespace imex::test
