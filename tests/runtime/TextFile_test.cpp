#include "runtime/TextFile.h"
#include "support/memoryFiles.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace imex {

void PrintTo(Encoding encoding, std::ostream* stream) {
  *stream << (encoding == Encoding::utf8           ? "utf8"
              : encoding == Encoding::utf8WithMark ? "utf8WithMark"
                                                   : "windows1252");
}

} // namespace imex

namespace imex::test {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kBuffer = 64 * 1024;

Lines linesOf(TextReader& reader) {
  Lines lines;
  std::string_view line;
  while (reader.readLine(line))
    lines.emplace_back(line);
  return lines;
}

Lines linesOf(std::string bytes, std::size_t chunk = kBuffer) {
  TextReader reader(std::make_unique<MemorySource>(std::move(bytes), chunk));
  return linesOf(reader);
}

Encoding encodingOf(std::string bytes, std::size_t chunk = kBuffer) {
  return TextReader(std::make_unique<MemorySource>(std::move(bytes), chunk)).encoding();
}

/// What a reader makes of a file, found in the plainest way: with the whole file in hand.
struct NaiveReading {
  Encoding encoding;
  Lines lines;
};

NaiveReading readNaively(std::string bytes) {
  NaiveReading result{Encoding::windows1252, {}};
  Utf8Validator validator;
  validator.feed(bytes);
  if (bytes.starts_with(kUtf8Mark)) {
    result.encoding = Encoding::utf8WithMark;
    bytes.erase(0, kUtf8Mark.size());
  } else if (validator.isComplete()) {
    result.encoding = Encoding::utf8;
  }
  while (!bytes.empty()) {
    const std::size_t end = bytes.find("\r\n");
    std::string line = bytes.substr(0, end);
    bytes.erase(0, end == std::string::npos ? end : end + 2);
    if (result.encoding == Encoding::windows1252) {
      std::string decoded;
      appendWindows1252(decoded, line);
      line = decoded;
    }
    result.lines.push_back(line);
  }
  return result;
}

/// A text of pieces that matter to a reader: ends and halves of ends, characters of several bytes, bytes of none.
std::string generatedText(std::mt19937& random, bool withInvalidBytes) {
  const std::vector<std::string> pieces = {
      "\r\n",   "\r\n",     "\r",         "\n",        "a",
      "\u00E9", "\u20AC",   "\U0001F600", "field\t|",  "\xEF\xBB\xBF",
      " ",      "\r\r\n\n", "",           "long text", withInvalidBytes ? "\x80" : "b"};
  std::string text = random() % 4 == 0 ? std::string(kUtf8Mark) : std::string();
  for (auto count = random() % 40; count > 0; --count)
    text += pieces[random() % pieces.size()];
  if (random() % 8 == 0)
    text.insert(random() % (text.size() + 1), std::string(kBuffer - 20 + random() % 40, 'x'));
  return text;
}

} // namespace

TEST(TextReader, aLineEndsAtCarriageReturnAndLineFeed) {
  EXPECT_EQ(linesOf("first\r\nsecond\r\n"), (Lines{"first", "second"}));
}

TEST(TextReader, theLastLineNeedsNoEnd) {
  EXPECT_EQ(linesOf("first\r\nsecond"), (Lines{"first", "second"}));
  EXPECT_EQ(linesOf("only"), (Lines{"only"}));
}

TEST(TextReader, emptyLinesAreLines) {
  EXPECT_EQ(linesOf("\r\n"), (Lines{""}));
  EXPECT_EQ(linesOf("\r\n\r\n"), (Lines{"", ""}));
  EXPECT_EQ(linesOf("a\r\n\r\nb\r\n\r\n"), (Lines{"a", "", "b", ""}));
}

TEST(TextReader, emptyFile_hasNoLine) {
  EXPECT_EQ(linesOf(""), (Lines{}));
  EXPECT_EQ(encodingOf(""), Encoding::utf8);
}

TEST(TextReader, loneCarriageReturn_isPartOfItsLine) {
  EXPECT_EQ(linesOf("a\rb\r\nc"), (Lines{"a\rb", "c"}));
  EXPECT_EQ(linesOf("a\r\r\nb"), (Lines{"a\r", "b"}));
  EXPECT_EQ(linesOf("a\r"), (Lines{"a\r"}));
  EXPECT_EQ(linesOf("\r"), (Lines{"\r"}));
}

TEST(TextReader, loneLineFeed_isPartOfItsLine) {
  EXPECT_EQ(linesOf("a\nb\r\nc"), (Lines{"a\nb", "c"}));
  EXPECT_EQ(linesOf("a\r\n\nb"), (Lines{"a", "\nb"}));
  EXPECT_EQ(linesOf("\n"), (Lines{"\n"}));
  EXPECT_EQ(linesOf("\n\r"), (Lines{"\n\r"}));
}

TEST(TextReader, zeroBytes_arePartOfTheirLine) {
  const std::string text("a\0b\r\n\0", 6);
  EXPECT_EQ(linesOf(text), (Lines{std::string("a\0b", 3), std::string(1, '\0')}));
}

TEST(TextReader, afterTheLastLine_staysAtTheEnd) {
  TextReader reader(std::make_unique<MemorySource>("only\r\n"));
  EXPECT_EQ(linesOf(reader), (Lines{"only"}));
  std::string_view line;
  EXPECT_FALSE(reader.readLine(line));
  EXPECT_FALSE(reader.readLine(line));
}

// The line end is moved over the end of the buffer byte by byte.
TEST(TextReader, aLineEndAcrossTheBuffersEnd_isOneLineEnd) {
  for (std::size_t size = kBuffer - 5; size <= kBuffer + 5; ++size) {
    const std::string line(size, 'x');
    ASSERT_EQ(linesOf(line + "\r\nnext\r\n"), (Lines{line, "next"})) << size;
    ASSERT_EQ(linesOf("first\r\n" + line + "\r\nnext\r\n"), (Lines{"first", line, "next"})) << size;
    ASSERT_EQ(linesOf(std::string(kUtf8Mark) + line + "\r\nnext\r\n"), (Lines{line, "next"})) << size;
  }
}

TEST(TextReader, loneCarriageReturnAtTheBuffersEnd_isPartOfItsLine) {
  for (std::size_t size = kBuffer - 5; size <= kBuffer + 5; ++size) {
    const std::string line = std::string(size, 'x') + "\rmore";
    ASSERT_EQ(linesOf(line + "\r\nnext\r\n"), (Lines{line, "next"})) << size;
    ASSERT_EQ(linesOf(std::string(size, 'x') + "\r"), (Lines{std::string(size, 'x') + "\r"})) << size;
    ASSERT_EQ(linesOf(std::string(size, 'x') + "\r\r\nnext"), (Lines{std::string(size, 'x') + "\r", "next"})) << size;
  }
}

TEST(TextReader, aLineLongerThanTheBuffer_isOneLine) {
  const std::string line(5 * kBuffer + 17, 'x');
  EXPECT_EQ(linesOf("short\r\n" + line + "\r\nshort again\r\n"), (Lines{"short", line, "short again"}));
  EXPECT_EQ(linesOf(line), (Lines{line}));
  EXPECT_EQ(linesOf(line + "\r\n" + line + "\r\n"), (Lines{line, line}));
}

TEST(TextReader, manyLines_keepTheirOrder) {
  Lines lines;
  std::string text;
  for (int i = 0; i < 40000; ++i) {
    lines.push_back("line " + std::to_string(i));
    text += lines.back() + "\r\n";
  }
  EXPECT_EQ(linesOf(text), lines);
  EXPECT_EQ(linesOf(text, 1000), lines);
}

TEST(TextReader, plainAscii_isUtf8) {
  EXPECT_EQ(encodingOf("plain\r\n"), Encoding::utf8);
}

TEST(TextReader, validUtf8Throughout_isUtf8) {
  const std::string text = "caf\u00E9\r\n\u20AC \U0001F600";
  EXPECT_EQ(encodingOf(text), Encoding::utf8);
  EXPECT_EQ(linesOf(text), (Lines{"caf\u00E9", "\u20AC \U0001F600"}));
}

TEST(TextReader, anythingElse_isWindows1252) {
  EXPECT_EQ(encodingOf("caf\xE9\r\n"), Encoding::windows1252);
  EXPECT_EQ(linesOf("caf\xE9\r\n\x80 5"), (Lines{"caf\u00E9", "\u20AC 5"}));
}

TEST(TextReader, theUnusedBytesOfWindows1252_areKept) {
  EXPECT_EQ(linesOf("\x81\x8D\x8F\x90\x9D"), (Lines{"\u0081\u008D\u008F\u0090\u009D"}));
}

TEST(TextReader, utf8ThatIsCutAtTheEnd_isWindows1252) {
  EXPECT_EQ(encodingOf("caf\xC3"), Encoding::windows1252);
  EXPECT_EQ(linesOf("caf\u00E9\r\ncaf\xC3"), (Lines{"caf\u00C3\u00A9", "caf\u00C3"}));
}

TEST(TextReader, oneInvalidByteLateInABigFile_makesAllOfItWindows1252) {
  std::string text = "caf\u00E9\r\n";
  for (int i = 0; i < 20000; ++i)
    text += "plain line\r\n";
  text += "\xFF";
  TextReader reader(std::make_unique<MemorySource>(text, kBuffer));
  EXPECT_EQ(reader.encoding(), Encoding::windows1252);
  const Lines lines = linesOf(reader);
  ASSERT_EQ(lines.size(), 20002u);
  EXPECT_EQ(lines.front(), "caf\u00C3\u00A9");
  EXPECT_EQ(lines.back(), "\u00FF");
}

TEST(TextReader, aCharacterAcrossTheBuffersEnd_isOneCharacter) {
  for (std::size_t size = kBuffer - 5; size <= kBuffer + 1; ++size) {
    const std::string text = std::string(size, 'x') + "\U0001F600\r\nnext";
    ASSERT_EQ(encodingOf(text), Encoding::utf8) << size;
    ASSERT_EQ(linesOf(text), (Lines{std::string(size, 'x') + "\U0001F600", "next"})) << size;
  }
}

TEST(TextReader, theMark_isNoPartOfTheFirstLine) {
  const std::string text = std::string(kUtf8Mark) + "caf\u00E9\r\nsecond";
  EXPECT_EQ(encodingOf(text), Encoding::utf8WithMark);
  EXPECT_EQ(linesOf(text), (Lines{"caf\u00E9", "second"}));
}

TEST(TextReader, theMarkAlone_isAFileWithoutLines) {
  const std::string mark(kUtf8Mark);
  EXPECT_EQ(encodingOf(mark), Encoding::utf8WithMark);
  EXPECT_EQ(linesOf(mark), (Lines{}));
  EXPECT_EQ(linesOf(mark + "\r\n"), (Lines{""}));
}

TEST(TextReader, theMarkByteByByte_isFoundAsWell) {
  const std::string text = std::string(kUtf8Mark) + "a\r\nb\r\n";
  EXPECT_EQ(encodingOf(text, 1), Encoding::utf8WithMark);
  EXPECT_EQ(linesOf(text, 1), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf(text, 2), (Lines{"a", "b"}));
}

TEST(TextReader, aMarkThatIsCut_isNoMark) {
  EXPECT_EQ(encodingOf("\xEF\xBB"), Encoding::windows1252);
  EXPECT_EQ(linesOf("\xEF\xBB", 1), (Lines{"\u00EF\u00BB"}));
}

TEST(TextReader, aMarkFurtherOn_isACharacter) {
  const std::string mark(kUtf8Mark);
  EXPECT_EQ(linesOf(mark + mark + "a"), (Lines{mark + "a"}));
  EXPECT_EQ(linesOf("a\r\n" + mark + "b"), (Lines{"a", mark + "b"}));
}

TEST(TextReader, theMark_outweighsInvalidBytes) {
  const std::string text = std::string(kUtf8Mark) + "caf\xE9\r\ncaf\u00E9";
  EXPECT_EQ(encodingOf(text), Encoding::utf8WithMark);
  EXPECT_EQ(linesOf(text), (Lines{"caf\xE9", "caf\u00E9"}));
}

TEST(TextReader, anErrorWhileTheEncodingIsFound_passesThrough) {
  auto source = std::make_unique<MemorySource>("text");
  source->failAfter = 0;
  EXPECT_EQ(raisedNumber([&] { TextReader reader(std::move(source)); }), 57);
}

TEST(TextReader, anErrorWhileLinesAreRead_passesThrough) {
  auto source = std::make_unique<MemorySource>("first\r\n" + std::string(3 * kBuffer, 'x') + "\r\n", kBuffer);
  MemorySource& same = *source;
  TextReader reader(std::move(source));
  std::string_view line;
  ASSERT_TRUE(reader.readLine(line));
  EXPECT_EQ(line, "first");
  same.failAfter = 1;
  EXPECT_EQ(raisedNumber([&] { reader.readLine(line); }), 57);
}

TEST(TextReader, aFileThatShrinksBetweenTheTwoReadings_endsEarly) {
  class ShrinkingSource : public MemorySource {
   public:
    ShrinkingSource(std::string bytes, std::string later) : MemorySource(std::move(bytes)), m_later(std::move(later)) {}
    void rewind() override { static_cast<MemorySource&>(*this) = MemorySource(m_later); }

   private:
    std::string m_later;
  };
  const std::string text = std::string(kUtf8Mark) + "first\r\nsecond\r\n";
  for (std::size_t size = 0; size <= kUtf8Mark.size(); ++size) {
    TextReader reader(std::make_unique<ShrinkingSource>(text, text.substr(0, size)));
    EXPECT_EQ(linesOf(reader), (Lines{})) << size;
  }
  TextReader reader(std::make_unique<ShrinkingSource>(text, text.substr(0, kUtf8Mark.size() + 2)));
  EXPECT_EQ(linesOf(reader), (Lines{"fi"}));
}

/// Counts the bytes that are read.
class CountingSource : public MemorySource {
 public:
  CountingSource(std::string bytes, std::size_t& count) : MemorySource(std::move(bytes)), m_count(count) {}
  std::size_t read(char* buffer, std::size_t size) override {
    const std::size_t count = MemorySource::read(buffer, size);
    m_count += count;
    return count;
  }

 private:
  std::size_t& m_count;
};

TEST(TextReader, plainAscii_isReadOnce) {
  const std::string text(10 * kBuffer, 'x');
  std::size_t count = 0;
  TextReader reader(std::make_unique<CountingSource>(text, count));
  EXPECT_EQ(count, kBuffer); // the look for the mark
  EXPECT_EQ(linesOf(reader), (Lines{text}));
  EXPECT_EQ(count, 11 * kBuffer);
  EXPECT_EQ(reader.encoding(), Encoding::utf8);
  EXPECT_EQ(count, 11 * kBuffer) << "all of it was seen, so the encoding is known";
}

TEST(TextReader, theFirstCharacterBeyondAscii_mayComeAnywhere) {
  for (const std::string_view last : {"\r\n\u00E9", "\r\n\xE9", "\u00E9\xFF", "\xF0\x9F\x98", "\r\u00E9\r\n"}) {
    for (std::size_t size = 2 * kBuffer - 6; size <= 2 * kBuffer + 2; ++size) {
      const std::string text = "first\r\n" + std::string(size, 'x') + std::string(last) + "\r\nend\r\n";
      const NaiveReading expected = readNaively(text);
      TextReader reader(std::make_unique<MemorySource>(text));
      ASSERT_EQ(linesOf(reader), expected.lines) << size;
      ASSERT_EQ(reader.encoding(), expected.encoding) << size;
    }
  }
}

TEST(TextReader, theEncodingAskedForInTheMiddle_losesNoLine) {
  const std::string text = "first\r\n" + std::string(kBuffer, 'x') + "\r\nsecond\r\n\xE9";
  TextReader reader(std::make_unique<MemorySource>(text));
  std::string_view line;
  ASSERT_TRUE(reader.readLine(line));
  EXPECT_EQ(reader.encoding(), Encoding::windows1252);
  EXPECT_EQ(linesOf(reader), (Lines{std::string(kBuffer, 'x'), "second", "\u00E9"}));
}

TEST(TextReader, anErrorWhileItLooksAhead_passesThrough) {
  auto source = std::make_unique<MemorySource>("first\r\n\u00E9" + std::string(3 * kBuffer, 'x'));
  source->failAfter = 2; // the look for the mark and the first bytes
  TextReader reader(std::move(source));
  std::string_view line;
  EXPECT_EQ(raisedNumber([&] { reader.readLine(line); }), 57);
}

TEST(TextReader, aFileThatShrinksWhileItLooksAhead_endsEarly) {
  const std::string text = "caf\u00E9\r\n" + std::string(kBuffer, 'x') + "\r\nlast\r\n";
  class ShrinkingSource : public MemorySource {
   public:
    explicit ShrinkingSource(const std::string& bytes) : MemorySource(bytes), m_first(bytes.substr(0, kBuffer)) {}
    void rewind() override {
      MemorySource::rewind();
      if (++m_rewinds == 2)
        static_cast<MemorySource&>(*this) = MemorySource(m_first);
    }

   private:
    std::string m_first;
    int m_rewinds = 0;
  };
  TextReader reader(std::make_unique<ShrinkingSource>(text));
  EXPECT_EQ(linesOf(reader), (Lines{"caf\u00E9", std::string(kBuffer - 7, 'x')}));
}

TEST(TextReader, readsAnyTextAsANaiveReaderDoes) {
  std::mt19937 random(20240703);
  for (int round = 0; round < 400; ++round) {
    const std::string text = generatedText(random, round % 2 == 0);
    const NaiveReading expected = readNaively(text);
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{7}, std::size_t{4096},
                                    kBuffer - 1, kBuffer, 4 * kBuffer}) {
      TextReader reader(std::make_unique<MemorySource>(text, chunk));
      ASSERT_EQ(reader.encoding(), expected.encoding) << "round " << round << ", chunk " << chunk;
      ASSERT_EQ(linesOf(reader), expected.lines) << "round " << round << ", chunk " << chunk;
    }
  }
}

TEST(TextWriter, endsEachLineWithCarriageReturnAndLineFeed) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record));
  writer.writeLine("first");
  writer.writeLine("");
  writer.writeLine("caf\u00E9");
  writer.close();
  EXPECT_EQ(record.bytes, "first\r\n\r\ncaf\u00E9\r\n");
  EXPECT_EQ(record.closes, 1);
}

TEST(TextWriter, withoutLines_writesNothing) {
  MemorySink::Record record;
  TextWriter(std::make_unique<MemorySink>(record)).close();
  EXPECT_EQ(record.bytes, "");
  EXPECT_EQ(record.closes, 1);
}

TEST(TextWriter, writesTheMarkFirst) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record), Encoding::utf8WithMark);
  writer.writeLine("caf\u00E9");
  writer.writeLine("second");
  writer.close();
  EXPECT_EQ(record.bytes, std::string(kUtf8Mark) + "caf\u00E9\r\nsecond\r\n");
}

TEST(TextWriter, withoutLines_writesTheMarkAllTheSame) {
  MemorySink::Record record;
  TextWriter(std::make_unique<MemorySink>(record), Encoding::utf8WithMark).close();
  EXPECT_EQ(record.bytes, kUtf8Mark);
}

TEST(TextWriter, writesInItsEncoding) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record), Encoding::windows1252);
  writer.writeLine("caf\u00E9 \u20AC\u0081");
  writer.close();
  EXPECT_EQ(record.bytes, "caf\xE9 \x80\x81\r\n");
}

TEST(TextWriter, aLineWithACharacterThatTheEncodingLacks_isError5AndIsNotWritten) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record), Encoding::windows1252);
  writer.writeLine("before");
  EXPECT_EQ(raisedNumber([&] { writer.writeLine("a \u0416 z"); }), 5);
  writer.writeLine("after");
  writer.close();
  EXPECT_EQ(record.bytes, "before\r\nafter\r\n");
}

TEST(TextWriter, keepsLoneLineFeedsAndCarriageReturns) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record));
  writer.writeLine("a\nb\rc");
  writer.close();
  EXPECT_EQ(record.bytes, "a\nb\rc\r\n");
}

TEST(TextWriter, writesLongTextsWhole) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record));
  std::string expected;
  for (std::size_t size : {std::size_t{10}, kBuffer - 1, kBuffer, kBuffer + 1, 3 * kBuffer, std::size_t{0}}) {
    writer.writeLine(std::string(size, 'x'));
    expected += std::string(size, 'x') + "\r\n";
  }
  for (int i = 0; i < 30000; ++i) {
    writer.writeLine(std::to_string(i));
    expected += std::to_string(i) + "\r\n";
  }
  writer.close();
  EXPECT_EQ(record.bytes, expected);
}

TEST(TextWriter, textWithoutAnEnd_isContinuedByTheNext) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record));
  writer.write("first");
  writer.writeLine(" line");
  writer.write("");
  writer.write("second\r\nthird");
  writer.close();
  EXPECT_EQ(record.bytes, "first line\r\nsecond\r\nthird");
}

TEST(TextWriter, allButTheLastBytes_goOutInPiecesOfOneSize) {
  MemorySink::Record record;
  std::string expected;
  TextWriter writer(std::make_unique<MemorySink>(record));
  for (int i = 0; i < 5000; ++i) {
    const std::string line(static_cast<std::size_t>(i % 301), static_cast<char>('a' + i % 26));
    writer.writeLine(line);
    expected += line + "\r\n";
    ASSERT_EQ(record.bytes.size() % kBuffer, 0U) << i;
    ASSERT_GE(record.bytes.size() + kBuffer, expected.size()) << i;
  }
  writer.close();
  EXPECT_EQ(record.bytes, expected);
}

TEST(TextWriter, closingTwice_closesOnce) {
  MemorySink::Record record;
  TextWriter writer(std::make_unique<MemorySink>(record));
  writer.writeLine("text");
  writer.close();
  writer.close();
  EXPECT_EQ(record.bytes, "text\r\n");
  EXPECT_EQ(record.closes, 1);
}

TEST(TextWriter, thatGoes_writesWhatIsLeftAndCloses) {
  MemorySink::Record record;
  TextWriter(std::make_unique<MemorySink>(record)).writeLine("text");
  EXPECT_EQ(record.bytes, "text\r\n");
  EXPECT_EQ(record.closes, 1);
}

TEST(TextWriter, anErrorOfWriting_reachesTheCallerAtTheLatestWhenItCloses) {
  MemorySink::Record record;
  record.writeError = RuntimeError(ErrorNumber::diskFull);
  TextWriter writer(std::make_unique<MemorySink>(record));
  EXPECT_EQ(raisedNumber([&] {
              writer.writeLine("text");
              writer.close();
            }),
            61);
}

TEST(TextWriter, anErrorOfWriting_reachesTheWriterOfManyLines) {
  MemorySink::Record record;
  record.writeError = RuntimeError(ErrorNumber::diskFull);
  TextWriter writer(std::make_unique<MemorySink>(record));
  EXPECT_EQ(raisedNumber([&] {
              for (int i = 0; i < 1000; ++i)
                writer.writeLine(std::string(1000, 'x'));
            }),
            61);
}

TEST(TextWriter, anErrorOfClosing_reachesTheCaller) {
  MemorySink::Record record;
  record.closeError = RuntimeError(ErrorNumber::diskFull);
  TextWriter writer(std::make_unique<MemorySink>(record));
  writer.writeLine("text");
  EXPECT_EQ(raisedNumber([&] { writer.close(); }), 61);
  EXPECT_NO_THROW(writer.close());
}

TEST(TextWriter, thatGoes_hidesErrors) {
  MemorySink::Record writing;
  writing.writeError = RuntimeError(ErrorNumber::diskFull);
  EXPECT_NO_THROW(TextWriter(std::make_unique<MemorySink>(writing)).writeLine("text"));
  MemorySink::Record closing;
  closing.closeError = RuntimeError(ErrorNumber::diskFull);
  EXPECT_NO_THROW(TextWriter(std::make_unique<MemorySink>(closing)).writeLine("text"));
}

TEST(TextWriter, whatItWrites_isReadBack) {
  const Lines lines = {"caf\u00E9", "", "\u20AC 5", "a\tb|c"};
  for (const Encoding encoding : {Encoding::utf8, Encoding::utf8WithMark, Encoding::windows1252}) {
    MemorySink::Record record;
    TextWriter writer(std::make_unique<MemorySink>(record), encoding);
    for (const std::string& line : lines)
      writer.writeLine(line);
    writer.close();
    TextReader reader(std::make_unique<MemorySource>(record.bytes));
    EXPECT_EQ(reader.encoding(), encoding);
    EXPECT_EQ(linesOf(reader), lines);
  }
}

} // namespace imex::test
