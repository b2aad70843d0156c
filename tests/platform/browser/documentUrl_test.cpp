#include "platform/browser/documentUrl.h"

#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace imex::platform::test {

namespace {

using imex::test::raised;
using imex::test::TemporaryFolder;

class DocumentUrl : public testing::Test {
 protected:
  static std::string url(const std::string& address) {
    return documentUrl(address).toString(QUrl::FullyEncoded).toStdString();
  }

  /// "53 File not found: address"
  static std::string error(const std::string& address) {
    const auto error = raised([&] { (void)documentUrl(address); });
    return error ? std::to_string(error->number()) + ' ' + error->description() : "no error";
  }

  std::string inFolder(const std::string& encoded) const { return "file://" + (folder / encoded); }

  TemporaryFolder folder;
};

TEST_F(DocumentUrl, webAddressesStayAsTheyAre) {
  EXPECT_EQ("http://example.org/a?b=c#d", url("http://example.org/a?b=c#d"));
  EXPECT_EQ("https://example.org:8443/a%20b", url("HTTPS://example.org:8443/a%20b"));
  EXPECT_EQ("http://example.org/a%20b", url("http://example.org/a b"));
  EXPECT_EQ("about:blank", url("About:Blank"));
}

TEST_F(DocumentUrl, addressesThatAreNoneAreError5) {
  EXPECT_EQ("5 Invalid procedure call or argument: http://***@[::1", error("http://user:secret@[::1"));
  for (const char* address : {"http:", "http://", "https:///path", "http://[::1", "about:", "about:gpu"})
    EXPECT_EQ(std::string("5 Invalid procedure call or argument: ") + address, error(address));
}

TEST_F(DocumentUrl, charactersOfAPathThatMeanSomethingInAnAddressAreEncoded) {
  folder.write("a b#c%d?e&f.html", "");
  EXPECT_EQ(inFolder("a%20b%23c%25d%3Fe%26f.html"), url(folder / "a b#c%d?e&f.html"));
  folder.write("é.html", "");
  EXPECT_EQ(inFolder("%C3%A9.html"), url(folder / "é.html"));
}

TEST_F(DocumentUrl, nameThatIsNoTextKeepsItsBytes) {
  folder.write("a\xFF.html", "");
  EXPECT_EQ(inFolder("a%FF.html"), url(folder / "a\xFF.html"));
}

TEST_F(DocumentUrl, eitherSeparatorAndCase) {
  folder.write("docs/SPEC.html", "");
  EXPECT_EQ(inFolder("docs/SPEC.html"), url(folder.path().string() + "\\docs\\spec.html"));
  EXPECT_EQ(inFolder("docs/SPEC.html"), url(folder.path().string() + "/DOCS\\SPEC.html"));
}

TEST_F(DocumentUrl, fileAddressesKeepTheirPlace) {
  folder.write("a b.html", "");
  EXPECT_EQ(inFolder("a%20b.html"), url(inFolder("a%20b.html")));
  EXPECT_EQ(inFolder("a%20b.html#part%202"), url("FILE://" + folder / "a b.html" + "#part 2"));
  EXPECT_EQ(inFolder("a%20b.html"), url("file:" + folder / "a b.html"));
  std::string back = folder / "a b.html";
  std::replace(back.begin(), back.end(), '/', '\\');
  EXPECT_EQ(inFolder("a%20b.html"), url("file://" + back));
}

TEST_F(DocumentUrl, relativePathStartsAtTheCurrentDirectory) {
  folder.write("page.html", "");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(inFolder("page.html"), url("page.html"));
  EXPECT_EQ(inFolder("page.html"), url(".\\page.html"));
  std::filesystem::current_path(before);
}

TEST_F(DocumentUrl, folderIsTheRealOne) {
  folder.write("real/page.html", "");
  std::filesystem::create_directory_symlink(folder / "real", folder / "link");
  EXPECT_EQ(inFolder("real/page.html"), url(folder / "link/page.html"));
  EXPECT_EQ(inFolder("real/page.html"), url(folder / "link/../real/page.html"));
}

TEST_F(DocumentUrl, missingFileIsNamed) {
  for (const std::string& address : {folder / "missing.html", folder / "no/folder/page.html", "file://" + folder / "x",
                                     std::string("C:\\docs\\page.html"), std::string("javascript:alert(1)"),
                                     std::string("data:text/html,x"), std::string(), std::string("file:"),
                                     std::string("file://server/share/page.html"), folder / std::string("a\0b", 3)})
    EXPECT_EQ("53 File not found: " + address, error(address));
}

TEST_F(DocumentUrl, whatIsNoFileIsNamed) {
  EXPECT_EQ("75 Path/File access error: " + folder.path().string(), error(folder.path().string()));
  ASSERT_EQ(0, ::mkfifo((folder / "pipe").c_str(), 0600));
  EXPECT_EQ("75 Path/File access error: " + folder / "pipe", error(folder / "pipe"));
}

TEST_F(DocumentUrl, fileWithoutAccessIsNamed) {
  const std::string path = folder.write("secret.html", "");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  const auto user = ::geteuid();
  if (user == 0) {
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    ASSERT_EQ(0, ::seteuid(65534)); // the superuser may read everything
  }
  const std::string result = error(path);
  ASSERT_EQ(0, ::seteuid(user));
  EXPECT_EQ("70 Permission denied: " + path, result);
}

TEST_F(DocumentUrl, onlyDocumentsOfTheWebAreMoreThanLookedAt) {
  EXPECT_TRUE(isLookedAtOnly(QUrl(QStringLiteral("file:///a.html"))));
  EXPECT_TRUE(isLookedAtOnly(QUrl(QStringLiteral("about:blank"))));
  EXPECT_FALSE(isLookedAtOnly(QUrl(QStringLiteral("http://example.org/"))));
  EXPECT_FALSE(isLookedAtOnly(QUrl(QStringLiteral("https://example.org/"))));
}

} // namespace

} // namespace imex::platform::test
