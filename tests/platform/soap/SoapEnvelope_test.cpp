#include "platform/soap/PugiSoapEnvelope.h"

#include "platform/soap/failure.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace imex::platform {
namespace {

using test::failure;

constexpr std::string_view kSpace = "urn:ImportExportService";
constexpr std::string_view kLiteralXml = "http://xml.apache.org/xml-soap/literalxml";
constexpr std::string_view kSoapSpace = "http://schemas.xmlsoap.org/soap/envelope/";

constexpr std::string_view kRequestStart =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/">)";

constexpr std::string_view kMethodStart = R"(<ns1:importData xmlns:ns1="urn:ImportExportService")"
                                          R"( SOAP-ENV:encodingStyle="http://xml.apache.org/xml-soap/literalxml">)";

// Everything that a message may have, in few bytes.
constexpr std::string_view kRichAnswer =
    "<?xml version='1.0' encoding='UTF-8'?>\n"
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Header/><s:Body>"
    "<m:r xmlns:m='urn:x'><p a=\"1\"><!--c--><q>\xC3\xA9&amp;&#65;</q><?pi x?><w> </w><![CDATA[<]]></p></m:r>"
    "</s:Body></s:Envelope>";

/// A request with its method, and no parameter yet.
void prepare(host::SoapEnvelope& envelope) {
  envelope.setEncodingStyle(kLiteralXml);
  envelope.setMethod("importData", kSpace);
}

host::SoapNode& create(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

std::string answerOf(std::string_view body) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><e:Envelope xmlns:e=")" + std::string(kSoapSpace) + "\"><e:Body>" +
         std::string(body) + "</e:Body></e:Envelope>";
}

/// The error of parsing `data`.
std::string refusal(std::string_view data, std::string_view encoding = "") {
  return failure([&] { PugiSoapEnvelope().parse(data, encoding); });
}

int refusalNumber(std::string_view data, std::string_view encoding = "") {
  const std::string text = refusal(data, encoding);
  return text.empty() ? 0 : std::stoi(text);
}

/// The text of the first parameter of an answer whose body holds `body`.
std::string firstText(std::string_view body) {
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf(body), "");
  return envelope.parameter(0).text();
}

std::string inUtf16(std::string_view text, bool isBigEndian, bool hasMark) {
  std::string bytes;
  const auto push = [&](char32_t unit) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += isBigEndian ? high : low;
    bytes += isBigEndian ? low : high;
  };
  if (hasMark)
    push(0xFEFF);
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint c = codePointAt(text, i);
    i += c.bytes;
    if (c.value >= 0x10000)
      push(0xD800 + ((c.value - 0x10000) >> 10U));
    push(c.value >= 0x10000 ? 0xDC00 + ((c.value - 0x10000) & 0x3FFU) : c.value);
  }
  return bytes;
}

/// Nested elements: the envelope and its body are the first two levels.
std::string nested(std::size_t levels) {
  std::string body;
  for (std::size_t i = 2; i < levels; ++i)
    body += "<a>";
  for (std::size_t i = 2; i < levels; ++i)
    body += "</a>";
  return answerOf(body);
}

/// Visits every node below and adds up what it holds.
std::size_t walk(host::SoapNode& node) {
  std::size_t size = node.name().size() + node.text().size() + node.count();
  node.forEachChild([&](host::SoapNode& child) { size += walk(child); });
  return size;
}

// --- Writing --------------------------------------------------------------------------------------------------------

TEST(SoapEnvelope, request_isOneLineWithDeclarationHeaderAndMethod) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  create(envelope.header(), "userID", "jb");
  host::SoapNode& wrapper = create(create(envelope.parameters(), "PARAM_ELEMENT"), "IMPORTEXPORTWRAPPER");
  host::SoapNode& lines = create(wrapper, "LINES");
  host::SoapNode& information = create(wrapper, "REQUESTINFORMATION");
  create(information, "IMPORTEXPORT", "IMPORT");
  create(lines, "LINE", "A\tB\t");
  create(lines, "LINE", "C\tD\t");

  EXPECT_EQ(envelope.serialise(),
            std::string(kRequestStart) + "<SOAP-ENV:Header><userID>jb</userID></SOAP-ENV:Header><SOAP-ENV:Body>" +
                std::string(kMethodStart) +
                "<PARAM_ELEMENT><IMPORTEXPORTWRAPPER><LINES><LINE>A\tB\t</LINE><LINE>C\tD\t</LINE></LINES>"
                "<REQUESTINFORMATION><IMPORTEXPORT>IMPORT</IMPORTEXPORT></REQUESTINFORMATION>"
                "</IMPORTEXPORTWRAPPER></PARAM_ELEMENT></ns1:importData></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(SoapEnvelope, headerWithoutEntries_isLeftOut) {
  const std::string expected = std::string(kRequestStart) + "<SOAP-ENV:Body>" + std::string(kMethodStart) +
                               "<P/></ns1:importData></SOAP-ENV:Body></SOAP-ENV:Envelope>";
  PugiSoapEnvelope envelope;
  prepare(envelope);
  create(envelope.parameters(), "P");
  EXPECT_EQ(envelope.serialise(), expected);
  EXPECT_EQ(envelope.header().count(), 0U);
  EXPECT_EQ(envelope.serialise(), expected);
}

TEST(SoapEnvelope, headerAskedForEarly_takesEntriesLater) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  host::SoapNode& header = envelope.header();
  envelope.serialise();
  create(header, "userID", "jb");
  EXPECT_NE(envelope.serialise().find("<SOAP-ENV:Header><userID>jb</userID></SOAP-ENV:Header><SOAP-ENV:Body>"),
            std::string::npos);
}

TEST(SoapEnvelope, methodAndStyleInEitherOrder_giveTheSameBytes) {
  PugiSoapEnvelope one;
  one.setMethod("importData", kSpace);
  one.setEncodingStyle(kLiteralXml);
  PugiSoapEnvelope other;
  prepare(other);
  EXPECT_EQ(one.serialise(), other.serialise());
  EXPECT_NE(one.serialise().find(kMethodStart.substr(0, kMethodStart.size() - 1)), std::string::npos);
}

TEST(SoapEnvelope, methodWithoutNamespaceAndStyle_hasNoAttributes) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  envelope.setMethod("ping", "");
  envelope.setEncodingStyle("");
  EXPECT_EQ(envelope.serialise(),
            std::string(kRequestStart) + "<SOAP-ENV:Body><ping/></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(SoapEnvelope, requestWithoutMethod_isNotSerialised) {
  PugiSoapEnvelope envelope;
  create(envelope.parameters(), "P");
  EXPECT_EQ(failure([&] { envelope.serialise(); }), "5 PugiSoapEnvelope: Invalid procedure call or argument");
}

TEST(SoapEnvelope, elementWithNamespaceAndType_declaresThemForItselfAlone) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "");
  host::SoapNode& typed = envelope.parameters().create("P", "1", "urn:p", "int", "http://www.w3.org/2001/XMLSchema");
  create(typed, "C");
  envelope.parameters().create("Q", "", "", "text", "");
  EXPECT_EQ(envelope.serialise(),
            std::string(kRequestStart) +
                R"(<SOAP-ENV:Body><m><n:P xmlns:n="urn:p" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
                R"( xmlns:t="http://www.w3.org/2001/XMLSchema" xsi:type="t:int">1<C/></n:P>)"
                R"(<Q xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:type="text"/>)"
                "</m></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(SoapEnvelope, markupAndLineEndsInText_areEscaped) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "urn:\"a\"&<b>");
  create(envelope.parameters(), "P", "<a href=\"x\">&amp;'\t\r\n\r]]>");
  EXPECT_EQ(
      envelope.serialise(),
      std::string(kRequestStart) + R"(<SOAP-ENV:Body><ns1:m xmlns:ns1="urn:&quot;a&quot;&amp;&lt;b>">)" +
          "<P>&lt;a href=\"x\"&gt;&amp;amp;'\t&#13;\n&#13;]]&gt;</P></ns1:m></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(SoapEnvelope, textBeyondAscii_isUtf8) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "");
  create(envelope.parameters(), "Größe", "Zoë €\xF0\x9F\x98\x80\xC2\x85");
  EXPECT_NE(envelope.serialise().find("<Größe>Zoë €\xF0\x9F\x98\x80\xC2\x85</Größe>"), std::string::npos);
}

struct Unsupported {
  std::string_view text;
  std::string_view what;
};

const Unsupported kUnsupported[] = {
    {std::string_view("\0", 1), "the character U+0000 at position 1"},
    {"ab\x08", "the character U+0008 at position 3"},
    {"é\x0B\x01", "the character U+000B at position 2"},
    {"\r\n\t\x0C", "the character U+000C at position 4"},
    {"\x0E", "the character U+000E at position 1"},
    {"\x1F", "the character U+001F at position 1"},
    {"x\xEF\xBF\xBE", "the character U+FFFE at position 2"},
    {"x\xEF\xBF\xBF", "the character U+FFFF at position 2"},
    {"caf\xE9", "the byte 0xE9 at position 4"},
    {"\xED\xA0\x80", "the byte 0xED at position 1"},
    {"\xC0\x80", "the byte 0xC0 at position 1"},
    {"ok\xF0\x9F\x98", "the byte 0xF0 at position 3"},
};

TEST(SoapEnvelope, textThatXmlCannotCarry_isRefusedWithItsFirstCharacter) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  for (const Unsupported& unsupported : kUnsupported)
    EXPECT_EQ(failure([&] { create(envelope.parameters(), "LINE", unsupported.text); }),
              "1008 PugiSoapEnvelope: The value of LINE has " + std::string(unsupported.what) +
                  ", which XML cannot carry");
  EXPECT_EQ(envelope.parameters().count(), 0U);
}

TEST(SoapEnvelope, namespacesAndTypesThatXmlCannotCarry_areRefused) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  const std::string before = envelope.serialise();
  const std::string end = " has the character U+0001 at position 1, which XML cannot carry";
  EXPECT_EQ(failure([&] { envelope.setEncodingStyle("\x01"); }),
            "1008 PugiSoapEnvelope: The value of SOAP-ENV:encodingStyle" + end);
  EXPECT_EQ(failure([&] { envelope.setMethod("m", "\x01"); }), "1008 PugiSoapEnvelope: The value of m" + end);
  host::SoapNode& node = envelope.parameters();
  EXPECT_EQ(failure([&] { node.create("P", "", "\x01", "", ""); }), "1008 PugiSoapEnvelope: The value of P" + end);
  EXPECT_EQ(failure([&] { node.create("P", "", "", "\x01", ""); }), "1008 PugiSoapEnvelope: The value of P" + end);
  EXPECT_EQ(failure([&] { node.create("P", "", "", "t", "\x01"); }), "1008 PugiSoapEnvelope: The value of P" + end);
  EXPECT_EQ(envelope.serialise(), before);
}

TEST(SoapEnvelope, charactersAtTheEdgesOfXml_areCarried) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  const std::string text = "\t\n\r \x7F\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
  create(envelope.parameters(), "P", text);
  PugiSoapEnvelope answer;
  answer.parse(envelope.serialise(), "");
  EXPECT_EQ(answer.parameter(0).text(), text);
}

TEST(SoapEnvelope, namesThatXmlDoesNotAllow_areRefused) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  for (const std::string_view name :
       {"", "1A", "-A", ".A", "A B", "a:b", "A<", "A>", "A/", "A\t", "A=", "\xFF", "A\xC3"}) {
    EXPECT_EQ(failure([&] { create(envelope.parameters(), name); }),
              "5 PugiSoapEnvelope: Invalid procedure call or argument")
        << name;
    EXPECT_EQ(failure([&] { envelope.setMethod(name, kSpace); }),
              "5 PugiSoapEnvelope: Invalid procedure call or argument")
        << name;
  }
  EXPECT_EQ(envelope.parameters().count(), 0U);
  EXPECT_EQ(envelope.parameters().name(), "importData");
}

TEST(SoapEnvelope, createdNodes_stayWhereTheyAre) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  host::SoapNode& first = create(envelope.parameters(), "P", "first");
  host::SoapNode* const address = &first;
  for (int i = 0; i < 2000; ++i)
    create(envelope.parameters(), "P", "later");
  create(first, "C", "child");
  EXPECT_EQ(&envelope.parameter(0), address);
  EXPECT_EQ(envelope.parameters().child("P"), address);
  EXPECT_EQ(first.text(), "first");
  EXPECT_EQ(first.child("C")->text(), "child");
  EXPECT_EQ(envelope.parameters().count(), 2001U);
}

// --- There and back -------------------------------------------------------------------------------------------------

/// A text of white space, markup and characters of every length of UTF-8.
std::string randomText(std::mt19937& random) {
  constexpr std::string_view kPieces[] = {" ",
                                          "\t",
                                          "\r",
                                          "\n",
                                          "\r\n",
                                          "  ",
                                          "a",
                                          "Z",
                                          "0",
                                          "<",
                                          ">",
                                          "&",
                                          "\"",
                                          "'",
                                          "]]>",
                                          "&#13;",
                                          "<!--",
                                          "-->",
                                          "<![CDATA[",
                                          "?>",
                                          "é",
                                          "€",
                                          "\xF0\x9F\x98\x80",
                                          "\xC2\x85",
                                          "\xE2\x80\xA8",
                                          "\xEF\xBB\xBF"};
  std::uniform_int_distribution<std::size_t> count(0, 12);
  std::uniform_int_distribution<std::size_t> piece(0, std::size(kPieces) - 1);
  std::string text;
  for (std::size_t i = count(random); i > 0; --i)
    text += kPieces[piece(random)];
  return text;
}

TEST(SoapEnvelope, everyText_arrivesAsItWasWritten) {
  std::mt19937 random(20240517);
  for (int round = 0; round < 500; ++round) {
    std::vector<std::string> texts;
    PugiSoapEnvelope request;
    prepare(request);
    for (int i = 0; i < 8; ++i)
      create(request.parameters(), "LINE", texts.emplace_back(randomText(random)));
    PugiSoapEnvelope answer;
    answer.parse(request.serialise(), "UTF-8");
    std::vector<std::string> arrived;
    answer.parameters().forEachChild([&](host::SoapNode& node) { arrived.push_back(node.text()); });
    ASSERT_EQ(arrived, texts);
  }
}

TEST(SoapEnvelope, parsedRequest_serialisesToItsOwnBytes) {
  PugiSoapEnvelope request;
  prepare(request);
  create(request.header(), "userID", "jb");
  create(request.parameters(), "P", " a\r\n<\t");
  const std::string bytes = request.serialise();
  PugiSoapEnvelope again;
  again.parse(bytes, "");
  EXPECT_EQ(again.serialise(), bytes);
  EXPECT_EQ(again.header().child("userID")->text(), "jb");
}

// --- Reading --------------------------------------------------------------------------------------------------------

TEST(SoapEnvelope, answer_givesItsParametersByPositionAndName) {
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf("<m:importDataResponse xmlns:m='urn:x'><first>1</first>\n<m:second>2</m:second>"
                          "</m:importDataResponse>"),
                 "");
  EXPECT_EQ(envelope.parameters().name(), "importDataResponse");
  EXPECT_EQ(envelope.parameter(0).name(), "first");
  EXPECT_EQ(envelope.parameter(1).name(), "second");
  EXPECT_EQ(envelope.parameters().child("second")->text(), "2");
  EXPECT_EQ(envelope.parameters().child("third"), nullptr);
  EXPECT_EQ(envelope.parameters().count(), 2U);
  EXPECT_EQ(failure([&] { envelope.parameter(2); }), "9 PugiSoapEnvelope: Subscript out of range");
}

TEST(SoapEnvelope, children_areVisitedInOrder) {
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf("<r><p> <a>1</a><!-- --><b>2</b>\n<a>3</a>x</p></r>"), "");
  std::string seen;
  envelope.parameter(0).forEachChild([&](host::SoapNode& node) { seen += node.name() + node.text() + ' '; });
  EXPECT_EQ(seen, "a1 b2 a3 ");
  EXPECT_EQ(envelope.parameter(0).child("a")->text(), "1");
  EXPECT_EQ(envelope.parameter(0).text(), " \nx");
}

TEST(SoapEnvelope, whiteSpaceInTexts_isKept) {
  EXPECT_EQ(firstText("<r><p> </p></r>"), " ");
  EXPECT_EQ(firstText("<r><p>\t\n  </p></r>"), "\t\n  ");
  EXPECT_EQ(firstText("<r><p> a  b </p></r>"), " a  b ");
  EXPECT_EQ(firstText("<r><p></p></r>"), "");
  EXPECT_EQ(firstText("<r><p/></r>"), "");
}

TEST(SoapEnvelope, lineEndsOfAnAnswer_areLineFeedsUnlessWrittenAsNumbers) {
  EXPECT_EQ(firstText("<r><p>a\r\nb\rc&#13;&#10;d&#xD;e&#9;</p></r>"), "a\nb\nc\r\nd\re\t");
}

TEST(SoapEnvelope, partsOfAText_areJoined) {
  EXPECT_EQ(firstText("<r><p>a<!-- x --><![CDATA[<b>&amp;]]> <?pi y?>c<k>no</k>d<![CDATA[]]></p></r>"), "a<b>&amp; cd");
}

TEST(SoapEnvelope, references_areResolved) {
  EXPECT_EQ(firstText("<r><p>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#233;&#x20AC;&#x1F600;&#0038;</p></r>"),
            "<>&\"'ABé€\xF0\x9F\x98\x80&");
}

TEST(SoapEnvelope, prefixesOfAnAnswer_areItsOwn) {
  for (const std::string_view answer : {
           "<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body><r "
           "xmlns=''><p>x</p></r></Body></Envelope>",
           "<a:Envelope xmlns:a='http://schemas.xmlsoap.org/soap/envelope/'>"
           "<b:Body xmlns:b='http://schemas.xmlsoap.org/soap/envelope/'><c:r xmlns:c='u'><c:p>x</c:p></c:r></b:Body>"
           "</a:Envelope>",
           "<x:Envelope xmlns:y='urn:other' xmlns:x=\"http://schemas.xmlsoap.org/soap/envelope/\">"
           "<y:Body/><x:Header><x:Body/></x:Header><x:Body><r><p>x</p></r></x:Body></x:Envelope>",
           "<S:Envelope xmlns:S='http://schemas.xmlsoap.org/soap/envelope/' "
           "xmlns='http://schemas.xmlsoap.org/soap/envelope/'>"
           "<Body><r><p>x</p></r></Body></S:Envelope>\r\n<!-- end -->\n",
       }) {
    PugiSoapEnvelope envelope;
    envelope.parse(answer, "");
    EXPECT_EQ(envelope.parameter(0).name(), "p") << answer;
    EXPECT_EQ(envelope.parameter(0).text(), "x") << answer;
  }
}

TEST(SoapEnvelope, parse_replacesTheMessage) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  create(envelope.header(), "userID", "jb");
  create(envelope.parameters(), "P", "request");
  envelope.parse(answerOf("<r><p>answer</p></r>"), "");
  EXPECT_EQ(envelope.parameter(0).text(), "answer");
  EXPECT_EQ(envelope.header().count(), 0U);
  EXPECT_EQ(envelope.serialise(), answerOf("<r><p>answer</p></r>"));
}

TEST(SoapEnvelope, refusedAnswer_leavesAnEmptyMessage) {
  PugiSoapEnvelope envelope;
  prepare(envelope);
  create(envelope.header(), "userID", "jb");
  create(envelope.parameters(), "P", "request");
  EXPECT_THROW(envelope.parse("<html/>", ""), RuntimeError);
  EXPECT_EQ(envelope.parameters().name(), "");
  EXPECT_EQ(envelope.parameters().count(), 0U);
  EXPECT_EQ(envelope.header().count(), 0U);
  prepare(envelope);
  EXPECT_EQ(envelope.serialise(), std::string(kRequestStart) + "<SOAP-ENV:Body>" +
                                      std::string(kMethodStart.substr(0, kMethodStart.size() - 1)) +
                                      "/></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

// --- Encodings ------------------------------------------------------------------------------------------------------

/// An answer that declares `encoding` and whose text is `text`, in whatever bytes that is.
std::string declaring(std::string_view encoding, std::string_view text) {
  return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?><Envelope xmlns='" + std::string(kSoapSpace) +
         "'><Body><r><p>" + std::string(text) + "</p></r></Body></Envelope>";
}

std::string textOf(std::string_view data, std::string_view encoding = "") {
  PugiSoapEnvelope envelope;
  envelope.parse(data, encoding);
  return envelope.parameter(0).text();
}

TEST(SoapEnvelope, encodings_areWhatTheAnswerDeclares) {
  EXPECT_EQ(textOf(declaring("UTF-8", "é€")), "é€");
  EXPECT_EQ(textOf(declaring("utf-8", "é€")), "é€");
  EXPECT_EQ(textOf(declaring("us-ascii", "plain")), "plain");
  EXPECT_EQ(textOf(declaring("iso-8859-1", "caf\xE9")), "café");
  EXPECT_EQ(textOf(declaring("Windows-1252", "\x80")), "€");
  EXPECT_EQ(textOf(declaring("UTF-16", "converted é")), "converted é");
  EXPECT_EQ(textOf("\xEF\xBB\xBF" + declaring("ISO-8859-1", "é")), "é");
}

TEST(SoapEnvelope, utf16_isReadInEitherByteOrder) {
  const std::string answer = declaring("UTF-16", "é€\xF0\x9F\x98\x80");
  for (const bool isBigEndian : {false, true}) {
    EXPECT_EQ(textOf(inUtf16(answer, isBigEndian, true)), "é€\xF0\x9F\x98\x80");
    EXPECT_EQ(textOf(inUtf16(answer, isBigEndian, false)), "é€\xF0\x9F\x98\x80");
    EXPECT_EQ(textOf(inUtf16(answer, isBigEndian, true), "UTF-16"), "é€\xF0\x9F\x98\x80");
    EXPECT_EQ(textOf(inUtf16(answer, isBigEndian, false), isBigEndian ? "utf-16be" : "utf-16le"), "é€\xF0\x9F\x98\x80");
  }
}

TEST(SoapEnvelope, encodingOfTheCaller_countsForMoreThanTheDeclaration) {
  EXPECT_EQ(textOf(declaring("ISO-8859-1", "é"), "UTF-8"), "é");
  EXPECT_EQ(textOf(declaring("ISO-8859-1", "é"), ""), "Ã©");
  EXPECT_EQ(textOf(declaring("UTF-8", "\xE9"), "ISO-8859-1"), "é");
}

TEST(SoapEnvelope, bytesThatAreNotOfTheEncoding_areRefused) {
  EXPECT_EQ(refusal("<a>\xE9</a>"), "1005 PugiSoapEnvelope: The answer is not valid UTF-8: \"<a>?</a>\"");
  EXPECT_EQ(refusal("<a/>", "EBCDIC"),
            "1005 PugiSoapEnvelope: The answer is in an encoding that is not supported, EBCDIC: \"<a/>\"");
  EXPECT_EQ(refusalNumber(declaring("Shift_JIS", "x")), 1005);
  const std::string utf16 = inUtf16(declaring("UTF-16", "x"), false, true);
  EXPECT_EQ(refusalNumber(utf16.substr(0, utf16.size() - 1)), 1005);
  EXPECT_EQ(refusalNumber(utf16 + std::string("\x00\xD8", 2)), 1005);
  EXPECT_EQ(refusalNumber(utf16 + std::string("\x00\xDC", 2)), 1005);
  EXPECT_EQ(refusalNumber(utf16 + std::string("\x00\xD8\x41\x00", 4)), 1005);
}

// --- Faults ---------------------------------------------------------------------------------------------------------

TEST(SoapEnvelope, fault_isAnErrorWithItsTextExactly) {
  EXPECT_EQ(refusal(answerOf("<e:Fault><faultcode>e:Client</faultcode><faultstring> The &lt;user&gt;\n is unknown. "
                             "</faultstring><detail><x/></detail></e:Fault>")),
            "1006 PugiSoapEnvelope:  The <user>\n is unknown. ");
}

TEST(SoapEnvelope, faultWithoutText_hasItsCodeElseASentence) {
  EXPECT_EQ(refusal(answerOf("<e:Fault><faultcode>e:Server</faultcode><faultstring/></e:Fault>")),
            "1006 PugiSoapEnvelope: e:Server");
  EXPECT_EQ(refusal(answerOf("<e:Fault><faultcode>e:Server</faultcode></e:Fault>")), "1006 PugiSoapEnvelope: e:Server");
  EXPECT_EQ(refusal(answerOf("<e:Fault><faultstring> </faultstring></e:Fault>")),
            "1006 PugiSoapEnvelope: The service answered with a SOAP fault that has no text");
  EXPECT_EQ(refusal(answerOf("<e:Fault/>")),
            "1006 PugiSoapEnvelope: The service answered with a SOAP fault that has no text");
}

TEST(SoapEnvelope, faultBehindAnotherElement_isAFault) {
  EXPECT_EQ(refusal(answerOf("<r/><e:Fault><faultstring>late</faultstring></e:Fault>")), "1006 PugiSoapEnvelope: late");
}

TEST(SoapEnvelope, elementOfTheNameInAnotherNamespace_isNoFault) {
  EXPECT_EQ(firstText("<Fault xmlns='urn:x'><p>fine</p></Fault>"), "fine");
}

TEST(SoapEnvelope, isSoapFault_knowsFaultsFromOtherAnswers) {
  EXPECT_TRUE(isSoapFault(answerOf("<e:Fault><faultstring>x</faultstring></e:Fault>"), ""));
  EXPECT_FALSE(isSoapFault(answerOf("<r/>"), ""));
  EXPECT_FALSE(isSoapFault("<html/>", ""));
  EXPECT_FALSE(isSoapFault("", ""));
}

// --- Answers that are none ------------------------------------------------------------------------------------------

struct Refusal {
  std::string_view data;
  std::string_view description;
};

const Refusal kRefusals[] = {
    {"", "The answer is empty"},
    {" \r\n\t", "The answer is empty"},
    {"\xEF\xBB\xBF", "The answer is empty"},
    {"\n<!doctype HTML>\n<title>Sign in</title>",
     R"(The answer is an HTML page and not a SOAP message: "<!doctype HTML> <title>Sign in</title>")"},
    {"<HTML><body>no</body></HTML>",
     R"(The answer is an HTML page and not a SOAP message: "<HTML><body>no</body></HTML>")"},
    {"OK", R"(The answer is not well-formed XML (content outside of the root element): "OK")"},
    {"<a/>b", R"(The answer is not well-formed XML (content outside of the root element): "<a/>b")"},
    {"<a/><b/>", R"(The answer is not well-formed XML (content outside of the root element): "<a/><b/>")"},
    {"<![CDATA[x]]><a/>",
     R"(The answer is not well-formed XML (content outside of the root element): "<![CDATA[x]]><a/>")"},
    {"<a>&nbsp;</a>", R"(The answer is not well-formed XML (unknown reference at byte 3): "<a>&nbsp;</a>")"},
    {"<a>\x01</a>", R"(The answer has the character U+0001, which XML forbids: "<a> </a>")"},
    {"<!-- only a comment -->", R"(The answer is not a SOAP 1.1 message: "<!-- only a comment -->")"},
    {"<a/>", R"(The answer is not a SOAP 1.1 message: "<a/>")"},
    {"<Envelope/>", R"(The answer is not a SOAP 1.1 message: "<Envelope/>")"},
    {"<x:Envelope/>", R"(The answer is not a SOAP 1.1 message: "<x:Envelope/>")"},
    {"<Envelope xmlns='http://www.w3.org/2003/05/soap-envelope'><Body/></Envelope>",
     "The answer is not a SOAP 1.1 message: "
     "\"<Envelope xmlns='http://www.w3.org/2003/05/soap-envelope'><Body/></Envelope>\""},
    {"<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'/>",
     "The answer is a SOAP message without a body: \"<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'/>\""},
    {"<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body> </Body></Envelope>",
     "The answer is a SOAP message with an empty body: "
     "\"<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body> </Body></Enve...\""},
};

TEST(SoapEnvelope, answersThatAreNone_areRefusedWithAReason) {
  for (const Refusal& expected : kRefusals)
    EXPECT_EQ(refusal(expected.data), "1005 PugiSoapEnvelope: " + std::string(expected.description));
}

TEST(SoapEnvelope, brokenXml_isRefused) {
  for (const std::string_view broken : {"<a>",
                                        "<a",
                                        "<",
                                        "</a>",
                                        "<a></b>",
                                        "<a b></a>",
                                        "<a b=c/>",
                                        "<a b='1/>",
                                        "<a><b></a></b>",
                                        "<a><!-- </a>",
                                        "<a><![CDATA[ </a>",
                                        "<a><? </a>",
                                        "<1/>",
                                        "<a>&</a>",
                                        "<a>&amp</a>",
                                        "<a b='&'/>",
                                        "<a>&#0;</a>",
                                        "<a>&#x;</a>",
                                        "<a>&#;</a>",
                                        "<a>&#xFFFE;</a>",
                                        "<a>&#xD800;</a>",
                                        "<a>&#x110000;</a>",
                                        "<a>&#99999999999;</a>",
                                        "<a>&#-5;</a>",
                                        "<a>&#XA;</a>",
                                        "<a>&#1;</a>",
                                        "<a>&;</a>"}) {
    // Inside of a good message, so that nothing but the markup is wrong.
    EXPECT_EQ(refusalNumber(answerOf("<r><p>" + std::string(broken) + "</p></r>")), 1005) << broken;
    EXPECT_EQ(refusalNumber(broken), 1005) << broken;
  }
}

TEST(SoapEnvelope, numberOfNul_isRefusedAndDoesNotCutTheText) {
  EXPECT_EQ(refusal(answerOf("<r><p>ab&#x0;cd</p></r>")).substr(0, 5), "1005 ");
  EXPECT_EQ(refusal(answerOf(std::string("<r><p>ab\0cd</p></r>", 19))).substr(0, 5), "1005 ");
}

TEST(SoapEnvelope, documentType_isRefusedBeforeAnyEntityCounts) {
  const std::string message = answerOf("<r><p>&lol9;</p></r>");
  const std::string body = message.substr(message.find("?>") + 2);
  const std::string laughs = "<!DOCTYPE lolz [<!ENTITY lol \"lol\"><!ENTITY lol9 \"&lol;&lol;&lol;\">]>";
  const std::string reason = "1005 PugiSoapEnvelope: The answer has a document type declaration, which a SOAP message "
                             "must not have: ";
  EXPECT_EQ(refusal(laughs + body),
            reason + "\"<!DOCTYPE lolz [<!ENTITY lol \"lol\"><!ENTITY lol9 \"&lol;&lol;&lol;\">]><e:Envelope...\"");
  EXPECT_EQ(refusal("<!DOCTYPE a SYSTEM 'file:///etc/passwd'>" + body).substr(0, reason.size()), reason);
  EXPECT_EQ(refusal("<?xml version='1.0'?><!-- -->\n<!DOCTYPE e:Envelope>" + body).substr(0, reason.size()), reason);
  EXPECT_EQ(refusalNumber(answerOf("<r/>") + "<!DOCTYPE a>"), 1005);
  EXPECT_EQ(refusalNumber(answerOf("<r><!DOCTYPE a></r>")), 1005);
}

TEST(SoapEnvelope, documentTypeInsideCommentsAndCdata_isText) {
  EXPECT_EQ(firstText("<r><!-- <!DOCTYPE a> &x; --><p><![CDATA[<!DOCTYPE a>&x;]]></p><?x <!DOCTYPE &x;?></r>"),
            "<!DOCTYPE a>&x;");
}

TEST(SoapEnvelope, nesting_endsAt256Elements) {
  PugiSoapEnvelope envelope;
  envelope.parse(nested(256), "");
  EXPECT_EQ(envelope.parameters().name(), "a");
  EXPECT_EQ(refusal(nested(257)).substr(0, 80),
            "1005 PugiSoapEnvelope: The answer is nested deeper than 256 elements: \"<?xml ver");
  EXPECT_EQ(refusalNumber(nested(1'000'000)), 1005);
}

TEST(SoapEnvelope, everyTruncation_isRefused) {
  ASSERT_EQ(refusal(kRichAnswer), "");
  for (std::size_t size = 0; size < kRichAnswer.size(); ++size)
    EXPECT_EQ(refusalNumber(kRichAnswer.substr(0, size)), 1005) << kRichAnswer.substr(0, size);
}

TEST(SoapEnvelope, everyChangedByte_isReadOrRefused) {
  for (std::size_t position = 0; position < kRichAnswer.size(); ++position) {
    for (int value = 0; value < 256; ++value) {
      std::string changed(kRichAnswer);
      changed[position] = static_cast<char>(value);
      PugiSoapEnvelope envelope;
      const std::string error = failure([&] { envelope.parse(changed, ""); });
      const bool isRefused = error.starts_with("1005 ") || error.starts_with("1006 ");
      ASSERT_TRUE(error.empty() || isRefused) << error << changed;
      ASSERT_EQ(walk(envelope.parameters()) == 0, isRefused) << changed;
    }
  }
}

TEST(SoapEnvelope, manyChangedBytes_areReadOrRefused) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> position(0, kRichAnswer.size() - 1);
  constexpr std::string_view kBytes = "<>/&;?![]-=:'\" \t\na1#x\x00\xFF\xC3";
  std::uniform_int_distribution<std::size_t> byte(0, kBytes.size() - 1);
  for (int round = 0; round < 20'000; ++round) {
    std::string changed(kRichAnswer);
    for (int i = 0; i < 3; ++i)
      changed[position(random)] = kBytes[byte(random)];
    PugiSoapEnvelope envelope;
    const std::string error = failure([&] { envelope.parse(changed, ""); });
    ASSERT_TRUE(error.empty() || error.starts_with("1005 ") || error.starts_with("1006 ")) << error << changed;
    walk(envelope.parameters());
  }
}

} // namespace
} // namespace imex::platform
