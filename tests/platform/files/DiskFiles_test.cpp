#include "platform/files/DiskFilesTest.h"

#include <optional>

namespace imex::test {
namespace {

namespace fs = std::filesystem;
using platform::nativePath;

} // namespace

// --- Paths -----------------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, backslashes_areSeparators) {
  folder.write("app/docs/format.dat", "");
  EXPECT_EQ(nativePath(backslashed("app\\docs\\format.dat")), folder / "app/docs/format.dat");
  EXPECT_EQ(nativePath((folder / "app") + "\\docs/format.dat"), folder / "app/docs/format.dat");
}

// --- Reading ---------------------------------------------------------------------------------------------------------

TEST_F(DiskFiles, aFileIsRead) {
  const std::string bytes("first\r\nsecond\0third", 19);
  EXPECT_EQ(contents(folder.write("a.txt", bytes)), bytes);
  EXPECT_EQ(contents(folder.write("empty.txt", "")), "");
}

TEST_F(DiskFiles, aFileIsReadByAnyWayOfWritingItsPath) {
  folder.write("app/Docs/format.dat", "columns");
  EXPECT_EQ(contents(backslashed("app\\docs\\FORMAT.DAT")), "columns");
}

TEST_F(DiskFiles, aNameMayHaveAnyCharacter) {
  const std::string name = "Pr\u00E9cis \u2013 \u4EF7\u683C \U0001F4E6.txt";
  files.openForOutput(backslashed(name))->write("text");
  EXPECT_EQ(folder.read(name), "text");
  EXPECT_EQ(contents(folder / name), "text");
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
  EXPECT_EQ(contents(folder.link("link.txt", "a.txt")), "text");
}

TEST_F(DiskFiles, aMissingFile_isError53) {
  EXPECT_EQ(errorOfInput(folder / "missing.txt"), 53);
  EXPECT_EQ(errorOfInput(backslashed("missing.txt")), 53);
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

TEST_F(DiskFiles, anErrorDescribesItself) {
  const std::optional<RuntimeError> error = raised([&] { files.openForInput(folder / "missing.txt"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "File not found");
}

TEST_F(DiskFiles, aPathThatIsNoText_isError53) {
  EXPECT_EQ(errorOfInput(folder / "missing" + "\xE9\xFF.txt"), 53);
}

TEST_F(DiskFiles, twoPathsOfOneFile_areTheSame) {
  folder.write("Docs/a.txt", "");
  folder.write("b.txt", "");
  folder.link("link.txt", "Docs/a.txt");
  EXPECT_TRUE(files.isSameFile(folder / "Docs/a.txt", backslashed("docs\\A.TXT")));
  EXPECT_TRUE(files.isSameFile(folder / "Docs/a.txt", folder / "link.txt"));
  EXPECT_FALSE(files.isSameFile(folder / "Docs/a.txt", folder / "b.txt"));
  EXPECT_FALSE(files.isSameFile(folder / "missing.txt", folder / "missing.txt"));
}

// --- Writing ---------------------------------------------------------------------------------------------------------

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

TEST_F(DiskFiles, anExistingFile_hasNothingOfWhatItHadOnceItIsClosed) {
  folder.write("Old.txt", "a long text that was here");
  files.openForOutput(backslashed("OLD.TXT"))->write("new");
  EXPECT_EQ(folder.read("Old.txt"), "new");
  EXPECT_EQ(names(), (Texts{"Old.txt"}));
}

TEST_F(DiskFiles, aLongerFile_isCutBehindWhatIsWritten) {
  const std::string before(200'000, 'x');
  for (const host::Owner owner : {host::Owner::user, host::Owner::component}) {
    for (const std::size_t size : {0UL, 1UL, 4096UL, 100'000UL, 199'999UL, 200'000UL, 200'001UL}) {
      const std::string text(size, 'y');
      const std::unique_ptr<ByteSink> sink = files.openForOutput(folder.write("a.txt", before), owner);
      sink->write(text);
      sink->close();
      ASSERT_TRUE(folder.read("a.txt") == text) << size;
    }
  }
}

TEST_F(DiskFiles, aLongerFile_isCutToo_whereItsSinkJustGoes) {
  const std::string path = folder.write("a.txt", "a longer text");
  files.openForOutput(path, host::Owner::component)->write("short");
  EXPECT_EQ(folder.read("a.txt"), "short");
  files.openForOutput(path, host::Owner::component);
  EXPECT_EQ(folder.read("a.txt"), "");
}

TEST_F(DiskFiles, aFileOfTheUsers_isEmptiedBeforeItIsWritten) {
  const std::unique_ptr<ByteSink> sink = files.openForOutput(folder.write("a.txt", "a longer text"), host::Owner::user);
  EXPECT_EQ(folder.read("a.txt"), "");
}

TEST_F(DiskFiles, aFileThatIsNoLink_isWrittenWhereLinksAreRefused) {
  folder.write("Old.txt", "a long text that was here");
  for (const std::string_view name : {"OLD.TXT", "new.txt"})
    files.openForOutput(backslashed(name), host::Owner::component)->write("new");
  EXPECT_EQ(folder.read("Old.txt"), "new");
  EXPECT_EQ(folder.read("new.txt"), "new");
}

TEST_F(DiskFiles, aSinkThatGoes_closesItsFile) {
  files.openForOutput(folder / "new.txt")->write("text");
  EXPECT_EQ(folder.read("new.txt"), "text");
}

// --- Directories -----------------------------------------------------------------------------------------------------

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
  EXPECT_EQ(names(), (Texts{"Cache"}));
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

} // namespace imex::test
