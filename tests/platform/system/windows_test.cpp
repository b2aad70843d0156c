#include "platform/files/DiskFilesTest.h"
#include "platform/system/system.h"
#include "runtime/numbers.h"

#include <iterator>
#include <locale>
#include <string>

#include <windows.h>

// What holds on Windows alone. posix_test.cpp has the counterparts.

namespace imex::test {
namespace {

namespace fs = std::filesystem;
using platform::nativePath;

/// A handle of the system's, closed when it goes.
class Handle {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() { ::CloseHandle(m_handle); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }

 private:
  HANDLE m_handle;
};

/// Opens a file for reading as another program does that lets others do with it what `sharing` says.
Handle openElsewhere(const std::string& path, DWORD sharing) {
  return Handle(::CreateFileW(fs::path(path).c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// The number of the error that is raised for a code of the system's.
std::int32_t numberOf(DWORD code, const fs::path& path = {}) {
  return raisedNumber([&] {
    ::SetLastError(code);
    platform::system::raiseLastFailure(path);
  });
}

std::wstring userSetting(LCTYPE type) {
  wchar_t text[80] = {};
  ::GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, text, static_cast<int>(std::size(text)));
  return text;
}

using WindowsFiles = DiskFiles;

} // namespace

// --- Paths ----------------------------------------------------------------------------------------------------------

TEST_F(WindowsFiles, aNativePath_hasBackslashesAndItsOwnCase) {
  EXPECT_EQ(nativePath("C:/Temp\\docs/a.TXT").native(), L"C:\\Temp\\docs\\a.TXT");
  EXPECT_EQ(nativePath("..\\a/b").native(), L"..\\a\\b");
  EXPECT_EQ(nativePath("").native(), L"");
}

TEST_F(WindowsFiles, aNativePath_isUtf16) {
  EXPECT_EQ(nativePath("\u00E9\u20AC\U0001F4E6").native(), L"\u00E9\u20AC\xD83D\xDCE6");
  EXPECT_EQ(platform::system::textOf(L"\u00E9\u20AC\xD83D\xDCE6"), "\u00E9\u20AC\U0001F4E6");
}

TEST_F(WindowsFiles, whatIsNoUtf8_isReplacedInANativePath) {
  EXPECT_EQ(nativePath("a\xFFz").native(), L"a\xFFFDz");
}

TEST_F(WindowsFiles, theSystem_comparesNamesWithoutCase) {
  folder.write("Docs/\u00C9t\u00E9.txt", "text");
  EXPECT_EQ(contents(folder / "docs/\u00E9T\u00C9.TXT"), "text");
  EXPECT_EQ(contents(backslashed("DOCS\\\u00E9t\u00E9.txt")), "text");
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST_F(WindowsFiles, everyCodeOfTheSystem_hasItsError) {
  EXPECT_EQ(numberOf(ERROR_ACCESS_DENIED), 70);
  EXPECT_EQ(numberOf(ERROR_SHARING_VIOLATION), 70);
  EXPECT_EQ(numberOf(ERROR_LOCK_VIOLATION), 70);
  EXPECT_EQ(numberOf(ERROR_WRITE_PROTECT), 70);
  EXPECT_EQ(numberOf(ERROR_ALREADY_EXISTS), 75);
  EXPECT_EQ(numberOf(ERROR_FILE_EXISTS), 75);
  EXPECT_EQ(numberOf(ERROR_DIRECTORY), 76);
  EXPECT_EQ(numberOf(ERROR_DISK_FULL), 61);
  EXPECT_EQ(numberOf(ERROR_HANDLE_DISK_FULL), 61);
  EXPECT_EQ(numberOf(ERROR_FILE_TOO_LARGE), 61);
  EXPECT_EQ(numberOf(1295), 61); // the user's share of the disk is used up
  EXPECT_EQ(numberOf(ERROR_NOT_ENOUGH_MEMORY), 7);
  EXPECT_EQ(numberOf(ERROR_CRC), 57);
  EXPECT_EQ(numberOf(ERROR_NOT_READY), 57);
}

TEST_F(WindowsFiles, whatIsNotFound_isAFileOrItsFolder) {
  for (const DWORD code : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_NAME, ERROR_BAD_NETPATH}) {
    EXPECT_EQ(numberOf(code, folder.path() / "missing.txt"), 53) << code;
    EXPECT_EQ(numberOf(code, folder.path() / "missing/missing.txt"), 76) << code;
    EXPECT_EQ(numberOf(code, "missing.txt"), 53) << code;
  }
}

TEST_F(WindowsFiles, aNameThatNoFileCanHave_isError53) {
  EXPECT_EQ(errorOfInput(folder / "what?.txt"), 53);
  EXPECT_EQ(errorOfOutput(folder / "what?.txt"), 53);
}

TEST_F(WindowsFiles, aDevice_isError75) {
  EXPECT_EQ(errorOfInput("NUL"), 75);
  EXPECT_EQ(errorOfOutput("NUL"), 75);
  EXPECT_EQ(errorOfOutput(folder / "nul"), 75);
}

TEST_F(WindowsFiles, aPipe_isError75) {
  constexpr const wchar_t* kName = L"\\\\.\\pipe\\imex-test-pipe";
  const Handle pipe(::CreateNamedPipeW(kName, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr));
  ASSERT_TRUE(pipe);
  EXPECT_EQ(errorOfInput("\\\\.\\pipe\\imex-test-pipe"), 75);
  EXPECT_EQ(errorOfOutput("\\\\.\\pipe\\imex-test-pipe"), 75);
}

TEST_F(WindowsFiles, aFileThatIsReadOnly_isError70WhenItIsWritten) {
  const std::string path = folder.write("readOnly.txt", "text");
  ASSERT_NE(::SetFileAttributesW(fs::path(path).c_str(), FILE_ATTRIBUTE_READONLY), 0);
  if (Handle(::CreateFileW(fs::path(path).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)))
    GTEST_SKIP() << "this system lets its superuser write such a file";
  EXPECT_EQ(errorOfOutput(path), 70);
  EXPECT_EQ(contents(path), "text");
  ::SetFileAttributesW(fs::path(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsFiles, aHiddenFile_isWrittenAndStaysHidden) {
  const std::string path = folder.write("hidden.txt", "a long text that was here");
  ASSERT_NE(::SetFileAttributesW(fs::path(path).c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
  files.openForOutput(path)->write("new");
  EXPECT_EQ(folder.read("hidden.txt"), "new");
  EXPECT_NE(::GetFileAttributesW(fs::path(path).c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

// --- Other programs -------------------------------------------------------------------------------------------------

TEST_F(WindowsFiles, aFileThatAnotherProgramKeepsToItself_isError70) {
  const std::string path = folder.write("a.txt", "text");
  const Handle other = openElsewhere(path, 0);
  ASSERT_TRUE(other);
  EXPECT_EQ(errorOfInput(path), 70);
  EXPECT_EQ(errorOfOutput(path), 70);
}

TEST_F(WindowsFiles, aFileThatAnotherProgramReads_canBeReadButNotEmptied) {
  const std::string path = folder.write("a.txt", "text");
  const Handle other = openElsewhere(path, FILE_SHARE_READ);
  ASSERT_TRUE(other);
  EXPECT_EQ(contents(path), "text");
  EXPECT_EQ(errorOfOutput(path), 70);
  EXPECT_EQ(folder.read("a.txt"), "text");
}

TEST_F(WindowsFiles, aFileThatIsBeingWritten_canBeReadButNotWrittenByOthers) {
  const std::unique_ptr<ByteSink> sink = files.openForOutput(folder / "a.txt");
  sink->write("text");
  EXPECT_EQ(contents(folder / "a.txt"), "text");
  EXPECT_EQ(errorOfOutput(folder / "a.txt"), 70);
}

TEST_F(WindowsFiles, aFileThatIsBeingRead_canBeRemoved) {
  const std::unique_ptr<ByteSource> source = files.openForInput(folder.write("a.txt", "text"));
  EXPECT_TRUE(fs::remove(folder / "a.txt"));
  EXPECT_EQ(readAll(*source), "text");
}

// --- Working directory ----------------------------------------------------------------------------------------------

TEST_F(WindowsFiles, theWorkingDirectory_isThatOfTheFirstDisk) {
  EXPECT_EQ(files.workingDirectory(), "c:\\temp\\");
}

TEST_F(WindowsFiles, aDirectoryOnADiskThatIsNotThere_isError76) {
  ASSERT_EQ(::GetLogicalDrives() & (1U << ('q' - 'a')), 0u);
  EXPECT_EQ(raisedNumber([&] { files.makeDirectory("q:\\new\\temp\\"); }), 76);
  EXPECT_EQ(raisedNumber([&] { files.changeDirectory("q:\\new"); }), 76);
  EXPECT_EQ(errorOfInput("q:\\a.txt"), 76);
}

// --- Locale ---------------------------------------------------------------------------------------------------------

TEST_F(WindowsFiles, theLocaleOfTheUser_hasTheSignsOfTheSettings) {
  const std::locale locale = platform::system::userLocale();
  const auto& numbers = std::use_facet<std::numpunct<wchar_t>>(locale);
  EXPECT_EQ(std::wstring(1, numbers.decimal_point()), userSetting(LOCALE_SDECIMAL));
  EXPECT_EQ(std::wstring(1, numbers.thousands_sep()), userSetting(LOCALE_STHOUSAND));
  EXPECT_EQ((std::use_facet<std::moneypunct<wchar_t, false>>(locale).curr_symbol()), userSetting(LOCALE_SCURRENCY));
}

TEST_F(WindowsFiles, numbersAreReadByTheSettingsOfTheUser) {
  const std::wstring before = userSetting(LOCALE_SDECIMAL);
  ASSERT_NE(::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L";"), 0);
  const std::locale previous = std::locale::global(platform::system::userLocale());
  EXPECT_EQ(toDouble("1;5"), 1.5);
  EXPECT_FALSE(isNumeric("1.5.5"));
  std::locale::global(previous);
  ::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before.c_str());
}

} // namespace imex::test
