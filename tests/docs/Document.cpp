#include "docs/Document.h"

#include <cctype>
#include <fstream>
#include <regex>
#include <stdexcept>

namespace imex::test {

namespace fs = std::filesystem;

namespace {

const std::string kFence = "```";

/// The file that a comment line names; empty for another line.
std::string originIn(const std::string& line) {
  static const std::regex comment(R"(<!-- (\S+) -->)");
  std::smatch match;
  return std::regex_match(line, match, comment) ? match[1].str() : std::string();
}

/// As the sites that show documents make it.
std::string anchorOf(const std::string& heading) {
  std::string anchor;
  for (const char c : heading) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0)
      anchor += static_cast<char>(std::tolower(c));
    else if (c == ' ' || c == '-')
      anchor += '-';
    else if (c == '_')
      anchor += c;
  }
  return anchor;
}

bool isPartOfTheRepository(const fs::path& folder) {
  const std::string name = folder.filename().string();
  return name.front() != '.' && name != "build" && name != "out";
}

} // namespace

Document::Document(fs::path path) : m_path(std::move(path)) {
  bool isInside = false;
  std::string before;
  int number = 0;
  for (const std::string& line : linesOf(m_path)) {
    ++number;
    if (line.starts_with(kFence)) {
      if (!isInside)
        m_blocks.push_back({line.substr(kFence.size()), originIn(before), {}, number});
      isInside = !isInside;
    } else if (isInside) {
      m_blocks.back().lines.push_back(line);
    } else {
      m_prose += line + '\n';
    }
    before = line;
  }
  if (isInside)
    throw std::runtime_error(m_path.string() + ": a block of code has no end");
}

std::vector<std::string> Document::links() const {
  return matches(std::regex_replace(m_prose, std::regex("`[^`]*`"), ""), R"(\]\(([^)\s]+)\))");
}

std::vector<std::string> Document::codeSpans() const {
  return matches(m_prose, "`([^`]+)`");
}

std::vector<std::string> Document::anchors() const {
  std::vector<std::string> anchors;
  for (const std::string& heading : matches(m_prose, "(?:^|\n)#+ ([^\n]+)"))
    anchors.push_back(anchorOf(heading));
  return anchors;
}

fs::path sourceFolder() {
  return IMEX_SOURCE_DIR;
}

std::vector<Document> allDocuments() {
  std::vector<Document> documents;
  for (auto entry = fs::recursive_directory_iterator(sourceFolder()); entry != fs::recursive_directory_iterator();
       ++entry) {
    if (entry->is_directory() && !isPartOfTheRepository(entry->path()))
      entry.disable_recursion_pending();
    else if (entry->path().extension() == ".md")
      documents.emplace_back(fs::relative(entry->path(), sourceFolder()));
  }
  return documents;
}

std::vector<std::string> linesOf(const fs::path& path) {
  std::ifstream file(sourceFolder() / path);
  if (!file)
    throw std::runtime_error("cannot read " + path.string());
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);)
    lines.push_back(line);
  return lines;
}

std::vector<std::string> matches(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  std::vector<std::string> found;
  for (auto match = std::sregex_iterator(text.begin(), text.end(), expression); match != std::sregex_iterator();
       ++match)
    found.push_back((*match)[1]);
  return found;
}

} // namespace imex::test
