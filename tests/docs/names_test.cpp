#include "docs/Document.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace imex::test {
namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

/// The declarations of a header that its users see, without comments.
std::string publicPart(const fs::path& header) {
  static const std::regex access(R"(^ (public|Q_SIGNALS|private|protected)( Q_SLOTS)?:$)");
  std::string text;
  bool isPublic = true;
  for (std::string line : linesOf(header)) {
    line.erase(std::min(line.find("//"), line.size()));
    std::smatch match;
    if (std::regex_match(line, match, access))
      isPublic = match[1] == "public" || match[1] == "Q_SIGNALS";
    else if (line.starts_with("class ") || line.starts_with("struct ") || line.starts_with("}"))
      isPublic = true;
    else if (isPublic)
      text += line + '\n';
  }
  return text;
}

/// For the component's own use, past the trace.
const Names kUntraced = {"isAscii", "lineOf"};

/// The functions that the classes of a header declare, without constructors and destructors.
Names functionsOf(const fs::path& header) {
  Names names;
  // A declaration is indented once; what comes before the name ends in a blank or a type's mark.
  for (const std::string& name :
       matches(publicPart(header), R"((?:^|\n)  (?:[^\n( ][^\n(]*[ &*>])?([A-Za-z]\w*)\([^\n]*)")) {
    if (name != header.stem() && name != "operator" && !kUntraced.contains(name))
      names.insert(name);
  }
  return names;
}

/// Whether there is a file or a folder of this path below the root, "src" or "share"; the suffix of a source may be
/// left out.
bool exists(const std::string& path) {
  for (const char* folder : {".", "src", "share"}) {
    for (const char* suffix : {"", ".cpp", ".h"}) {
      if (fs::exists(sourceFolder() / folder / (path + suffix)))
        return true;
    }
  }
  return false;
}

Names codeWords(const Document& document) {
  Names words;
  for (const std::string& span : document.codeSpans()) {
    for (const std::string& word : matches(span, R"((\w+))"))
      words.insert(word);
  }
  return words;
}

TEST(HostGuide, namesEveryMemberOfTheControlsAndRecords) {
  const Names named = codeWords(Document("docs/host-guide.md"));
  for (const char* header : {"src/controls/ImExActionCtrl/ImExActionCtrl.h", "src/controls/ImExFileEdit/ImExFileEdit.h",
                             "src/controls/ImExDocView/ImExDocView.h", "src/controls/ImtExViewCtrl/ImtExViewCtrl.h",
                             "src/request/ImExRequest.h", "src/records/ImExFormat.h", "src/records/ImExReply.h",
                             "src/records/ImportExportErrorBean.h", "src/records/LineItemRecord.h"}) {
    const Names functions = functionsOf(header);
    EXPECT_FALSE(functions.empty()) << header;
    for (const std::string& function : functions)
      EXPECT_TRUE(named.contains(function)) << function << "() of " << header;
  }
}

TEST(HostGuide, namesEveryServiceAndItsFunctions) {
  const Names named = codeWords(Document("docs/host-guide.md"));
  for (const auto& entry : fs::directory_iterator(sourceFolder() / "src/host")) {
    if (entry.path().extension() != ".h")
      continue;
    const fs::path header = fs::relative(entry.path(), sourceFolder());
    EXPECT_TRUE(named.contains(header.stem().string())) << header;
    for (const std::string& function : functionsOf(header))
      EXPECT_TRUE(named.contains(function)) << function << "() of " << header;
  }
}

TEST(Documents, filesThatAreNamedExist) {
  static const std::regex path(
      R"((src|apps|bench|cmake|docs|examples|fuzz|scripts|share|tests|runtime|host|module|records|request|controls|platform)/[\w./-]*)");
  std::size_t count = 0;
  for (const char* name : {"README.md", "CONTRIBUTING.md", "docs/architecture.md", "docs/host-guide.md",
                           "docs/formats.md", "docs/cli.md", "docs/service.md"}) {
    for (const std::string& span : Document(name).codeSpans()) {
      if (!std::regex_match(span, path))
        continue;
      EXPECT_TRUE(exists(span)) << name << " names " << span;
      ++count;
    }
  }
  EXPECT_LT(20U, count) << "the names were not found";
}

} // namespace
} // namespace imex::test
