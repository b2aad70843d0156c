#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace imex::test {

/// A block of code in a document.
struct CodeBlock {
  std::string language;
  std::string origin; ///< the file that the comment in the line before it names: "<!-- examples/a.cpp -->"
  std::vector<std::string> lines;
  int line = 0; ///< of the document, from 1
};

/// A Markdown file of the repository.
class Document {
 public:
  /// `path` counts from the root of the repository.
  explicit Document(std::filesystem::path path);

  const std::filesystem::path& path() const { return m_path; }

  /// The text outside the blocks of code.
  const std::string& prose() const { return m_prose; }

  const std::vector<CodeBlock>& blocks() const { return m_blocks; }

  /// Where its links and pictures lead, as they are written.
  std::vector<std::string> links() const;

  /// What stands between backticks in its prose.
  std::vector<std::string> codeSpans() const;

  /// The anchors of its headings: "import-files" for "## Import files".
  std::vector<std::string> anchors() const;

 private:
  std::filesystem::path m_path;
  std::string m_prose;
  std::vector<CodeBlock> m_blocks;
};

/// The root of the repository.
std::filesystem::path sourceFolder();

/// Every document of the repository.
std::vector<Document> allDocuments();

/// The lines of a file of the repository.
std::vector<std::string> linesOf(const std::filesystem::path& path);

/// What each match of `pattern` has in its first group, in order.
std::vector<std::string> matches(const std::string& text, const std::string& pattern);

} // namespace imex::test
