#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "support/TemporaryFolder.h"
#include "support/TestHost.h"
#include "support/raised.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace imex::test {
namespace {

using platform::IniFile;
using testing::HasSubstr;

IniFile parsed(std::string_view text) {
  return IniFile(text, "settings.ini");
}

/// The value, "(not set)" where there is none.
std::string valueOf(const IniFile& file, std::string_view section, std::string_view key) {
  return file.value(section, key).value_or("(not set)");
}

std::string valueOf(std::string_view text, std::string_view section, std::string_view key) {
  return valueOf(parsed(text), section, key);
}

} // namespace

TEST(IniFile, aFileInWindows1252_isReadAsOne) {
  const TemporaryFolder folder;
  platform::DiskFiles files;
  const IniFile ini = IniFile::read(files, folder.write("a.ini", "[user]\nname = M\xFCller\n"));
  EXPECT_EQ(ini.value("user", "name"), "Müller");
}

TEST(IniFile, ofNoText_hasNothingSet) {
  EXPECT_EQ(valueOf(IniFile(), "service", "secured"), "(not set)");
  EXPECT_EQ(valueOf("", "service", "secured"), "(not set)");
}

TEST(IniFile, aKeyBelongsToItsSection) {
  const IniFile file = parsed("[application]\ndirectory = /opt/corvana\n"
                              "[service]\ntimeout = 5000\nproxyPort = 8080\n[user]\nname = Ann Agent\n");
  EXPECT_EQ(valueOf(file, "application", "directory"), "/opt/corvana");
  EXPECT_EQ(valueOf(file, "service", "timeout"), "5000");
  EXPECT_EQ(valueOf(file, "service", "proxyPort"), "8080");
  EXPECT_EQ(valueOf(file, "user", "name"), "Ann Agent");
  EXPECT_EQ(valueOf(file, "service", "name"), "(not set)");
  EXPECT_EQ(valueOf(file, "user", "timeout"), "(not set)");
}

TEST(IniFile, aSectionMayComeAgain) {
  const IniFile file = parsed("[user]\nname = Ann\n[trace]\nfile = t.log\n[user]\nid = agent1\n");
  EXPECT_EQ(valueOf(file, "user", "name"), "Ann");
  EXPECT_EQ(valueOf(file, "user", "id"), "agent1");
}

TEST(IniFile, namesAreComparedWithoutCase) {
  const IniFile file = parsed("[Service]\nProxyPort = 8080\n");
  EXPECT_EQ(valueOf(file, "service", "proxyPort"), "8080");
  EXPECT_EQ(valueOf(file, "SERVICE", "PROXYPORT"), "8080");
}

TEST(IniFile, blanksAroundNamesAndValues_doNotCount) {
  EXPECT_EQ(valueOf("  [ service ]  \n\t secured \t=  http://service.example/  \n", "service", "secured"),
            "http://service.example/");
  EXPECT_EQ(valueOf("[user]\nname=Ann Agent\n", "user", "name"), "Ann Agent");
}

TEST(IniFile, quotes_keepTheBlanksInsideThem) {
  EXPECT_EQ(valueOf("[user]\nname = \"  Ann Agent \" \n", "user", "name"), "  Ann Agent ");
  EXPECT_EQ(valueOf("[user]\nname = \"\"\n", "user", "name"), "");
  EXPECT_EQ(valueOf("[user]\nname = Ann \"the\" Agent\n", "user", "name"), "Ann \"the\" Agent");
  EXPECT_EQ(valueOf("[user]\nname = \"\n", "user", "name"), "\"");
  EXPECT_EQ(valueOf("[user]\nname = \"Ann\n", "user", "name"), "\"Ann");
}

TEST(IniFile, aValue_isEverythingBehindTheFirstEqualsSign) {
  EXPECT_EQ(valueOf("[service]\nsecured = http://service.example/?a=b;c#d\n", "service", "secured"),
            "http://service.example/?a=b;c#d");
  EXPECT_EQ(valueOf("[user]\nname == x\n", "user", "name"), "= x");
}

TEST(IniFile, anEmptyValue_isSet) {
  EXPECT_EQ(parsed("[service]\nproxyPort =\n").value("service", "proxyPort"), std::optional<std::string>(""));
}

TEST(IniFile, ofAKeyGivenTwice_theLastValueCounts) {
  EXPECT_EQ(valueOf("[user]\nname = Ann\nNAME = Bob\n", "user", "name"), "Bob");
}

TEST(IniFile, commentsAndBlankLines_areSkipped) {
  const IniFile file =
      parsed("; the service\n# [user]\n\n \t\n[service]\n  ; timeout = 1\n#timeout = 2\ntimeout = 3\n");
  EXPECT_EQ(valueOf(file, "service", "timeout"), "3");
  EXPECT_EQ(valueOf(file, "service", "; timeout"), "(not set)");
}

TEST(IniFile, linesMayEndInCarriageReturnAndLineFeed) {
  const IniFile file = parsed("[user]\r\nname = Ann\r\n\r\nid = \"a1 \"\r\n");
  EXPECT_EQ(valueOf(file, "user", "name"), "Ann");
  EXPECT_EQ(valueOf(file, "user", "id"), "a1 ");
}

TEST(IniFile, theLastLine_needsNoEnd) {
  EXPECT_EQ(valueOf("[user]\nname = Ann", "user", "name"), "Ann");
}

TEST(IniFile, aByteOrderMark_isSkipped) {
  EXPECT_EQ(valueOf("\xEF\xBB\xBF[user]\nname = Ann\n", "user", "name"), "Ann");
}

TEST(IniFile, anyOtherLine_isError5WithItsPathAndNumber) {
  for (const std::string_view line : {"name", "[user", "user]", "[user] name = Ann", "= Ann", "\"quoted\"", "["}) {
    SCOPED_TRACE(line);
    const std::string text = "; first\n\n" + std::string(line) + "\nname = Ann\n";
    const std::optional<RuntimeError> error = raised([&] { IniFile(text, "/etc/corvana.ini"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), 5);
    EXPECT_THAT(error->description(), HasSubstr("/etc/corvana.ini"));
    EXPECT_THAT(error->description(), HasSubstr("line 3"));
  }
}

TEST(IniFile, anyTruncation_isReadOrIsError5) {
  const std::string text = "\xEF\xBB\xBF; settings\r\n[service]\r\nsecured = \"http://a \"\r\n[user]\r\nname = Ann";
  EXPECT_EQ(raisedNumber([&] { parsed(text); }), 0);
  int refused = 0;
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::int32_t number = raisedNumber([&] { parsed(text.substr(0, size)); });
    EXPECT_TRUE(number == 0 || number == 5) << size << ": " << number;
    refused += number == 5 ? 1 : 0;
  }
  EXPECT_GT(refused, 0);
}

TEST(IniFile, isReadFromAFile) {
  const TemporaryFolder folder;
  const std::string path = folder.write("Corvana.ini", "[user]\r\nname = J\u00FCrgen\r\n");
  platform::DiskFiles files;
  EXPECT_EQ(valueOf(IniFile::read(files, path), "user", "name"), "J\u00FCrgen");
}

TEST(IniFile, aBigFile_isReadWhole) {
  const TemporaryFolder folder;
  std::string text = "[user]\n";
  for (int i = 0; i < 5000; ++i)
    text += "key" + std::to_string(i) + " = value " + std::to_string(i) + "\n";
  platform::DiskFiles files;
  const IniFile file = IniFile::read(files, folder.write("big.ini", text));
  EXPECT_EQ(valueOf(file, "user", "key0"), "value 0");
  EXPECT_EQ(valueOf(file, "user", "key4999"), "value 4999");
}

TEST(IniFile, anErrorOfTheFile_namesThePath) {
  const TemporaryFolder folder;
  platform::DiskFiles files;
  const std::optional<RuntimeError> missing = raised([&] { IniFile::read(files, folder / "missing.ini"); });
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->number(), 53);
  EXPECT_THAT(missing->description(), HasSubstr(folder / "missing.ini"));
  EXPECT_THAT(missing->description(), HasSubstr("File not found"));
}

TEST(IniFile, anErrorWhileReading_namesThePath) {
  TestHost host;
  const std::string path = host.folder.write("a.ini", "[user]\n");
  host.files.before = [](std::string_view call, std::string_view) {
    if (call == "read")
      throw RuntimeError(ErrorNumber::deviceIoError);
  };
  const std::optional<RuntimeError> error = raised([&] { IniFile::read(host.files, path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 57);
  EXPECT_THAT(error->description(), HasSubstr(path));
}

TEST(IniFile, aBadLineInAFile_namesThePathOnce) {
  const TemporaryFolder folder;
  platform::DiskFiles files;
  const std::string path = folder.write("bad.ini", "[user]\nname\n");
  const std::optional<RuntimeError> error = raised([&] { IniFile::read(files, path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 5);
  EXPECT_THAT(error->description(), HasSubstr(path));
  EXPECT_THAT(error->description(), HasSubstr("line 2"));
  EXPECT_EQ(error->description().find(path), error->description().rfind(path));
}

} // namespace imex::test
