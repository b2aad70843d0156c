#include "desk/FileStamp.h"

#include "controls/common/text.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace imex::desk::test {

namespace {

using imex::test::TemporaryFolder;

class DeskFileStamp : public testing::Test {
 protected:
  FileStamp stamp() const { return FileStamp::of(toQt(folder / "a.txt")); }

  TemporaryFolder folder;
};

TEST_F(DeskFileStamp, missingFileHasTheStampOfNone) {
  EXPECT_FALSE(stamp().exists());
  EXPECT_EQ(FileStamp(), stamp());
}

TEST_F(DeskFileStamp, fileThatIsLeftAloneKeepsItsStamp) {
  folder.write("a.txt", "text");
  EXPECT_TRUE(stamp().exists());
  EXPECT_EQ(stamp(), stamp());
  EXPECT_EQ(stamp(), FileStamp::of(toQt(folder.path().string() + "\\A.txt")));
}

TEST_F(DeskFileStamp, newSizeIsAChange) {
  folder.write("a.txt", "text");
  const FileStamp before = stamp();
  const auto time = std::filesystem::last_write_time(folder / "a.txt");
  folder.write("a.txt", "texts");
  std::filesystem::last_write_time(folder / "a.txt", time);
  EXPECT_NE(before, stamp());
}

TEST_F(DeskFileStamp, newTimeIsAChange) {
  folder.write("a.txt", "text");
  const FileStamp before = stamp();
  const auto time = std::filesystem::last_write_time(folder / "a.txt");
  std::filesystem::last_write_time(folder / "a.txt", time + std::chrono::milliseconds(1));
  EXPECT_NE(before, stamp());
}

TEST_F(DeskFileStamp, fileThatGoesOrComesIsAChange) {
  const FileStamp none = stamp();
  folder.write("a.txt", "");
  const FileStamp empty = stamp();
  EXPECT_NE(none, empty);
  std::filesystem::remove(folder / "a.txt");
  EXPECT_EQ(none, stamp());
}

} // namespace

} // namespace imex::desk::test
