// The kinds of messages behind an envelope: the request that is its text, and the two kinds of answers.

#include "platform/soap/FlatAnswer.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "platform/soap/TreeAnswer.h"
#include "platform/soap/failure.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace imex::platform {
namespace {

using test::failure;

host::SoapNode& create(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

/// What stands between the start and the end tag of the method.
std::string inside(const PugiSoapEnvelope& envelope) {
  const std::string text = envelope.serialise();
  const std::size_t begin = text.find("<m>") + 3;
  return text.substr(begin, text.find("</m>") - begin);
}

std::string answerOf(std::string_view body) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><e:Envelope xmlns:e="http://schemas.xmlsoap.org/soap/envelope/"><e:Body>)" +
         std::string(body) + "</e:Body></e:Envelope>";
}

/// Everything that can be seen of an element.
std::string seen(host::SoapNode& node) {
  std::string text = node.name() + '(' + node.text() + ',' + std::to_string(node.count());
  node.forEachChild([&](host::SoapNode& child) { text += ',' + seen(child); });
  return text + ')';
}

bool isFlat(std::string text) {
  return FlatAnswer::read(text, "") != nullptr;
}

// --- Requests -------------------------------------------------------------------------------------------------------

TEST(RequestMessage, elementsFilledInAnyOrder_standInTheOrderOfTheirCreation) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "");
  host::SoapNode& parameters = envelope.parameters();
  std::vector<host::SoapNode*> elements;
  for (const char* const name : {"A", "B", "C", "D"})
    elements.push_back(&create(parameters, name, "1"));
  create(*elements[2], "c");
  create(*elements[0], "a", "x");
  create(*elements[3], "d");
  create(*elements[0], "b");
  create(parameters, "E");
  create(create(*elements[2], "f"), "g", "<");
  EXPECT_EQ(inside(envelope), "<A>1<a>x</a><b/></A><B>1</B><C>1<c/><f><g>&lt;</g></f></C><D>1<d/></D><E/>");
  EXPECT_EQ(seen(parameters), "m(,5,A(1,2,a(x,0),b(,0)),B(1,0),C(1,2,c(,0),f(,1,g(<,0))),D(1,1,d(,0)),E(,0))");
}

TEST(RequestMessage, elementsFilledInARandomOrder_areWhatATreeOfThemIs) {
  struct Plain {
    std::string name;
    std::vector<std::size_t> children;
  };
  std::mt19937 random(5);
  for (int round = 0; round < 100; ++round) {
    PugiSoapEnvelope envelope;
    envelope.setMethod("m", "");
    std::vector<host::SoapNode*> nodes = {&envelope.parameters()};
    std::vector<Plain> plain = {{"m", {}}};
    for (int i = 0; i < 40; ++i) {
      const std::size_t parent = random() % nodes.size();
      const std::string name = "N" + std::to_string(i);
      nodes.push_back(&create(*nodes[parent], name, "v"));
      plain[parent].children.push_back(plain.size());
      plain.push_back({name, {}});
    }
    const std::function<std::string(std::size_t)> write = [&](std::size_t at) {
      std::string text = '<' + plain[at].name + '>' + (at == 0 ? "" : "v");
      for (const std::size_t child : plain[at].children)
        text += write(child);
      return text + "</" + plain[at].name + '>';
    };
    ASSERT_NE(envelope.serialise().find(write(0)), std::string::npos) << write(0);
  }
}

TEST(RequestMessage, greaterSignsInAttributes_endNoTag) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "");
  host::SoapNode& node = envelope.parameters().create("P", "1", "urn:a>b/", "", "");
  EXPECT_EQ(node.text(), "1");
  create(node, "C");
  EXPECT_EQ(inside(envelope), R"(<n:P xmlns:n="urn:a>b/">1<C/></n:P>)");
}

TEST(RequestMessage, blanksInAttributes_areWrittenAsNumbers) {
  PugiSoapEnvelope envelope;
  envelope.setMethod("m", "");
  envelope.parameters().create("P", "", "a\tb\nc\rd", "", "");
  EXPECT_EQ(inside(envelope), R"(<n:P xmlns:n="a&#09;b&#10;c&#13;d"/>)");
}

/// Keeps what it is given, whole or in parts.
class KeepingTransport : public host::HttpTransport {
 public:
  void SetProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void Timeout(std::int32_t) override {}
  void SOAPAction(std::string_view) override {}
  void send(std::string_view endpoint, std::string_view text) override {
    sent = std::string(endpoint) + ' ' + std::string(text);
  }
  std::string Receive(std::string_view) override { return {}; }

  std::string sent;
};

TEST(RequestMessage, whatIsPosted_isWhatIsSerialised) {
  PugiSoapEnvelope envelope;
  KeepingTransport transport;
  EXPECT_EQ(failure([&] { envelope.post(transport, "address"); }),
            "5 PugiSoapEnvelope: Invalid procedure call or argument");
  envelope.setMethod("m", "urn:x");
  create(envelope.header(), "userID", "jb");
  for (int i = 0; i < 1000; ++i)
    create(envelope.parameters(), "LINE", std::string(200, 'x'));
  envelope.post(transport, "address");
  EXPECT_EQ(transport.sent, "address " + envelope.serialise());
}

// --- Answers --------------------------------------------------------------------------------------------------------

TEST(FlatAnswer, takesWhatTheServiceWrites) {
  EXPECT_TRUE(isFlat(answerOf("<m:r xmlns:m='urn:x'><p a=\"1\">&lt;&#233;\r\n\xC3\xA9</p><q/><q></q></m:r>") + "\n"));
}

TEST(FlatAnswer, leavesTheRestToTheTree) {
  for (const std::string_view body : {"<r><!-- --></r>",
                                      "<r><![CDATA[x]]></r>",
                                      "<r><?x?></r>",
                                      "<r></r >",
                                      "<r><p></q></r>",
                                      "<r>&nbsp;</r>",
                                      "<r a='&amp;'/>",
                                      "<r a='<'/>",
                                      "<r a='\x01'/>",
                                      "<r a='\xC3'/>",
                                      "<r>\xEF\xBF\xBF</r>",
                                      "<r><a>1</a>\x01<a>2</a></r>",
                                      "<r a/>",
                                      "<r \xC3\xA9='1'/>",
                                      "<\xC3\xA9/>",
                                      "<r>\x01</r>",
                                      "<r>\xC3</r>",
                                      "<e:Fault/>",
                                      "<r/><e:Fault/>",
                                      "",
                                      " ",
                                      "<r><p></r></p>",
                                      "<r",
                                      "<r a='1'b='2'/>"})
    EXPECT_FALSE(isFlat(answerOf(body))) << body;
  EXPECT_FALSE(isFlat(answerOf("<r/>") + "<a/>"));
  EXPECT_FALSE(isFlat("</a>"));
  EXPECT_FALSE(isFlat(""));
  EXPECT_FALSE(isFlat("<a/>"));
}

TEST(FlatAnswer, eachText_isResolvedForItself) {
  PugiSoapEnvelope envelope;
  const std::string plain(100, 'x');
  const std::string data =
      answerOf("<r><p><a>" + plain + "</a><b>" + plain + "&lt;" + plain + "</b><c>\r\n</c><d>\xC3\xA9\t\n</d><e/>" +
               "<f>1&amp;<g>2</g>3</f><h>" + plain + "</h></p></r>");
  ASSERT_TRUE(isFlat(data));
  envelope.parse(data, "");
  host::SoapNode& node = envelope.parameter(0);
  EXPECT_EQ(node.child("a")->text(), plain);
  EXPECT_EQ(node.child("b")->text(), plain + "<" + plain);
  EXPECT_EQ(node.child("c")->text(), "\n");
  EXPECT_EQ(node.child("d")->text(), "\xC3\xA9\t\n");
  EXPECT_EQ(node.child("e")->text(), "");
  EXPECT_EQ(node.child("f")->text(), "1&3");
  EXPECT_EQ(node.child("f")->child("g")->text(), "2");
  EXPECT_EQ(node.child("h")->text(), plain);
}

TEST(FlatAnswer, aDeclarationWithACharacterThatXmlForbids_isForTheTree) {
  const std::string answer = answerOf("<r/>");
  const std::string rest = answer.substr(answer.find("?>"));
  ASSERT_TRUE(isFlat("<?xml version=\"1.0\"" + rest));
  EXPECT_FALSE(isFlat("<?xml version=\"1.0\" \x01" + rest));
}

TEST(FlatAnswer, thatIsRefused_leavesTheTextAsItWas) {
  const std::string text = answerOf("<r><!-- a comment, and a text that is long enough --></r>");
  std::string data = text;
  EXPECT_EQ(FlatAnswer::read(data, ""), nullptr);
  EXPECT_EQ(data, text);
}

TEST(FlatAnswer, anEndTagOfAnotherName_isNeverTaken) {
  EXPECT_FALSE(isFlat(answerOf("<r><a>1</a><b>2</b><a>1</b></r>")));
  EXPECT_FALSE(isFlat(answerOf("<r><a>1</a><b>2</a></r>")));
  EXPECT_FALSE(isFlat(answerOf("<r><a><b/></a><a><b/></r></a>")));
  EXPECT_TRUE(isFlat(answerOf("<r><a x='1'>1</a><a>2</a><a x='2'>3</a></r>")));
}

TEST(FlatAnswer, deepNesting_isForTheTree) {
  const auto nested = [](std::size_t levels) {
    std::string body;
    for (std::size_t i = 2; i < levels; ++i)
      body += "<a>";
    for (std::size_t i = 2; i < levels; ++i)
      body += "</a>";
    return answerOf(body);
  };
  EXPECT_TRUE(isFlat(nested(100)));
  EXPECT_FALSE(isFlat(nested(256)));
  EXPECT_FALSE(isFlat(nested(257)));
  EXPECT_FALSE(isFlat(nested(100'000)));
}

TEST(FlatAnswer, moreTagsThanItRemembers_areForTheTree) {
  std::string body = "<r>";
  for (int i = 0; i < 300; ++i)
    body += "<n" + std::to_string(i) + "/>";
  EXPECT_FALSE(isFlat(answerOf(body + "</r>")));
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf(body + "</r>"), "");
  EXPECT_EQ(envelope.parameters().count(), 300U);
}

TEST(FlatAnswer, aNode_isOneObjectAndLivesAsLongAsItsMessage) {
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf("<r><p><q>1</q></p><p>2</p></r>"), "");
  host::SoapNode& first = envelope.parameter(0);
  host::SoapNode* const inner = first.child("q");
  envelope.parameters().forEachChild([](host::SoapNode& node) { node.child("q"); });
  EXPECT_EQ(&envelope.parameter(0), &first);
  EXPECT_EQ(envelope.parameters().child("p"), &first);
  EXPECT_EQ(first.child("q"), inner);
  EXPECT_EQ(inner->text(), "1");
  EXPECT_EQ(envelope.parameter(1).text(), "2");
}

TEST(FlatAnswer, thatIsChanged_keepsItsNodes) {
  PugiSoapEnvelope envelope;
  envelope.parse(answerOf("<r><p>1</p><p>2</p></r>"), "");
  host::SoapNode& method = envelope.parameters();
  host::SoapNode& second = envelope.parameter(1);
  create(second, "q", "new");
  EXPECT_EQ(seen(method), "r(,2,p(1,0),p(2,1,q(new,0)))");
  EXPECT_EQ(second.child("q")->text(), "new");
  envelope.setMethod("s", "");
  EXPECT_EQ(method.name(), "s");
  create(envelope.header(), "h");
  EXPECT_EQ(envelope.header().count(), 1U);
  EXPECT_EQ(envelope.serialise().find("<e:Header><h/></e:Header><e:Body><s><p>1</p>") != std::string::npos, true)
      << envelope.serialise();
}

/// An answer of pieces, most of them good.
std::string randomAnswer(std::mt19937& random) {
  static const std::vector<std::string> kPieces = {
      "<a>",    "</a>",  "<b>",  "</b>", "<a/>", "<x:a>", "</x:a>", "<a b='c'>",
      "text",   " ",     "\r\n", "\r",   "&lt;", "\t",    "&#13;",  "\xC3\xA9",
      "&#x41;", "<b />", "]]>",  ">",    "&",    "<",     "é",      "<a b=\"1\"/>"};
  std::vector<std::string> open;
  std::string body = "<r xmlns:x='urn:x'>";
  for (auto count = random() % 30; count > 0; --count) {
    std::string piece = kPieces[random() % kPieces.size()];
    if (piece.starts_with("</") && random() % 16 != 0) {
      if (open.empty())
        continue;
      piece = "</" + open.back() + ">";
      open.pop_back();
    } else if ((piece == "&" || piece == "<") && random() % 8 != 0) {
      continue;
    } else if (piece.starts_with('<') && piece.size() > 1 && !piece.ends_with("/>") && piece[1] != '/') {
      open.push_back(piece.substr(1, piece.find_first_of(" >") - 1));
    }
    body += piece;
  }
  for (; !open.empty(); open.pop_back())
    body += "</" + open.back() + ">";
  return answerOf(body + "</r>");
}

TEST(FlatAnswer, showsWhatTheTreeShows) {
  std::mt19937 random(23);
  int flat = 0;
  for (int round = 0; round < 5000; ++round) {
    const std::string text = randomAnswer(random);
    std::string data = text;
    const auto answer = FlatAnswer::read(data, "");
    if (!answer)
      continue;
    ++flat;
    TreeAnswer tree(text, "");
    ASSERT_EQ(seen(answer->method()), seen(tree.method())) << text;
    ASSERT_EQ(answer->serialise(), tree.serialise()) << text;
  }
  EXPECT_GT(flat, 2000); // else the comparison would show little
}

} // namespace
} // namespace imex::platform
