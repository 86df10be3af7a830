#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Names, namespaces and attributes as Namespaces in XML wants them.

namespace x891_test {
namespace {

const char* const kXML = "http://www.w3.org/XML/1998/namespace";
const char* const kXMLNS = "http://www.w3.org/2000/xmlns/";

/// A URI of more than 28 octets as a literal.
std::string uri(const std::string& text) {
  return std::string(1, static_cast<char>(text.size() - 1)) + text;
}

// --- Names ---

TEST(X891ReaderNames, MustBeNames) {
  for (const char* name : {"1", "-a", ".a", "a b", "a:b", ":a", "a:", "a\n", "a<", "\xC2\xB7",
                           "\xC3\x97", "\xE2\x80\xA2", "a\xF3\xB0\x80\x80", "\x7F", "a/"}) {
    const std::string text = name;
    const std::string message = "Invalid name \"" + text + "\"";
    const std::string literal = uri(text);
    expectRefused(document("3C") + literal, octets("FF"), message, {"startDocument()"});
    expectRefused(document("7C 00 'a' 78") + literal, octets("00 'x'"), message,
                  {"startDocument()"});
    expectRefused(document("38 CF") + literal, octets("00 'u'"), message, {"startDocument()"});
    expectRefused(document("3F") + literal, octets("00 'u' 00 'a'"), message, {"startDocument()"});
    expectRefused(document("E1") + literal, octets("00 'u'"), message, {"startDocument()"});
    expectRefused(document("3C 00 'a' C8") + literal, octets("FF"), message,
                  {"startDocument()", "startElement(, a, a, [])"});
    expectRefused(fromComponents("10 C2") + literal, octets("00 's'"), message);
    expectRefused(fromComponents("08 D0") + literal, octets("00 's'"), message);
    expectRefused(fromComponents("08 D0 00 'e' 00 's'") + literal, octets("F0"), message);
  }
}

TEST(X891ReaderNames, MayHaveAnyCharacterOfANCName) {
  for (const char* name : {"_", "a-b.c1", "\xC3\x80", "a\xC2\xB7", "\xF0\x90\x80\x80", "xml",
                           "xmlns", "\xE3\x80\x81", "a\xE2\x80\xBF"}) {
    const std::string shown = name;
    EXPECT_EQ(whole({"startElement(, " + shown + ", " + shown + ", [])",
                     "endElement(, " + shown + ", " + shown + ")"}),
              readNew(document("3C") + uri(name) + octets("FF")));
  }
}

// --- Prefixes ---

TEST(X891ReaderNames, PrefixMustBeBound) {
  expectPrologRefused("3F 00 'p' 00 'u' 00 'a'", "FF", "The prefix \"p\" is not declared");
  expectPrologRefused("7C 00 'a' 7B 00 'p' 00 'u' 00 'b'", "00 'x' FF F0",
                      "The prefix \"p\" is not declared");
  // To this namespace.
  expectPrologRefused("38 CF 00 'p' 00 'v' F0 3F 00 'p' 00 'u' 00 'a'", "FF",
                      "The prefix \"p\" is bound to \"v\" and not to \"u\"");
  expectPrologRefused("78 CF 00 'p' 00 'v' F0 3C 00 'a' 7B 00 'p' 00 'u' 00 'b'", "00 'x' FF F0",
                      "The prefix \"p\" is bound to \"v\" and not to \"u\"");
  // Not beside: an element's declarations end with it.
  expectPrologRefused(
      "3C 00 'a' 38 CF 00 'p' 00 'u' F0 3F 81 81 00 'b' F0 3F 81 81 00 'c'", "FF",
      "The prefix \"p\" is not declared",
      {"startElement(, a, a, [])", "startPrefixMapping(p, u)", "startElement(u, b, p:b, [])",
       "endElement(u, b, p:b)", "endPrefixMapping(p)"});
}

TEST(X891ReaderNames, PrefixMustBeBoundForNamesOfTheTable) {
  // The name was right before.
  expectPrologRefused(
      "3C 00 'a' 38 CF 00 'p' 00 'u' F0 3F 81 81 00 'b' F0 01", "FF",
      "The prefix \"p\" is not declared",
      {"startElement(, a, a, [])", "startPrefixMapping(p, u)", "startElement(u, b, p:b, [])",
       "endElement(u, b, p:b)", "endPrefixMapping(p)"});
  // Where it is bound otherwise inside, and again as before behind.
  const EventLog::Lines before = {"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])",
                                  "startPrefixMapping(p, v)", "startElement(v, b, p:b, [])"};
  expectPrologRefused(
      "38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' 38 CF 81 00 'v' F0 3F 81 82 00 'b' 00", "FF",
      "The prefix \"p\" is bound to \"v\" and not to \"u\"", before);
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])", "startPrefixMapping(p, v)",
             "startElement(v, b, p:b, [])", "endElement(v, b, p:b)", "endPrefixMapping(p)",
             "startElement(u, a, p:a, [])", "endElement(u, a, p:a)", "startPrefixMapping(p, v)",
             "startElement(v, b, p:b, [])", "endElement(v, b, p:b)", "endPrefixMapping(p)",
             "endElement(u, a, p:a)", "endPrefixMapping(p)"}),
      readNew(document("38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' "
                       "38 CF 81 00 'v' F0 3F 81 82 00 'b' F0 00 F0 "
                       "38 CF 81 82 F0 01 FF F0")));
  // Likewise of attributes.
  expectPrologRefused(
      "78 CF 00 'p' 00 'u' F0 3C 00 'a' 7B 81 81 00 'b' 00 'x' F0 "
      "78 CF 81 00 'v' F0 00 00",
      "00 'y' FF FF", "The prefix \"p\" is bound to \"v\" and not to \"u\"",
      {"startPrefixMapping(p, u)", "startElement(, a, a, [{u, b, p:b, CDATA, x}])"});
}

TEST(X891ReaderNames, DefaultNamespaceIsThatOfNamesWithoutPrefix) {
  expectPrologRefused("38 CD 00 'u' F0 3C 00 'a'", "FF",
                      "The element \"a\" has no namespace, but the default namespace is \"u\"");
  expectPrologRefused("3D 00 'u' 00 'a'", "FF",
                      "The element \"a\" has no prefix, but \"u\" is not the default namespace");
  expectPrologRefused("38 CD 00 'v' F0 3D 00 'u' 00 'a'", "FF",
                      "The element \"a\" has no prefix, but \"u\" is not the default namespace");
  expectPrologRefused("38 CD 00 'u' F0 3D 81 00 'a' 38 CC F0 00", "FF",
                      "The element \"a\" has no prefix, but \"u\" is not the default namespace",
                      {"startPrefixMapping(, u)", "startElement(u, a, a, [])"});
  // An attribute without a prefix is in no namespace all the same.
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(u, a, a, [{, b, b, CDATA, x}])",
                   "endElement(u, a, a)", "endPrefixMapping()"}),
            readNew(document("78 CD 00 'u' F0 3D 81 00 'a' 78 00 'b' 00 'x' FF F0")));
}

TEST(X891ReaderNames, DefaultNamespaceMayBeUndeclaredAnywhere) {
  EXPECT_EQ(whole({"startPrefixMapping(, )", "startElement(, a, a, [])", "endElement(, a, a)",
                   "endPrefixMapping()"}),
            readNew(document("38 CC F0 3C 00 'a' FF")));
}

TEST(X891ReaderNames, PrefixIsUndeclaredInVersion11Alone) {
  expectPrologRefused("38 CE 00 'p'", "F0 3C 00 'a' FF", "The prefix \"p\" cannot be undeclared");
  const std::string undeclared = "38 CE 00 'p' F0 3C 00 'a' FF";
  const std::string told = whole({"startPrefixMapping(p, )", "startElement(, a, a, [])",
                                  "endElement(, a, a)", "endPrefixMapping(p)"});
  EXPECT_EQ(warned("1.1", 9, told), readNew(fromComponents("01 02 '1.1' " + undeclared)));
  EXPECT_EQ(warned("1.1", 42, told),
            readNew("<?xml version='1.1' encoding='finf'?>" + document(undeclared)));
  expectRefused(fromComponents("01 02 '1.0' 38 CE 00 'p'"), octets("F0 3C 00 'a' FF"),
                "The prefix \"p\" cannot be undeclared", {"startDocument()"});
  // Then it is bound to nothing.
  expectRefused(fromComponents("01 02 '1.1' 38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' 38 CE 81 F0 00"),
                octets("FF"), "The prefix \"p\" is not declared",
                {"startDocument()", "warning(XML 1.1 is read by the rules of XML 1.0, -1, 9)",
                 "startPrefixMapping(p, u)", "startElement(u, a, p:a, [])"});
}

TEST(X891ReaderNames, ReservedPrefixesAndNamespaces) {
  const std::string xml = uri(kXML);
  const std::string xmlns = uri(kXMLNS);
  const auto refused = [](const std::string& declaration, const std::string& message) {
    expectRefused(document("38") + declaration, octets("F0 3C 00 'a' FF"), message,
                  {"startDocument()"});
  };
  refused(octets("CF 04 'xmlns' 00 'u'"), "The prefix \"xmlns\" cannot be declared");
  refused(octets("CF 04 'xmlns'") + xmlns, "The prefix \"xmlns\" cannot be declared");
  refused(octets("CF 00 'p'") + xmlns,
          "The namespace \"" + std::string(kXMLNS) + "\" cannot be declared");
  refused(octets("CD") + xmlns, "The namespace \"" + std::string(kXMLNS) + "\" cannot be declared");
  refused(octets("CF 02 'xml' 00 'u'"), "The prefix \"xml\" cannot be bound to another namespace");
  refused(octets("CF 80 00 'u'"), "The prefix \"xml\" cannot be bound to another namespace");
  refused(octets("CE 80"), "The prefix \"xml\" cannot be bound to another namespace");
  refused(octets("CF 00 'p'") + xml,
          "The namespace \"" + std::string(kXML) + "\" cannot be bound to another prefix");
  refused(octets("CF 00 'p' 80"),
          "The namespace \"" + std::string(kXML) + "\" cannot be bound to another prefix");
  refused(octets("CD 80"),
          "The namespace \"" + std::string(kXML) + "\" cannot be bound to another prefix");
  // The prefix xml may be declared as what it is.
  const std::string told =
      whole({"startPrefixMapping(xml, " + std::string(kXML) + ")", "startElement(, a, a, [])",
             "endElement(, a, a)", "endPrefixMapping(xml)"});
  EXPECT_EQ(told, readNew(document("38 CF 80 80 F0 3C 00 'a' FF")));
  EXPECT_EQ(told, readNew(document("38 CF 02 'xml'") + xml + octets("F0 3C 00 'a' FF")));
  // It is bound without that.
  EXPECT_EQ(whole({"startElement(" + std::string(kXML) + ", a, xml:a, [])",
                   "endElement(" + std::string(kXML) + ", a, xml:a)"}),
            readNew(document("3F 80 80 00 'a' FF")));
  expectPrologRefused(
      "3F 80 00 'u' 00 'a'", "FF",
      "The prefix \"xml\" is bound to \"" + std::string(kXML) + "\" and not to \"u\"");
  expectPrologRefused("3F 04 'xmlns' 00 'u' 00 'a'", "FF", "The prefix \"xmlns\" is not declared");
  // As XML, this attribute would be a declaration.
  expectPrologRefused("7C 00 'a' 78 04 'xmlns'", "00 'u' FF F0",
                      "An attribute with the name \"xmlns\" is a namespace declaration");
}

TEST(X891ReaderNames, PrefixIsDeclaredOnceByAnElement) {
  expectPrologRefused("38 CF 00 'p' 00 'u' CF 00 'q' 00 'u' CF 81 00 'v'", "F0 3C 00 'a' FF",
                      "The prefix \"p\" is declared twice on one element");
  expectPrologRefused("38 CF 00 'p' 00 'u' CF 00 'p' 81", "F0 3C 00 'a' FF",
                      "The prefix \"p\" is declared twice on one element");
  expectPrologRefused("38 CD 00 'u' CC", "F0 3C 00 'a' FF",
                      "The prefix \"\" is declared twice on one element");
  // Two prefixes may be of one namespace.
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, u)", "startElement(u, a, q:a, [])",
             "endElement(u, a, q:a)", "endPrefixMapping(q)", "endPrefixMapping(p)"}),
      readNew(document("38 CF 00 'p' 00 'u' CF 00 'q' 81 F0 3F 82 81 00 'a' FF")));
}

TEST(X891ReaderNames, DeclarationsMayBeNone) {
  EXPECT_EQ(wholeContent({}), readNew(document("38 F0 3C 00 'a' FF")));
}

TEST(X891ReaderNames, PrefixNeedsANamespace) {
  expectPrologRefused("3E", "00 'p' 00 'a' FF",
                      "Qualified name with a prefix, but without a namespace");
  expectPrologRefused("7C 00 'a' 7A", "00 'p' 00 'b' 00 'x' FF F0",
                      "Qualified name with a prefix, but without a namespace");
}

// --- Attributes ---

TEST(X891ReaderNames, AttributeInANamespaceNeedsAPrefix) {
  expectPrologRefused("7C 00 'a' 79 00 'u' 00 'b'", "00 'x' FF F0",
                      "The attribute \"b\" has a namespace, but no prefix");
  expectPrologRefused("78 CD 00 'u' F0 3D 81 00 'a' 79 81 00 'b'", "00 'x' FF F0",
                      "The attribute \"b\" has a namespace, but no prefix");
}

/// Attributes with literal names of two letters and the value `x`.
std::string newAttributes(std::size_t count) {
  std::string attributes;
  for (std::size_t i = 0; i < count; ++i) {
    attributes += octets("78 01") + static_cast<char>('A' + i / 26) +
                  static_cast<char>('a' + i % 26) + octets("00 'x'");
  }
  return attributes;
}

// Whatever the place of a name in its tag, and whether it is new there.
TEST(X891ReaderNames, AttributesAreThereOnceAmongMany) {
  const std::string root = document("7C 00 'a' 78 00 'k' 00 'x' F0");
  const EventLog::Lines events = {"startDocument()", "startElement(, a, a, [{, k, k, CDATA, x}])"};
  const std::string known = octets("00 00 'x'");
  for (const std::size_t between : {1U, 2U, 14U, 15U, 16U, 17U, 18U, 40U}) {
    const std::string tag = root + octets("7C 00 'e'");
    const std::string others = newAttributes(between);
    const auto expectTwice = [&](const std::string& before, const std::string& again,
                                 const std::string& name) {
      expectRefused(tag + before + again, octets("00 'x' FF F0"),
                    "The attribute \"" + name + "\" is given twice", events);
    };
    expectTwice(others, octets("01"), "Aa");
    expectTwice(others, octets("78 01 'Aa'"), "Aa");
    expectTwice(known + others, octets("00"), "k");
    expectTwice(known + others, octets("78 00 'k'"), "k");
    expectTwice(known + others, octets("01"), "Aa");
    expectTwice(others + known, octets("00"), "k");
    expectTwice(others + known, octets("78 01 'Aa'"), "Aa");
    expectTwice(others + octets("78 00 'k' 00 'x'"), octets("00"), "k");

    // Once each, in two tags.
    std::string list;
    for (std::size_t i = 0; i < between; ++i) {
      const std::string name = {static_cast<char>('A' + i / 26), static_cast<char>('a' + i % 26)};
      list += "{, " + name + ", " + name + ", CDATA, x}, ";
    }
    list += "{, k, k, CDATA, x}";
    std::string again;
    for (std::size_t i = 1; i <= between; ++i) {
      again += static_cast<char>(i) + octets("00 'x'");
    }
    const std::string start = "startElement(, e, e, [" + list + "])";
    const std::string end = "endElement(, e, e)";
    EXPECT_EQ(whole({events[1], start, end, start, end, "endElement(, a, a)"}),
              readNew(tag + others + known + octets("FF 41") + again + known + octets("FF FF")));
  }
}

// The memory of names is used again.
TEST(X891ReaderNames, AreThoseOfEachDocument) {
  const std::string longest(300, 'n');
  std::string many = document("38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a'");
  for (char first = 'a'; first <= 'z'; ++first) {
    for (char second = 'a'; second <= 'h'; ++second) {
      many += octets("3C 01") + first + second + octets("F0");
    }
  }
  many += octets("FF");
  const std::string documents[] = {
      many,
      document("3C 00 'a' FF"),
      document("38 CF 00 'p' 00 'u' F0 3F 81 81 40 EB") + longest + octets("FF"),
      document("38 CF 00 'p' 00 'u' F0 3F 81 81 00 'b' FF"),
      document("3C 00 'c' FF"),
  };
  X891Reader reader;
  for (int i = 0; i < 3; ++i) {
    for (const std::string& each : documents) EXPECT_EQ(readNew(each), reader.read(each));
  }
}

TEST(X891ReaderNames, AttributesAreThereOnce) {
  expectPrologRefused("7C 00 'a' 78 00 'b' 00 'x' 00", "00 'y' FF F0",
                      "The attribute \"b\" is given twice");
  expectPrologRefused("7C 00 'a' 78 00 'b' 00 'x' 78 00 'b'", "00 'y' FF F0",
                      "The attribute \"b\" is given twice");
  expectPrologRefused("7C 00 'a' 78 00 'b' 00 'x' 78 00 'c' 00 'x' 78 00 'd' 00 'x' 00",
                      "00 'y' FF F0", "The attribute \"b\" is given twice");
  // Two prefixes of one namespace.
  expectPrologRefused(
      "78 CF 00 'p' 00 'u' CF 00 'q' 81 F0 3C 00 'a' 7B 81 81 00 'b' 00 'x' "
      "7B 82 81 00 'b'",
      "00 'y' FF F0", "The attribute \"q:b\" is given twice");
  // Two namespaces, or one and none, are different names.
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, v)",
                   "startElement(, a, a, [{u, b, p:b, CDATA, x}, {v, b, q:b, CDATA, x}, "
                   "{, b, b, CDATA, x}])",
                   "endElement(, a, a)", "endPrefixMapping(q)", "endPrefixMapping(p)"}),
            readNew(document("78 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 3C 00 'a' "
                             "7B 81 81 00 'b' 00 'x' 7B 82 82 00 'b' 00 'x' 78 00 'b' 00 'x' "
                             "FF F0")));
  // Another element may have it again, inside and behind.
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, x}])",
                   "startElement(, a, a, [{, b, b, CDATA, y}])", "endElement(, a, a)",
                   "startElement(, a, a, [{, b, b, CDATA, z}])", "endElement(, a, a)",
                   "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 00 'b' 00 'x' F0 40 00 00 'y' FF 40 00 00 'z' FF FF")));
}

TEST(X891ReaderNames, AttributesMayBeNone) {
  EXPECT_EQ(wholeContent({}), readNew(document("7C 00 'a' FF F0")));
}

TEST(X891ReaderNames, ManyAttributesTakeTimeInProportion) {
  std::string all = document("7C 00 'a'");
  std::string attributes;
  for (int i = 0; i < 50000; ++i) {
    const std::string name = "n" + std::to_string(100000 + i);
    all += octets("78 06") + name + octets("FF");
    attributes += (i ? ", {, " : "{, ") + name + ", " + name + ", CDATA, }";
  }
  EXPECT_EQ(whole({"startElement(, a, a, [" + attributes + "])", "endElement(, a, a)"}),
            readNew(all + octets("FF F0")));
}

}  // namespace
}  // namespace x891_test
