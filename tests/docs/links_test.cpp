#include "docs/Document.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace imex::test {
namespace {

namespace fs = std::filesystem;

bool leadsToTheWeb(const std::string& link) {
  return link.starts_with("https://") || link.starts_with("http://");
}

/// What is wrong with a link of a document; empty where it leads somewhere.
std::string problemOf(const Document& document, const std::string& link) {
  const std::size_t hash = link.find('#');
  const std::string file = link.substr(0, hash);
  const fs::path target = file.empty() ? document.path() : (document.path().parent_path() / file).lexically_normal();
  if (!fs::exists(sourceFolder() / target))
    return document.path().string() + " leads to " + link + ", which is not there";
  if (hash == std::string::npos || target.extension() != ".md")
    return {};
  const auto anchors = Document(target).anchors();
  if (std::find(anchors.begin(), anchors.end(), link.substr(hash + 1)) == anchors.end())
    return document.path().string() + " leads to " + link + ", but there is no such heading";
  return {};
}

TEST(Documents, everyLinkLeadsSomewhere) {
  std::size_t count = 0;
  for (const Document& document : allDocuments()) {
    for (const std::string& link : document.links()) {
      if (leadsToTheWeb(link))
        continue;
      EXPECT_EQ("", problemOf(document, link));
      ++count;
    }
  }
  EXPECT_LT(20U, count) << "the links were not found";
}

TEST(Documents, everyPictureIsAPictureAndIsShown) {
  std::set<fs::path> shown;
  for (const Document& document : allDocuments()) {
    for (const std::string& link : document.links())
      shown.insert((document.path().parent_path() / link).lexically_normal());
  }
  for (const auto& entry : fs::directory_iterator(sourceFolder() / "docs/pictures")) {
    const fs::path picture = fs::relative(entry.path(), sourceFolder());
    EXPECT_TRUE(shown.contains(picture)) << "no document shows " << picture;
    EXPECT_THAT(readFile(entry.path().string()), testing::StartsWith("\x89PNG\r\n")) << picture;
  }
}

} // namespace
} // namespace imex::test
