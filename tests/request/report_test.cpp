#include "RequestTest.h"
#include "request/ImExRequest.h"
#include "support/golden.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace imex::test {
namespace {

const std::string kNotDisplayed = "SerializationFailed: The server responded, but the results could not be displayed.";
const std::string kNotOpened = "SerializationFailed: the results cannot be displayed in Internet Explorer.";
const std::string kOpening = "<html>\r\n<head><Title> Validation Results</title></head>\r\n"
                             "<h1><center>Validation Results</center></h1>\r\n<table>\r\n";
const std::string kClosing = "</table></html>\r\n";

/// A request whose page of plain texts is within reach, as it is for a host that derives from it.
class ListingRequest : public ImExRequest {
 public:
  using ImExRequest::writeErrorListReport;
};

class ImExRequestReport : public RequestTest {
 protected:
  void SetUp() override {
    configure("BALLASTS", "HALVIK");
    listing.Directory(request.Directory());
    listing.SerializationFailed.connect(
        [this](const std::string& message) { request.SerializationFailed.raise(message); });
    host.trace->lines.clear();
  }

  ListingRequest listing;

  std::string pagePath() const { return host.folder / "out/validationresults.html"; }

  /// Puts a symbolic link in the place of a file or folder. False where the C++ library makes none.
  bool isLinked(const std::string& name, const std::string& target) const {
    std::error_code error;
    if (std::filesystem::is_directory(host.folder / target))
      std::filesystem::create_directory_symlink(host.folder / target, host.folder / name, error);
    else
      std::filesystem::create_symlink(host.folder / target, host.folder / name, error);
    return !error;
  }

  /// Makes a call on the page's file fail: "openForOutput", "write", "close".
  void failAtPage(const std::string& call, const RuntimeError& error) {
    host.files.before = [=, this](std::string_view made, std::string_view path) {
      if (made == call && path == pagePath())
        throw error;
    };
  }
};

const std::vector<Verdict> kMixed = {
    {true, "A1|FIRST|", "1"},
    {false, "A2||", "2", {"Field 2 is required.", "Field 3 is \"too long\" & <b>bold</b>."}},
    {true, "A3|THIRD|", "3", {}, {"This row is already there and will be updated."}},
    {false, "  A4 |  FOURTH", "32767", {"An error.", ""}, {"A warning.", "Another warning."}},
    {false, "", "0"},
};

TEST_F(ImExRequestReport, theImportFileItself_isNeverReplaced) {
  const std::string bytes = "a|b\r\n";
  host.folder.write("out/validationresults.html", bytes);
  for (const std::string name : {"out/validationresults.html", "out/ValidationResults.HTML", "link.txt"}) {
    if (name == "link.txt")
      host.folder.link(name, "out/validationresults.html");
    events.clear();
    request.CheckedFileName(host.folder / name);

    request.Deserialize(*answer("", kMixed));

    EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed, "showErrors"})) << name;
    EXPECT_EQ(host.folder.read("out/validationresults.html"), bytes) << name;
  }
  const std::string record = "! ImExRequest writeResultsReport 75 ImExRequest: Path/File access error";
  expectedErrors = {record, record, record};
}

TEST_F(ImExRequestReport, aSymbolicLinkInThePlaceOfThePage_isRefused) {
  const std::string bytes = "another file of the user\r\n";
  host.folder.write("precious.txt", bytes);
  for (const std::string target : {"precious.txt", "nowhere.txt"}) {
    events.clear();
    std::filesystem::remove(pagePath());
    if (!isLinked("out/validationresults.html", target))
      GTEST_SKIP() << "no symbolic links here";

    request.Deserialize(*answer("", kMixed));
    listing.writeErrorListReport({"a text"});

    EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed, "showErrors", kNotOpened})) << target;
    EXPECT_TRUE(std::filesystem::is_symlink(pagePath())) << target;
  }
  EXPECT_EQ(host.folder.read("precious.txt"), bytes);
  EXPECT_FALSE(std::filesystem::exists(host.folder / "nowhere.txt"));
  EXPECT_EQ(host.launcher.shown, (Texts{}));
  const std::string page = "! ImExRequest writeResultsReport 75 DiskFiles: Path/File access error";
  const std::string list = "! ImExRequest writeErrorListReport 75 DiskFiles: Path/File access error";
  expectedErrors = {page, list, page, list};
}

TEST_F(ImExRequestReport, aLinkByTheNameInAnotherCase_isRefusedToo) {
  host.folder.write("precious.txt", "text");
  if (!isLinked("out/ValidationResults.HTML", "precious.txt"))
    GTEST_SKIP() << "no symbolic links here";

  request.Deserialize(*answer("", kMixed));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed, "showErrors"}));
  EXPECT_EQ(host.folder.read("precious.txt"), "text");
  expectedErrors = {"! ImExRequest writeResultsReport 75 DiskFiles: Path/File access error"};
}

TEST_F(ImExRequestReport, aFolderBehindALink_hasThePage) {
  if (!isLinked("shortcut", "out"))
    GTEST_SKIP() << "no symbolic links here";
  request.Directory(host.folder / "shortcut/");

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(page(), kOpening + kClosing);
}

// --- The results page -----------------------------------------------------------------------------------------------

TEST_F(ImExRequestReport, thePageOfAMixedReply_isExactlyItsLines) {
  request.Deserialize(*answer("5 lines", kMixed));

  EXPECT_EQ(page(), golden("request/golden/mixed.html", page()));
}

TEST_F(ImExRequestReport, thePageOfAnEmptyReply_isItsFrame) {
  request.Deserialize(*answer("", {}));

  EXPECT_EQ(page(), kOpening + kClosing);
}

TEST_F(ImExRequestReport, aLineWithoutTexts_isDataStatusAndSpacer) {
  request.Deserialize(*answer("", {{true, "A|B|", "12"}}));

  EXPECT_EQ(page(), kOpening +
                        "<tr><td nowrap>\r\n<font size= +1>\r\nLINE # : 12   DATA    : A|B|\r\n</font>\r\n"
                        "</tr></td>\r\n"
                        "<tr><td nowrap>\r\nLINE # : 12   STATUS  : Import successful for this line.\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n \r\n</tr></td>\r\n" +
                        kClosing);
}

TEST_F(ImExRequestReport, aFailedLine_hasItsErrorsInRedAndItsWarningsPlain) {
  request.Deserialize(*answer("", {{false, "A|B|", "-3", {"e"}, {"w"}}}));

  EXPECT_EQ(page(), kOpening +
                        "<tr><td nowrap>\r\n<font size= +1>\r\nLINE # : -3   DATA    : A|B|\r\n</font>\r\n"
                        "</tr></td>\r\n"
                        "<tr><td nowrap>\r\nLINE # : -3   STATUS  : Import failed for this line.\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n<font color= red>\r\nLINE # : -3   ERROR   : e\r\n</font>\r\n"
                        "</tr></td>\r\n"
                        "<tr><td nowrap>\r\nLINE # : -3   WARNING : w\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n \r\n</tr></td>\r\n" +
                        kClosing);
}

/// What a spreadsheet would take for a formula, and what a browser would take for markup.
TEST_F(ImExRequestReport, aFieldWithAMeaningElsewhere_isOnThePageByteForByte) {
  const std::string line = "=1+1|+x|-x|@x|=cmd\t|<script>alert(\"1\")</script>|&amp;&#61;|%3D|'=1|\"a\"|";

  request.Deserialize(*answer("", {{true, line, "1"}}));

  EXPECT_NE(page().find("LINE # : 1   DATA    : " + line + "\r\n"), std::string::npos) << page();
}

TEST_F(ImExRequestReport, aPageWithACharacterBeyondAscii_startsWithTheMark) {
  request.Deserialize(*answer("", {{true, "CAFÉ|€|", "1", {}, {"naïve"}}}));

  EXPECT_EQ(page(), golden("request/golden/nonAscii.html", page()));
  EXPECT_EQ(page().substr(0, 3), "\xEF\xBB\xBF");
}

TEST_F(ImExRequestReport, aPageWithASingleTextBeyondAscii_startsWithTheMark) {
  for (const Verdict& verdict :
       {Verdict{true, "É", "1"}, Verdict{true, "a", "1", {"é"}}, Verdict{true, "a", "1", {}, {"é"}}}) {
    request.Deserialize(*answer("", {{true, "a", "1"}, verdict, {true, "b", "2"}}));
    EXPECT_EQ(page().substr(0, 9), "\xEF\xBB\xBF<html>");
  }
}

TEST_F(ImExRequestReport, aReplyTextBeyondAscii_isNotOnThePage) {
  request.Deserialize(*answer("é", {{true, "a", "1"}}));

  EXPECT_EQ(page().substr(0, 6), "<html>");
}

TEST_F(ImExRequestReport, anExistingPage_isReplaced) {
  host.folder.write("out/validationresults.html", std::string(100000, 'x'));

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(page(), kOpening + kClosing);
}

TEST_F(ImExRequestReport, thePageBeyondAThousandTexts_isTheSameKindOfPage) {
  request.Deserialize(*answer("", {{false, "A", "1", Texts(1001, "e")}}));

  std::string expected = kOpening +
                         "<tr><td nowrap>\r\n<font size= +1>\r\nLINE # : 1   DATA    : A\r\n</font>\r\n</tr></td>\r\n"
                         "<tr><td nowrap>\r\nLINE # : 1   STATUS  : Import failed for this line.\r\n</tr></td>\r\n";
  for (int i = 0; i < 1001; ++i)
    expected += "<tr><td nowrap>\r\n<font color= red>\r\nLINE # : 1   ERROR   : e\r\n</font>\r\n</tr></td>\r\n";
  EXPECT_EQ(page(), expected + "<tr><td nowrap>\r\n \r\n</tr></td>\r\n" + kClosing);
}

TEST_F(ImExRequestReport, aDirectoryWithoutASeparator_isPartOfTheName) {
  request.Directory(host.folder / "out");

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(host.folder.read("outvalidationresults.html"), kOpening + kClosing);
  EXPECT_FALSE(isPageWritten());
}

TEST_F(ImExRequestReport, theResultsPage_isNotOpenedInTheBrowser) {
  request.Deserialize(*answer("", kMixed));
  request.Deserialize(*answer("", {{false, "A", "1", Texts(1001, "e")}}));

  EXPECT_EQ(host.launcher.shown, (Texts{}));
}

TEST_F(ImExRequestReport, theResultsPage_isClosedWhenItIsShown) {
  bool isClosed = false;
  request.showErrors.connect([&](auto&&...) { isClosed = isEverythingClosed(); });

  request.Deserialize(*answer("", kMixed));

  EXPECT_TRUE(isClosed);
}

TEST_F(ImExRequestReport, aResultsPageThatCannotBeWritten_isReportedOnce) {
  for (const std::string call : {"openForOutput", "write", "close"}) {
    events.clear();
    failAtPage(call, RuntimeError(ErrorNumber::diskFull, "Disk"));

    request.Deserialize(*answer("", kMixed));

    EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed, "showErrors"})) << call;
    EXPECT_TRUE(isEverythingClosed()) << call;
    expectedErrors.emplace_back("! ImExRequest writeResultsReport 61 Disk: Disk full");
  }
  EXPECT_EQ(traceOf("writeResultsReport()"), Texts(3, "> ImExRequest writeResultsReport()"));
}

TEST_F(ImExRequestReport, aHalfWrittenPage_staysAsItIs) {
  failAtPage("close", RuntimeError(ErrorNumber::diskFull, "Disk"));

  request.Deserialize(*answer("", kMixed));

  EXPECT_TRUE(std::filesystem::exists(pagePath()));
  expectedErrors = {"! ImExRequest writeResultsReport 61 Disk: Disk full"};
}

TEST_F(ImExRequestReport, aFolderInThePlaceOfThePage_isReported) {
  std::filesystem::create_directory(pagePath());

  request.Deserialize(*answer("", {{false, "A", "1", Texts(1001, "e")}}));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed}));
  ASSERT_EQ(host.trace->errors().size(), 1u);
  EXPECT_TRUE(host.trace->errors()[0].starts_with("! ImExRequest writeResultsReport 75 ")) << host.trace->errors()[0];
  expectedErrors = host.trace->errors();
}

// --- The page of a list of texts ------------------------------------------------------------------------------------

TEST_F(ImExRequestReport, theTextListPage_isExactlyItsLines) {
  listing.writeErrorListReport({"First <text>", "", "third"});

  EXPECT_EQ(page(), kOpening +
                        "<tr><td nowrap>\r\n<font size= +1>\r\nFirst <text>\r\n</font>\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n<font size= +1>\r\n\r\n</font>\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n<font size= +1>\r\nthird\r\n</font>\r\n</tr></td>\r\n" +
                        kClosing);
}

TEST_F(ImExRequestReport, theTextListPage_isOpenedInTheBrowser) {
  listing.writeErrorListReport({"a text"});

  EXPECT_EQ(host.launcher.shown, Texts{pagePath() + " 0"});
  EXPECT_EQ(events, (Texts{}));
}

TEST_F(ImExRequestReport, theTextListPage_isWholeAndClosedWhenItIsOpened) {
  struct WatchingLauncher : FakeLauncher {
    void show(std::string_view path, int option) override {
      bytes = readFile(path);
      isClosed = isEverythingClosed();
      FakeLauncher::show(path, option);
    }
    std::string bytes;
    bool isClosed = false;
  } launcher;
  host.services.browserLauncher = &launcher;
  host.install();

  listing.writeErrorListReport({"a text"});

  EXPECT_EQ(launcher.bytes,
            kOpening + "<tr><td nowrap>\r\n<font size= +1>\r\na text\r\n</font>\r\n</tr></td>\r\n" + kClosing);
  EXPECT_TRUE(launcher.isClosed);
}

TEST_F(ImExRequestReport, anEmptyTextList_isWrittenButNotOpened) {
  listing.writeErrorListReport({});

  EXPECT_EQ(page(), kOpening + kClosing);
  EXPECT_EQ(host.launcher.shown, (Texts{}));
}

TEST_F(ImExRequestReport, aTextListBeyondAscii_startsWithTheMark) {
  listing.writeErrorListReport({"plain", "é"});

  EXPECT_EQ(page(), "\xEF\xBB\xBF" + kOpening +
                        "<tr><td nowrap>\r\n<font size= +1>\r\nplain\r\n</font>\r\n</tr></td>\r\n"
                        "<tr><td nowrap>\r\n<font size= +1>\r\né\r\n</font>\r\n</tr></td>\r\n" +
                        kClosing);
}

TEST_F(ImExRequestReport, theTextListPage_replacesTheResultsPage) {
  request.Deserialize(*answer("", kMixed));

  listing.writeErrorListReport({});

  EXPECT_EQ(page(), kOpening + kClosing);
}

TEST_F(ImExRequestReport, theTextListPage_isTraced) {
  listing.writeErrorListReport({"a"});

  EXPECT_EQ(steps(), (Texts{"> ImExRequest writeErrorListReport()", "> ImExModule launchInternetExplorer()",
                            "< ImExModule launchInternetExplorer()", "< ImExRequest writeErrorListReport()"}));
}

TEST_F(ImExRequestReport, aTextListPageThatCannotBeWritten_isReportedAndNotOpened) {
  for (const std::string call : {"openForOutput", "write", "close"}) {
    events.clear();
    failAtPage(call, RuntimeError(ErrorNumber::diskFull, "Disk"));

    listing.writeErrorListReport({"a text"});

    EXPECT_EQ(events, Texts{kNotOpened}) << call;
    EXPECT_TRUE(isEverythingClosed()) << call;
    expectedErrors.emplace_back("! ImExRequest writeErrorListReport 61 Disk: Disk full");
  }
  EXPECT_EQ(host.launcher.shown, (Texts{}));
}

TEST_F(ImExRequestReport, anErrorPast16Bits_reachesTheCallerAsAnOverflow) {
  failAtPage("openForOutput", RuntimeError(70000, "Disk", "odd"));

  EXPECT_EQ(raisedNumber([&] { listing.writeErrorListReport({"a text"}); }), 6);

  EXPECT_EQ(events, (Texts{}));
}

TEST_F(ImExRequestReport, aLauncherThatFails_isRecordedAndNotReported) {
  host.launcher.error = RuntimeError(1234, "Launcher", "no browser");

  listing.writeErrorListReport({"a text"});

  EXPECT_EQ(events, (Texts{}));
  expectedErrors = {"! ImExModule launchInternetExplorer 1234 Launcher: no browser"};
}

TEST_F(ImExRequestReport, withoutALauncher_thePageIsWrittenAllTheSame) {
  host.services.browserLauncher = nullptr;
  host.install();

  listing.writeErrorListReport({"a text"});

  EXPECT_TRUE(isPageWritten());
  EXPECT_EQ(events, (Texts{}));
  expectedErrors = {"! ImExModule launchInternetExplorer 429 ImEx: Component can't create object"};
}

} // namespace
} // namespace imex::test
