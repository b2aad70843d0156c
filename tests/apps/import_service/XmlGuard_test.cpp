#include "import_service/XmlGuard.h"

#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::import_service::test {

TEST(XmlGuard, soundXml_passes) {
  requireSoundXml("<a/>");
  requireSoundXml("\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- <b> & --><a b=\"1 > 2\" c='\"'>é\t<b/></a>\n<!--x--> ");
  requireSoundXml("<a b='&#9;&lt;'>&amp;&lt;&gt;&quot;&apos;&#65;&#x1F600;&#x00010FFFF;</a>");
  requireSoundXml("<a><![CDATA[ <b> & ]] ]]></a>");
  requireSoundXml("<a b='c=' c=\"b='1'\" B='' n:b='' bb=''><b b=''/><b b=''></b></a>");
}

struct Unsound {
  std::string xml;
  std::string fault;
};

void PrintTo(const Unsound& unsound, std::ostream* out) {
  *out << unsound.fault;
}

class XmlGuardRefuses : public testing::TestWithParam<Unsound> {};

TEST_P(XmlGuardRefuses, withTheReason) {
  EXPECT_EQ(faultText([] { requireSoundXml(GetParam().xml); }), GetParam().fault);
}

std::string at(const std::string& what, int byte) {
  return "The request is not well-formed XML: " + what + " at byte " + std::to_string(byte) + ".";
}

INSTANTIATE_TEST_SUITE_P(
    XmlGuard, XmlGuardRefuses,
    testing::Values(
        Unsound{"", at("no element", 0)}, Unsound{" \r\n", at("no element", 3)},
        Unsound{"<a>\xC3</a>", "The request is not in UTF-8."},
        Unsound{"<a>\xE9t\xE9</a>", "The request is not in UTF-8."},
        Unsound{std::string("<\0a\0/\0>\0", 8), at("a character that XML forbids", 1)},
        Unsound{"<a>\x1F</a>", at("a character that XML forbids", 3)},
        Unsound{"<a>\xEF\xBF\xBE</a>", at("a character that XML forbids", 3)},
        Unsound{"<a>\xEF\xBF\xBF</a>", at("a character that XML forbids", 3)},
        Unsound{"<!DOCTYPE a><a/>", "The request has a document type declaration, which a SOAP message must not have."},
        Unsound{"<a>&b;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&amp</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>& b</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#0;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#x1F;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#xD800;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#xFFFE;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#x110000;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#-1;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a>&#1A;</a>", at("a reference that stands for nothing", 3)},
        Unsound{"<a b='&c;'/>", at("a reference that stands for nothing", 6)},
        Unsound{"<a b='' c='' b=''/>", at("an attribute that its tag has twice", 13)},
        Unsound{"<a b = '1'\n\tc=\"b='2'\" b\n=\t\"1\"></a>", at("an attribute that its tag has twice", 22)},
        Unsound{"<a><n:b n:c='1'n:c='2'/></a>", at("an attribute that its tag has twice", 15)},
        Unsound{"x<a/>", at("text outside the root element", 0)},
        Unsound{"<a/>x", at("text outside the root element", 4)},
        Unsound{"<a/>&lt;", at("text outside the root element", 4)},
        Unsound{"<a/><b/>", at("a second root element", 4)},
        Unsound{"<a/><![CDATA[x]]>", at("a second root element", 4)}, Unsound{"<a", at("a tag without its end", 0)},
        Unsound{"<a b='>", at("an attribute without its end", 5)}, Unsound{"<a <b/>", at("a tag inside a tag", 3)},
        Unsound{"<a>", at("an element without its end", 3)}, Unsound{"<a></a", at("a tag without its end", 3)},
        Unsound{"</a>", at("an end without its element", 0)},
        Unsound{"<a><!-- </a>", at("a comment without its end", 3)},
        Unsound{"<a><![CDATA[ </a>", at("a CDATA section without its end", 3)},
        Unsound{"<?xml <a/>", at("an instruction without its end", 0)}));

std::string nested(int depth) {
  std::string xml;
  for (int i = 0; i < depth; ++i)
    xml += "<a>";
  for (int i = 0; i < depth; ++i)
    xml += "</a>";
  return xml;
}

TEST(XmlGuard, nesting_isLimited) {
  requireSoundXml(nested(kDeepestElement - 1));
  requireSoundXml(nested(kDeepestElement));
  EXPECT_EQ(faultText([] { requireSoundXml(nested(kDeepestElement + 1)); }),
            "The request has elements more than 32 deep.");
  // Brothers do not count.
  std::string many = "<a>";
  for (int i = 0; i < 100; ++i)
    many += "<b/><c></c>";
  requireSoundXml(many + "</a>");
}

std::string repeatedInside(std::string_view piece, int count) {
  std::string xml = "<r>";
  for (int i = 0; i < count; ++i)
    xml += piece;
  return xml + "</r>";
}

TEST(XmlGuard, width_isLimited) {
  const std::string fault = "The request has more than 2000000 elements, attributes and comments.";
  // The root counts too.
  for (const std::string_view piece : {"<a/>", "<!---->", "<?a?>", "<![CDATA[]]>", "<a></a>"}) {
    requireSoundXml(repeatedInside(piece, kMostPieces - 2));
    requireSoundXml(repeatedInside(piece, kMostPieces - 1));
    EXPECT_EQ(faultText([&] { requireSoundXml(repeatedInside(piece, kMostPieces)); }), fault) << piece;
  }
  requireSoundXml(repeatedInside("<a b=''/>", (kMostPieces - 1) / 2));
  EXPECT_EQ(faultText([&] { requireSoundXml(repeatedInside("<a b=''/>", kMostPieces / 2)); }), fault);
}

} // namespace imex::import_service::test
