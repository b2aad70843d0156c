#include "BrowserTest.h"

#include <filesystem>
#include <fstream>
#include <set>

namespace imex::platform::test {

namespace {

/// A red square of 10 by 10.
constexpr const char* kPicture =
    "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'><rect width='10' height='10' fill='red'/></svg>";

class OwnFolderRequestsTest : public BrowserTest {
 protected:
  /// A document with everything in it that makes a browser ask for something.
  std::string greedyPage() const {
    const auto at = [this](const char* path) { return server.address(path); };
    return "<html><head>"
           "<link rel=stylesheet href='" +
           at("/style") +
           "'>"
           "<link rel=icon href='" +
           at("/icon") +
           "'>"
           "<link rel='shortcut icon' href='" +
           at("/shortcut") +
           "'>"
           "<link rel=preload as=image href='" +
           at("/preload") +
           "'>"
           "<link rel=prefetch href='" +
           at("/prefetch") +
           "'>"
           "<link rel=prerender href='" +
           at("/prerender") +
           "'>"
           "<link rel=modulepreload href='" +
           at("/module") +
           "'>"
           "<link rel=manifest href='" +
           at("/manifest") +
           "'>"
           "<link rel=dns-prefetch href='" +
           at("/dns") +
           "'>"
           "<link rel=preconnect href='" +
           at("/") +
           "'>"
           "<style>@import url('" +
           at("/import") + "'); @font-face { font-family: F; src: url('" + at("/font") +
           "') }"
           "body { background: url('" +
           at("/background") + "'); font-family: F; cursor: url('" + at("/cursor") +
           "'), auto } li { list-style-image: url('" + at("/bullet") + "') } p::before { content: url('" +
           at("/content") +
           "') }</style>"
           "<script src='" +
           at("/script") +
           "'></script></head>"
           "<body background='" +
           at("/attribute") + "' onload='new Image().src = \"" + at("/onload") +
           "\"'>"
           "<p>text<ul><li>item</ul>"
           "<img src='" +
           at("/img") + "'><img srcset='" + at("/srcset") +
           " 1x'>"
           "<picture><source srcset='" +
           at("/source") +
           "'><img></picture>"
           "<img src='x:' onerror='new Image().src = \"" +
           at("/onerror") +
           "\"'>"
           "<iframe src='" +
           at("/iframe") +
           "'></iframe>"
           "<iframe srcdoc='<img src=" +
           at("/srcdoc") +
           ">'></iframe>"
           "<object data='" +
           at("/object") + "' type='text/html'></object><embed src='" + at("/embed") +
           "'>"
           "<object data='" +
           at("/picture") +
           "' type='image/png'></object>"
           "<video src='" +
           at("/video") + "' poster='" + at("/poster") +
           "' autoplay></video>"
           "<audio src='" +
           at("/audio") + "' autoplay></audio><video><track src='" + at("/track") +
           "' default></video>"
           "<svg><image href='" +
           at("/svg") + "' width='9' height='9'/><use href='" + at("/use") +
           "#a'/>"
           "<script href='" +
           at("/svgscript") +
           "'></script></svg>"
           "<input type=image src='" +
           at("/input") +
           "'>"
           "<math><mglyph src='" +
           at("/glyph") +
           "'/></math>"
           "<script>new Image().src = '" +
           at("/inline") + "'; fetch('" + at("/fetch") +
           "');"
           "document.title = 'run'</script>"
           "</body></html>";
  }

  std::set<std::string> requested() const {
    std::set<std::string> paths;
    for (const FaultyServer::Request& request : server.requests())
      paths.insert(request.line.substr(0, request.line.rfind(' ')));
    return paths;
  }

  /// The width at which a picture is shown; 10 where it came.
  int pictureWidth() { return ask("document.querySelector('img').naturalWidth").toInt(); }

  FaultyServer server;
};

TEST_F(OwnFolderRequestsTest, documentOfTheFileSystemRunsNoScriptAndAsksForNothing) {
  openPage(greedyPage());
  settle();
  EXPECT_EQ(std::set<std::string>{}, requested());
  EXPECT_EQ("", ask("document.title").toString().toStdString());
}

/// The same document, served: that it asks for this much is what makes the test above worth something.
TEST_F(OwnFolderRequestsTest, documentOfTheWebAsksForItsParts) {
  server.answerWith({FaultyServer::page(200, greedyPage()), FaultyServer::page(200, "")});
  ASSERT_TRUE(open(server.address("/page")));
  const std::set<std::string> wanted = {
      "GET /style",  "GET /preload", "GET /import",   "GET /background", "GET /script", "GET /img",     "GET /srcset",
      "GET /iframe", "GET /inline",  "GET /fetch",    "GET /video",      "GET /svg",    "GET /content", "GET /input",
      "GET /bullet", "GET /object",  "GET /prefetch", "GET /srcdoc",     "GET /poster", "GET /source"};
  std::vector<std::string> missing;
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        missing.clear();
        const std::set<std::string> paths = requested();
        std::set_difference(wanted.begin(), wanted.end(), paths.begin(), paths.end(), std::back_inserter(missing));
        return missing.empty();
      },
      kGreatestWait))
      << testing::PrintToString(missing);
  EXPECT_EQ("run", ask("document.title").toString().toStdString());
}

TEST_F(OwnFolderRequestsTest, aBaseElsewhereLeadsNowhere) {
  openPage("<base href='" + server.address("/") + "'><img src='picture.svg'><link rel=stylesheet href='style.css'>");
  settle();
  EXPECT_EQ(std::set<std::string>{}, requested());
}

TEST_F(OwnFolderRequestsTest, aRefreshLeadsNowhere) {
  Desktop desktop;
  openPage("<meta http-equiv=refresh content='0;url=" + server.address("/refresh") + "'>stays");
  settle();
  EXPECT_EQ("stays", text());
  EXPECT_EQ(std::set<std::string>{}, requested());
  EXPECT_EQ(std::vector<std::string>{}, desktop.opened);
}

TEST_F(OwnFolderRequestsTest, pictureAndStyleOfTheFolderAndBelowAreShown) {
  folder.write("docs/pictures/a.svg", kPicture);
  folder.write("docs/style.css", "p { color: rgb(1, 2, 3) }");
  openPage("<link rel=stylesheet href=style.css><img src=pictures/a.svg><p>text", "docs/page.html");
  EXPECT_EQ(10, pictureWidth());
  EXPECT_EQ("rgb(1, 2, 3)", ask("getComputedStyle(document.querySelector('p')).color").toString().toStdString());
}

TEST_F(OwnFolderRequestsTest, pictureOutsideTheFolderIsNotShown) {
  folder.write("a.svg", kPicture);
  folder.write("docs-of-others/a.svg", kPicture);
  for (const std::string& source : {std::string("../a.svg"), folder / "a.svg", "file://" + folder / "a.svg",
                                    std::string("../docs-of-others/a.svg"), std::string("..%2Fa.svg")}) {
    openPage("<img src='" + source + "'>", "docs/page.html");
    EXPECT_EQ(0, pictureWidth()) << source;
  }
}

TEST_F(OwnFolderRequestsTest, linkOutOfTheFolderCountsAsWhatItLeadsTo) {
  folder.write("a.svg", kPicture);
  folder.write("docs/page.html", "<img src=link.svg>");
  std::filesystem::create_symlink(folder / "a.svg", folder / "docs/link.svg");
  ASSERT_TRUE(open(folder / "docs/page.html"));
  EXPECT_EQ(0, pictureWidth());
}

TEST_F(OwnFolderRequestsTest, scriptAndFrameOfTheFolderAreNotShownEither) {
  folder.write("script.js", "document.title = 'run'");
  folder.write("frame.html", "<img src='" + server.address("/frame") + "'>");
  openPage("<script src=script.js></script><iframe src=frame.html></iframe><object data=frame.html></object>");
  settle();
  EXPECT_EQ("", ask("document.title").toString().toStdString());
  EXPECT_EQ(std::set<std::string>{}, requested());
}

TEST_F(OwnFolderRequestsTest, styleOfTheFolderReachesNothingElse) {
  folder.write("style.css", "@import url('" + server.address("/import") + "'); p { background: url('" +
                                server.address("/background") + "') }");
  openPage("<link rel=stylesheet href=style.css><p>text");
  settle();
  EXPECT_EQ(std::set<std::string>{}, requested());
}

} // namespace

} // namespace imex::platform::test
