#include "EditorTest.h"

#include "runtime/encoding.h"

#include <random>

namespace imex::test {

namespace {

/// Files of random texts, the same ones in every run.
class RandomFile {
 public:
  RandomFile(unsigned seed, Encoding encoding, char delimiter)
      : m_random(seed), m_encoding(encoding), m_delimiter(delimiter), rows(pick(1, 40)), fields(pick(1, 12)) {}

  std::string bytes() {
    std::string text;
    for (int row = 0; row < rows; ++row)
      text += line() + "\r\n";
    if (m_encoding == Encoding::windows1252)
      text += "caf\xC3\xA9" + std::string(static_cast<std::size_t>(fields - 1), m_delimiter) + "\r\n";
    const std::string encoded = encode(text, m_encoding);
    return m_encoding == Encoding::utf8WithMark ? std::string(kUtf8Mark) + encoded : encoded;
  }

  int lineCount() const { return rows + (m_encoding == Encoding::windows1252 ? 1 : 0); }

 private:
  int pick(int first, int last) { return std::uniform_int_distribution(first, last)(m_random); }

  /// A line whose first field is not empty, because a line without text is not saved.
  std::string line() {
    std::string text = "x";
    for (int field = 1; field <= fields; ++field) {
      text += field > 1 ? std::string(1, m_delimiter) : std::string();
      for (int length = pick(0, 15); length > 0; --length)
        text += character();
    }
    return text;
  }

  std::string character() {
    static const std::vector<std::string> kEverywhere = {"a", "Z", "0",  " ", "\"", "'", "\\",
                                                         ",", ";", "\n", "é", "ß",  "€", "\r "};
    static const std::vector<std::string> kUnicode = {"Ł", "中", "😀", "\xC2\xA0"};
    const std::string other(1, m_delimiter == '|' ? '\t' : '|');
    const int choice = pick(0, 19);
    if (choice == 0)
      return other;
    if (choice == 1 && m_encoding != Encoding::windows1252)
      return kUnicode[static_cast<std::size_t>(pick(0, 3))];
    return kEverywhere[static_cast<std::size_t>(pick(0, static_cast<int>(kEverywhere.size()) - 1))];
  }

  std::mt19937 m_random;
  Encoding m_encoding;
  char m_delimiter;

 public:
  int rows;
  int fields;
};

class ImExFileEditRoundTrip : public EditorTest, public testing::WithParamInterface<std::tuple<Encoding, char>> {};

TEST_P(ImExFileEditRoundTrip, rectangularFileIsTheSameBytes) {
  const auto [encoding, delimiter] = GetParam();
  for (unsigned seed = 1; seed <= 60; ++seed) {
    RandomFile file(seed, encoding, delimiter);
    const std::string bytes = file.bytes();
    giveFile(bytes, file.lineCount(), file.fields, delimiter);
    editor.loadGrid();
    EXPECT_FALSE(editor.isModified());
    host.folder.write("import.txt", "");
    click(save());
    ASSERT_EQ(bytes, fileBytes()) << "seed " << seed;
  }
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(everyEncoding, ImExFileEditRoundTrip,
                         testing::Combine(testing::Values(Encoding::utf8, Encoding::utf8WithMark,
                                                          Encoding::windows1252),
                                          testing::Values('\t', '|')));

class ImExFileEditBytes : public EditorTest {
 protected:
  void load(const std::string& bytes, int rows, int fields) {
    giveFile(bytes, rows, fields);
    editor.loadGrid();
  }
};

TEST_F(ImExFileEditBytes, greatFileIsTheSameBytes) {
  std::string bytes;
  for (int row = 0; row < 32767; ++row)
    bytes += "number " + std::to_string(row) + "\tcaf\xC3\xA9\t\t" +
             std::string(static_cast<std::size_t>(row % 50), 'x') + "\r\n";
  giveFile(bytes, 32767, 4, '\t');
  editor.loadGrid();
  host.folder.write("import.txt", "");
  click(save());
  EXPECT_TRUE(bytes == fileBytes());
}

/// What a spreadsheet would take for a formula, and what a browser would take for markup.
TEST_F(ImExFileEditBytes, fieldWithAMeaningElsewhereIsATextLikeAnyOther) {
  const Texts fields = {"=1+1",     "+x",         "-x", "@x", "=cmd\t", "<script>alert(\"1\")</script>",
                        "<b>x</b>", "&amp;&#61;", "'=1"};
  std::string record;
  for (const std::string& field : fields)
    record += field + '|';
  record.back() = '\r';
  record += '\n';
  load(record + record, 2, static_cast<int>(fields.size()));
  EXPECT_EQ(Texts{"2"} + fields, row(2));
  host.folder.write("import.txt", "");
  click(save());
  EXPECT_EQ(record + record, fileBytes());
}

TEST_F(ImExFileEditBytes, lastLineGetsItsEnd) {
  giveFile("a|b\r\nc|d", 2, 2);
  editor.loadGrid();
  click(save());
  EXPECT_EQ("a|b\r\nc|d\r\n", fileBytes());
}

TEST_F(ImExFileEditBytes, fieldOf30000CharactersIsTheSame) {
  const std::string bytes = "a|" + std::string(30000, 'x') + "\r\nb|c\r\n";
  giveFile(bytes, 2, 2);
  editor.loadGrid();
  click(save());
  EXPECT_EQ(bytes, fileBytes());
}

// A row without a text is not saved, so another line may come first, and what it begins with must stay a text.
TEST_F(ImExFileEditBytes, firstTextThatBeginsLikeAMarkIsReadAgain) {
  const std::string mark(kUtf8Mark);
  load("\r\n" + mark + "a|b\r\n", 2, 2);
  click(save());
  EXPECT_EQ(mark + mark + "a|b\r\n", fileBytes());
  load(fileBytes(), 1, 2);
  EXPECT_EQ((Texts{"1", mark + "a", "b"}), row(1));
  click(save());
  EXPECT_EQ(mark + mark + "a|b\r\n", fileBytes()) << "one mark is enough";
}

TEST_F(ImExFileEditBytes, firstTextOfTheBytesOfAMarkIsReadAgain) {
  load("\r\n\xEF\xBB\xBF|caf\xE9\r\n", 2, 2);
  const Texts fields = {"\u00EF\u00BB\u00BF", "café"};
  ASSERT_EQ(Texts{"2"} + fields, row(2));
  click(save());
  EXPECT_EQ(std::string(kUtf8Mark) + "\u00EF\u00BB\u00BF|café\r\n", fileBytes());
  load(fileBytes(), 1, 2);
  EXPECT_EQ(Texts{"1"} + fields, row(1));
}

TEST_F(ImExFileEditBytes, textsWhoseBytesBecomeUtf8AreReadAgain) {
  load("caf\xE9|x\r\n\xC3\xA9|y\r\n", 2, 2);
  cells().removeRow(1);
  click(save());
  EXPECT_EQ(std::string(kUtf8Mark) + "\u00C3\u00A9|y\r\n", fileBytes());
  load(fileBytes(), 1, 2);
  EXPECT_EQ((Texts{"1", "\u00C3\u00A9", "y"}), row(1));
}

TEST_F(ImExFileEditBytes, textsThatBecomeAsciiStayWithoutAMark) {
  load("caf\xE9|x\r\n", 1, 2);
  cells().setText({1, 1}, "cafe");
  click(save());
  EXPECT_EQ("cafe|x\r\n", fileBytes());
}

TEST_F(ImExFileEditBytes, charactersAcrossALineEndAreNoUtf8) {
  load("a\xC3\r\n\xA9|y\r\n", 2, 2);
  cells().setText({1, 2}, "\u00C3");
  cells().setText({1, 1}, "b");
  click(save());
  EXPECT_EQ("b|\xC3\r\n\xA9|y\r\n", fileBytes());
}

TEST_F(ImExFileEditBytes, unusedBytesOfWindows1252AreKept) {
  const std::string bytes = "\x81\x8D\x8F\x90\x9D|\xFF\r\n";
  giveFile(bytes, 1, 2);
  editor.loadGrid();
  click(save());
  EXPECT_EQ(bytes, fileBytes());
}

} // namespace

} // namespace imex::test
