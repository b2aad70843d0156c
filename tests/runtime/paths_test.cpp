#include "runtime/paths.h"

#include <gtest/gtest.h>

namespace imex::test {

TEST(folderOf, aPath_isAllUpToItsLastSeparator) {
  EXPECT_EQ(folderOf("c:\\data\\import\\customers.txt"), "c:\\data\\import\\");
  EXPECT_EQ(folderOf("/home/ann/customers.txt"), "/home/ann/");
}

TEST(folderOf, separatorsOfBothKinds_countAlike) {
  EXPECT_EQ(folderOf("/home/ann\\customers.txt"), "/home/ann\\");
  EXPECT_EQ(folderOf("c:\\data/customers.txt"), "c:\\data/");
}

TEST(folderOf, aNameAlone_isEmpty) {
  EXPECT_EQ(folderOf("customers.txt"), "");
  EXPECT_EQ(folderOf(""), "");
}

TEST(folderOf, aFolderWithItsSeparator_isItself) {
  EXPECT_EQ(folderOf("c:\\temp\\"), "c:\\temp\\");
  EXPECT_EQ(folderOf("/"), "/");
  EXPECT_EQ(folderOf("\\\\"), "\\\\");
}

TEST(folderOf, aFileInTheRoot_isTheRoot) {
  EXPECT_EQ(folderOf("/customers.txt"), "/");
  EXPECT_EQ(folderOf("c:\\customers.txt"), "c:\\");
}

} // namespace imex::test
