#include <gtest/gtest.h>

#include "HexOctets.h"
#include "X891NaiveDecoder.h"
#include "X891WriterSupport.h"

// Initial and external vocabularies.

namespace x891_test {
namespace {

using namespace Tavrin;

template <std::uint32_t Count>
StringTable table(const char* const (&entries)[Count], std::uint32_t occupied = Count) {
  return {entries, Count, occupied};
}

template <std::uint32_t Count>
QualifiedNameTable table(const char* const (&entries)[Count][3], std::uint32_t occupied = Count) {
  return {entries, Count, occupied};
}

std::string withInitial(const ExternalVocabulary& vocabulary,
                        const std::function<void(Writer&)>& events) {
  return written([&](Writer& writer) {
    writer.set(properties::initialVocabulary, vocabulary);
    writer.startDocument();
    events(writer);
    writer.endDocument();
  });
}

TEST(X891WriterInitialVocabulary, WritesEveryTable) {
  static const char* const alphabets[] = {"01"};
  static const char* const algorithms[] = {"u:a"};
  static const char* const prefixes[] = {"p", "q"};
  static const char* const uris[] = {"u"};
  static const char* const locals[] = {"l"};
  static const char* const names[] = {"n"};
  static const char* const others[] = {"s"};
  static const char* const values[] = {"v"};
  static const char* const chunks[] = {"c", "123456789"};
  static const char* const strings[] = {"t"};
  static const char* const elements[][3] = {{nullptr, "", "l"}, {"p", "u", "l"}};
  static const char* const attributes[][3] = {{"xml", namespaces::xml, "l"}, {"", "u", "l"}};
  ExternalVocabulary vocabulary;
  vocabulary.restrictedAlphabets = table(alphabets);
  vocabulary.encodingAlgorithms = table(algorithms);
  vocabulary.prefixes = table(prefixes);
  vocabulary.namespaceNames = table(uris);
  vocabulary.localNames = table(locals);
  vocabulary.otherNCNames = table(names);
  vocabulary.otherURIs = table(others);
  vocabulary.attributeValues = table(values);
  vocabulary.contentCharacterChunks = table(chunks);
  vocabulary.otherStrings = table(strings);
  vocabulary.elementNameSurrogates = table(elements);
  vocabulary.attributeNameSurrogates = table(attributes);
  EXPECT_EQ(withInitial(vocabulary,
                        [](Writer& writer) {
                          writer.startPrefixMapping("p", "u");
                          writer.startElement(
                              "u", "l", "p:l",
                              namedAttributes({{namespaces::xml, "l", "xml:l", "v"}}));
                          writer.characters("123456789");
                          writer.octets("u:a", 0, "x");
                          writer.processingInstruction("n", "t");
                          writer.leaf("l");
                          writer.leaf("n");
                          writer.endElement("u", "l", "p:l");
                        }),
            hex("E0 00 00 01 20 0F FF"
                "00 01 '01' 00 02 'u:a' 01 00 'p' 00 'q' 00 00 'u' 00 00 'l' 00 00 'n' 00 00 's'"
                "00 00 'v' 01 00 'c' 08 00 '123456789' 00 00 't'"
                "01 00 00 03 01 01 00 01 03 00 00 00 01 01 00"
                "78 CF 81 81 F0 01 00 80 F0 A1 8C 7C 'x' E1 80 80 00 F0 3C 00 'n' FF F0"));
}

TEST(X891WriterInitialVocabulary, IsNotWrittenWhereItIsEmpty) {
  EXPECT_EQ(withInitial({}, [](Writer& writer) { writer.leaf("a"); }), document("3C 00 'a' FF"));
}

TEST(X891WriterInitialVocabulary, AddsWhatItsNamesNeed) {
  static const char* const uris[] = {"v"};
  static const char* const elements[][3] = {{"p", "u", "l"}, {"p", "v", "l"}};
  static const char* const attributes[][3] = {{"", "", "m"}};
  ExternalVocabulary vocabulary;
  vocabulary.namespaceNames = table(uris);
  vocabulary.elementNameSurrogates = table(elements);
  vocabulary.attributeNameSurrogates = table(attributes);
  EXPECT_EQ(withInitial(vocabulary,
                        [](Writer& writer) {
                          writer.startPrefixMapping("p", "v");
                          writer.startElement("v", "l", "p:l", ::attributes({{"m", ""}}));
                          writer.endElement("v", "l", "p:l");
                        }),
            hex("E0 00 00 01 20 03 83 00 00 'p' 01 00 'v' 00 'u' 01 00 'l' 00 'm'"
                "01 03 01 02 00 03 01 01 00 00 00 01"
                "78 CF 81 81 F0 01 00 FF FF F0"));
}

// A repeated entry takes its index, but nobody needs it; the built-in prefix may be repeated, too.
TEST(X891WriterInitialVocabulary, MayRepeatEntries) {
  static const char* const prefixes[] = {"xml", "p", "p", "q"};
  static const char* const locals[] = {"a", "a", "b"};
  ExternalVocabulary vocabulary;
  vocabulary.prefixes = table(prefixes);
  vocabulary.localNames = table(locals);
  EXPECT_EQ(withInitial(vocabulary,
                        [](Writer& writer) {
                          writer.startPrefixMapping("q", "u");
                          writer.leaf("c");
                        }),
            hex("E0 00 00 01 20 02 80 03 02 'xml' 00 'p' 00 'p' 00 'q' 02 00 'a' 00 'a' 00 'b'"
                "38 CF 84 00 'u' F0 3C 00 'c' FF"));
  EXPECT_EQ(withInitial(vocabulary,
                        [](Writer& writer) {
                          writer.start("c");
                          writer.leaf("b");
                          writer.leaf("a", {{"c", ""}});
                          writer.end("c");
                        }),
            hex("E0 00 00 01 20 02 80 03 02 'xml' 00 'p' 00 'p' 00 'q' 02 00 'a' 00 'a' 00 'b'"
                "3C 00 'c' 3C 82 F0 7C 80 78 83 FF FF FF"));
}

// C.21: 1 to 128 in one octet, then three.
TEST(X891WriterInitialVocabulary, HasANumberOfItemsOfEveryForm) {
  for (const auto& [count, form] :
       {std::pair{128, "7F"}, {129, "80 00 00"}, {130, "80 00 01"}, {65665, "81 00 00"}}) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) texts.push_back("n" + std::to_string(i));
    std::vector<const char*> entries;
    std::string items;
    for (const std::string& text : texts) {
      entries.push_back(text.c_str());
      items += static_cast<char>(text.size() - 1) + text;
    }
    ExternalVocabulary vocabulary;
    vocabulary.localNames = {entries.data(), static_cast<std::uint32_t>(count), 0};
    const std::string octets = EventLog::showOctets(
        ::octets(std::string("E0 00 00 01 20 00 80 ") + form) + items + ::octets("3C 80 FF"));
    EXPECT_EQ(withInitial(vocabulary, [](Writer& writer) { writer.leaf("n0"); }), octets);
  }
}

/// What refuses the root of a document with an initial vocabulary.
std::string refusalOf(const ExternalVocabulary& vocabulary) {
  Writer writer;
  writer.set(properties::initialVocabulary, vocabulary);
  writer.startDocument();
  const std::string outcome = thrown([&] { writer.start("a"); });
  if (outcome == "nothing") return outcome;
  writer.setProperty(properties::initialVocabulary, nullptr);
  writer.start("a");
  if (writer.written() != document("3C 00 'a'")) return "something stayed";
  return outcome;
}

template <std::uint32_t Count>
std::string refusalOf(StringTable ExternalVocabulary::*member,
                      const char* const (&entries)[Count]) {
  ExternalVocabulary vocabulary;
  vocabulary.*member = table(entries);
  return refusalOf(vocabulary);
}

TEST(X891WriterInitialVocabulary, IsRefusedWhereItIsNotPossible) {
  using V = ExternalVocabulary;
  const std::string empty = "SAXException: An entry of the vocabulary is empty";
  EXPECT_EQ(refusalOf(&V::localNames, {"a", nullptr}), empty);
  EXPECT_EQ(refusalOf(&V::otherStrings, {""}), empty);
  const std::string fewer =
      "SAXException: A restricted alphabet of the vocabulary has fewer than two characters";
  EXPECT_EQ(refusalOf(&V::restrictedAlphabets, {"01", "1"}), fewer);
  EXPECT_EQ(refusalOf(&V::restrictedAlphabets, {"\xC3\xA9"}), fewer);
  EXPECT_EQ(refusalOf(&V::restrictedAlphabets, {"010"}),
            "SAXException: A restricted alphabet of the vocabulary repeats a character");
  EXPECT_EQ(refusalOf(&V::prefixes, {"1"}), "SAXException: \"1\" is not a name");
  EXPECT_EQ(refusalOf(&V::otherNCNames, {"a:b"}),
            "SAXException: \"a:b\" is not a name without a colon");
  EXPECT_EQ(refusalOf(&V::otherURIs, {"\xFF"}),
            "SAXException: You cannot put UTF-8 octet 0xFF into a URI");
  EXPECT_EQ(refusalOf(&V::attributeValues, {"\x01"}),
            "SAXException: You cannot put character U+0001 into the vocabulary");
  static const char* const names[][3] = {{"p", "", "l"}};
  V vocabulary;
  vocabulary.elementNameSurrogates = table(names);
  EXPECT_EQ(refusalOf(vocabulary),
            "SAXException: A name of the vocabulary has a prefix, but no namespace");
  static const char* const nameless[][3] = {{nullptr, "u", nullptr}};
  vocabulary.elementNameSurrogates = table(nameless);
  EXPECT_EQ(refusalOf(vocabulary), "SAXException: \"\" is not a name");
  const std::vector<const char*> alphabets(242, "01");
  vocabulary = {};
  vocabulary.restrictedAlphabets = {alphabets.data(), 241, 0};
  EXPECT_EQ(refusalOf(vocabulary), "nothing");
  vocabulary.restrictedAlphabets = {alphabets.data(), 242, 0};
  EXPECT_EQ(refusalOf(vocabulary), "SAXException: More than 241 restricted alphabets");
  const std::vector<const char*> many((1 << 20) + 1, "a");
  const std::string tooMany =
      "SAXException: A table of the vocabulary has more than 1048576 entries";
  vocabulary = {};
  vocabulary.localNames = {many.data(), 1 << 20, 0};
  EXPECT_EQ(refusalOf(vocabulary), "nothing");
  vocabulary.localNames = {many.data(), (1 << 20) + 1, 0};
  EXPECT_EQ(refusalOf(vocabulary), tooMany);
  vocabulary = {};
  vocabulary.prefixes = {many.data(), 1 << 20, 0};  // One is built in.
  EXPECT_EQ(refusalOf(vocabulary), tooMany);
}

// --- External ---

class X891WriterExternalVocabulary : public testing::Test {
 protected:
  X891WriterExternalVocabulary() {
    static const char* const algorithms[] = {"u:a"};
    static const char* const prefixes[] = {"p"};
    static const char* const uris[] = {"u", "v"};
    static const char* const locals[] = {"l", "m"};
    static const char* const names[] = {"n"};
    static const char* const values[] = {"value"};
    static const char* const chunks[] = {"c"};
    static const char* const elements[][3] = {{"p", "u", "l"}};
    vocabulary.encodingAlgorithms = table(algorithms, 3);
    vocabulary.prefixes = table(prefixes, 2);
    vocabulary.namespaceNames = table(uris);
    vocabulary.localNames = table(locals, 70);
    vocabulary.otherNCNames = table(names);
    vocabulary.attributeValues = table(values);
    vocabulary.contentCharacterChunks = table(chunks);
    vocabulary.elementNameSurrogates = table(elements);
    known = {{"urn:known", &vocabulary}, {"urn:null", nullptr}};
    writer.setProperty(properties::externalVocabularies, &known);
    writer.set(properties::externalVocabulary, std::string("urn:known"));
  }

  ExternalVocabulary vocabulary;
  ExternalVocabularyMap known;
  Writer writer;
};

TEST_F(X891WriterExternalVocabulary, IsNamedAndUsed) {
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.startPrefixMapping("q", "v");
  writer.startElement("u", "l", "p:l", namedAttributes({{"v", "m", "q:m", "value"}}));
  writer.characters("c");
  writer.octets("u:a", 0, "x");
  writer.octets("", 31, "y");
  EXPECT_EQ(thrown([&] { writer.octets("", 32, "y"); }),
            unknownAlgorithm("number 32, which the document does not name"));
  writer.processingInstruction("n", "");
  writer.leaf("new");
  writer.leaf("l", {{"new", ""}});
  writer.endElement("u", "l", "p:l");
  writer.endDocument();
  // The built-in prefix, the external one and a gap come before `q`; `new` is the 71st name.
  EXPECT_EQ(writer.written(),
            hex("E0 00 00 01 20 10 00 08 'urn:known'"
                "78 CF 81 81 CF 00 'q' 82 F0 00 7B 83 82 81 80 F0"
                "A0 8C 7C 'x' 8C 7C 'y' E1 80 FF 3C 02 'new' F0 7C 80 78 C0 06 FF FF FF"));
}

// It is the application's own, and is not checked.
TEST_F(X891WriterExternalVocabulary, MayHoldWhatNoValueMayBe) {
  static const char* const values[] = {nullptr, "\x01", "ok"};
  vocabulary.attributeValues = table(values);
  writer.startDocument();
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "a", "a", namedAttributes({{"", "b", "b", "\x01"}}));
            }),
            "SAXException: You cannot put character U+0001 into an attribute value");
  writer.startElement("", "a", "a", namedAttributes({{"", "b", "b", ""}, {"", "c", "c", "ok"}}));
  writer.endElement("", "a", "a");
  writer.endDocument();
  EXPECT_EQ(writer.written(), hex("E0 00 00 01 20 10 00 08 'urn:known'"
                                  "7C 00 'a' 78 00 'b' FF 78 00 'c' 82 FF F0"));
}

TEST_F(X891WriterExternalVocabulary, StandsInFrontOfTheOwn) {
  static const char* const alphabets[] = {"ab"};
  static const char* const prefixes[] = {"r"};
  static const char* const elements[][3] = {{"r", "u", "l"}};
  ExternalVocabulary own;
  own.restrictedAlphabets = table(alphabets);
  own.prefixes = table(prefixes);
  own.elementNameSurrogates = table(elements);
  writer.set(properties::initialVocabulary, own);
  EncodingAlgorithmMap algorithms = {{"u:a", nullptr}, {"u:b", nullptr}};
  writer.setProperty(properties::registeredEncodingAlgorithms, &algorithms);
  writer.startDocument();
  writer.startPrefixMapping("r", "u");
  writer.startElement("u", "l", "r:l", AttributesImpl());
  writer.octets("u:b", 0, "x");
  writer.endElement("u", "l", "r:l");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            hex("E0 00 00 01 20 1E 02 08 'urn:known' 00 01 'ab' 00 02 'u:b' 00 00 'r'"
                "00 03 03 01 00 38 CF 83 81 F0 01 8C 88 'x' FF"));
}

TEST_F(X891WriterExternalVocabulary, IsRefusedWhereItIsUnknown) {
  const auto unknown = [](const std::string& uri) {
    return "SAXException: Unknown external vocabulary \"" + uri +
           "\": it must be registered with the property "
           "\"http://jvnet.org/fastinfoset/parser/properties/external-vocabularies\"";
  };
  const auto refused = [&](const std::string& uri) {
    writer.set(properties::externalVocabulary, uri);
    return thrown([&] { writer.startDocument(); });
  };
  EXPECT_EQ(refused("urn:other"), unknown("urn:other"));
  EXPECT_EQ(refused("urn:null"), unknown("urn:null"));
  EXPECT_EQ(refused(""), unknown(""));
  writer.setProperty(properties::externalVocabularies, nullptr);
  EXPECT_EQ(refused("urn:known"), unknown("urn:known"));
  writer.setProperty(properties::externalVocabulary, nullptr);
  writer.startDocument();
  writer.set(properties::externalVocabulary, std::string("urn:late"));
  EXPECT_EQ(thrown([&] { writer.start("a"); }), unknown("urn:late"));
  writer.setProperty(properties::externalVocabulary, nullptr);
  writer.start("a");
  EXPECT_EQ(writer.written(), document("3C 00 'a'"));
}

TEST_F(X891WriterExternalVocabulary, CountsWithWhatItTakes) {
  vocabulary.localNames.occupiedCount = (1 << 20) + 1;
  writer.startDocument();
  const std::string tooMany =
      "SAXException: A table of the vocabulary has more than 1048576 entries";
  EXPECT_EQ(thrown([&] { writer.start("a"); }), tooMany);
  vocabulary.localNames.occupiedCount = 1 << 20;
  // A full table takes no more; the name is a literal each time.
  writer.start("a");
  writer.leaf("b", {{"a", ""}});
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.written(), hex("E0 00 00 01 20 10 00 08 'urn:known' 3C 00 'a' 7C 00 'b' 78 00 "
                                  "'a' FF FF FF"));
  writer.reset();
  vocabulary.encodingAlgorithms.occupiedCount = 0xFFFFFFFF;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.start("a"); }), "SAXException: More than 225 encoding algorithms");
}

}  // namespace
}  // namespace x891_test
