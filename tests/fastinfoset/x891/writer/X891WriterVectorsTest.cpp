#include <gtest/gtest.h>

#include "HexOctets.h"
#include "X891NaiveDecoder.h"
#include "X891WriterSupport.h"

// Short documents, octet for octet as ITU-T X.891 has them.

namespace x891_test {
namespace {

using namespace Tavrin;

/// A whole document of one element.
std::string element(
    const std::string& uri, const std::string& localName, const std::string& qName,
    const Attributes& list, const std::function<void(Writer&)>& before = [](Writer&) {}) {
  return written([&](Writer& writer) {
    writer.startDocument();
    before(writer);
    writer.startElement(uri, localName, qName, list);
    writer.endElement(uri, localName, qName);
    writer.endDocument();
  });
}

TEST(X891Writer, IsRegistered) {
  EXPECT_NE(dynamic_cast<XMLWriter_X891*>(XMLWriterFactory::createXMLWriter("x891").get()),
            nullptr);
}

TEST(X891Writer, WritesElementsAndAttributes) {
  EXPECT_EQ(element("", "a", "a", attributes({})), document("3C 00 'a' FF"));
  EXPECT_EQ(element("", "a", "a", attributes({{"b", "c"}})),
            document("7C 00 'a' 78 00 'b' 40 'c' FF F0"));
  EXPECT_EQ(element("", "a", "a", attributes({{"b", ""}})),
            document("7C 00 'a' 78 00 'b' FF FF F0"));
  EXPECT_EQ(content([](Writer& writer) { writer.leaf("a"); }), document("3C 00 'a' 00 FF F0"));
}

TEST(X891Writer, WritesText) {
  EXPECT_EQ(content([](Writer& writer) { writer.characters("text"); }),
            document("3C 00 'a' 92 01 'text' FF"));
  EXPECT_EQ(content([](Writer& writer) {
              writer.set(properties::indexedChunkLength, std::uint64_t{3});
              writer.characters("text");
            }),
            document("3C 00 'a' 82 01 'text' FF"));
}

TEST(X891Writer, WritesNamespaces) {
  EXPECT_EQ(element("u", "a", "a", attributes({}),
                    [](Writer& writer) { writer.startPrefixMapping("", "u"); }),
            document("38 CD 00 'u' F0 3D 81 00 'a' FF"));
  EXPECT_EQ(element("u", "a", "p:a", attributes({}),
                    [](Writer& writer) { writer.startPrefixMapping("p", "u"); }),
            document("38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' FF"));
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.startPrefixMapping("", "u");
              writer.startElement("u", "a", "a", AttributesImpl());
              writer.startPrefixMapping("", "");
              writer.leaf("b");
              writer.endPrefixMapping("");
              writer.endElement("u", "a", "a");
              writer.endPrefixMapping("");
              writer.endDocument();
            }),
            document("38 CD 00 'u' F0 3D 81 00 'a' 38 CC F0 3C 00 'b' FF F0"));
}

TEST(X891Writer, NeedsNoDeclarationOfXml) {
  EXPECT_EQ(element("", "a", "a", namedAttributes({{namespaces::xml, "lang", "xml:lang", "en"}})),
            document("7C 00 'a' 7B 80 80 03 'lang' 41 'en' FF F0"));
}

TEST(X891Writer, WritesInstructionsAndComments) {
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [](Writer& writer) { writer.processingInstruction("p", "d"); }),
            document("E1 00 'p' 40 'd' 3C 00 'a' FF"));
  EXPECT_EQ(content([](Writer& writer) { writer.comment("c"); }),
            document("3C 00 'a' E2 40 'c' FF"));
  // Not added to a table, as a writer may also choose.
  const auto nothingIndexed = [](Writer& writer) {
    writer.set(properties::indexedAttributeValueLength, std::uint64_t{0});
  };
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [&](Writer& writer) {
                      nothingIndexed(writer);
                      writer.processingInstruction("p", "d");
                    }),
            document("E1 00 'p' 00 'd' 3C 00 'a' FF"));
  EXPECT_EQ(content([&](Writer& writer) {
              nothingIndexed(writer);
              writer.comment("c");
            }),
            document("3C 00 'a' E2 00 'c' FF"));
}

TEST(X891Writer, WritesTypedContent) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.ints({1, -2});
            }),
            document("3C 00 'a' 8C 0E 05 00 00 00 01 FF FF FF FE FF"));
}

TEST(X891Writer, WritesTheIdentifiersOfTheDocumentType) {
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [](Writer& writer) {
                      writer.startDTD("a", "p", "s");
                      writer.endDTD();
                    }),
            document("C7 00 's' 00 'p' F0 3C 00 'a' FF"));
}

TEST(X891Writer, WritesStandaloneAndVersion) {
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [](Writer& writer) {
                      writer.set(properties::standalone, true);
                      writer.set(properties::documentXMLVersion, std::string("1.0"));
                    }),
            hex("E0 00 00 01 03 01 02 31 2E 30 3C 00 'a' FF"));
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [](Writer& writer) { writer.set(properties::standalone, false); }),
            hex("E0 00 00 01 02 00 3C 00 'a' FF"));
}

TEST(X891Writer, WritesNotationsAndUnparsedEntities) {
  EXPECT_EQ(element("", "a", "a", attributes({}),
                    [](Writer& writer) {
                      writer.startDTD("a", "", "");
                      writer.notationDecl("n", "", "s");
                      writer.unparsedEntityDecl("e", "", "f", "n");
                      writer.endDTD();
                    }),
            hex("E0 00 00 01 18 C2 00 'n' 00 's' F0 D0 00 'e' 00 'f' 80 F0 3C 00 'a' FF"));
}

// --- The decoder that judges: what the writer does not write ---

std::string decoded(const std::string& notation) {
  return join(x891::decode(::octets("E0 00 00 01 00 3C 00 'a'" + notation + "FF")).lines);
}

/// The events of an element `a` with some content.
std::string events(const std::string& lines) {
  return "startDocument()\nstartElement(, a, a, [])\n" + lines +
         "endElement(, a, a)\nendDocument()\n";
}

TEST(X891NaiveDecoder, KnowsAlphabetsAndUTF16) {
  EXPECT_EQ(decoded("88 01 12 C5"), events("characters(12.5)\n"));
  EXPECT_EQ(decoded("88 01 12 3F"), events("characters(123)\n"));
  EXPECT_EQ(decoded("88 06 02 20 03 A0 2A 03"), events("characters(2003-02-03)\n"));
  EXPECT_EQ(decoded("86 03 D8 3D DE 00 00 'x'"), events("characters(\xF0\x9F\x98\x80x)\n"));
  EXPECT_EQ(decoded("98 01 12 C5 A0"), events("characters(12.5)\ncharacters(12.5)\n"));
}

TEST(X891NaiveDecoder, KnowsDeclarations) {
  const std::string xml = "<?xml version='1.0' encoding='finf' standalone='yes'?>";
  const std::string octets = xml + ::octets("E0 00 00 01 00 3C 00 'a' FF");
  EXPECT_EQ(join(x891::decode(octets).lines), events(""));
  EXPECT_ANY_THROW(x891::decode("<?xml encoding='FINF'?>" + octets.substr(xml.size())));
}

TEST(X891NaiveDecoder, RefusesWhatIsNoDocument) {
  EXPECT_ANY_THROW(decoded("E0"));
  EXPECT_ANY_THROW(decoded("A0"));
  EXPECT_ANY_THROW(decoded("88 01 12 F5"));
  EXPECT_ANY_THROW(decoded("3C 00 'b' FF"));
  EXPECT_ANY_THROW(x891::decode(::octets("E0 00 00 01 00 F0")));
  EXPECT_ANY_THROW(x891::decode(::octets("E0 00 00 01 00 3C 00 'a'")));
}

}  // namespace
}  // namespace x891_test
