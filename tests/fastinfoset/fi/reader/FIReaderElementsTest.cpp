#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// Elements: their first octet, their names and how they end.

namespace reader_test {
namespace {

const char* const kXml = "http://www.w3.org/XML/1998/namespace";

// --- The first octet ---

TEST(FIReaderElement, HasALiteralName) {
  EXPECT_EQ(whole({"startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(document("3C 00 'a' F0 F0")));
  EXPECT_EQ(whole({"startElement(, name, name, [])", "endElement(, name, name)"}),
            readNew(document("3C 03 'name' FF")));
}

TEST(FIReaderElement, RefusesOctetsThatAreNoName) {
  for (const unsigned attributes : {0x00U, 0x40U}) {
    for (unsigned bits = 0; bits < 0x38; ++bits) {
      SCOPED_TRACE(bits);
      // There are no names yet; and above 30 there are no indices.
      EXPECT_EQ(failed({}, bits <= 0x30 ? "Error when decoding element name - invalid index"
                                        : "Error when decoding element name"),
                readNew(document("") + static_cast<char>(attributes | bits) +
                        octets("00 00 00 F0 F0 F0")));
    }
    for (unsigned bits = 0x39; bits <= 0x3B; ++bits) {
      SCOPED_TRACE(bits);
      EXPECT_EQ(
          failed({}, "Error when decoding element name"),
          readNew(document("") + static_cast<char>(attributes | bits) + octets("00 'a' F0 F0 F0")));
    }
  }
}

TEST(FIReaderElement, IsRefusedAlsoAsAChild) {
  EXPECT_EQ(failedContent({}, "Error when decoding element name"),
            readNew(documentOfContent("39")));
  EXPECT_EQ(failedContent({}, "Error when decoding element name - invalid index"),
            readNew(documentOfContent("01")));
}

TEST(FIReaderElement, RefusesEveryOctetThatIsNoChildOfAnElement) {
  for (unsigned octet = 0xCC; octet <= 0xFE; ++octet) {
    if (octet == 0xE1 || octet == 0xE2 || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    EXPECT_EQ(failedContent({"comment(c)"}, "Error when decoding element children"),
              readNew(document("3C 00 'a' E2 00 'c'") + static_cast<char>(octet) +
                      octets("00 'x' F0 F0")));
  }
}

// --- Names ---

TEST(FIReaderElementName, IsAddedToItsTable) {
  EXPECT_EQ(
      wholeContent({"startElement(, b, b, [])", "endElement(, b, b)", "startElement(, a, a, [])",
                    "endElement(, a, a)", "startElement(, b, b, [])", "endElement(, b, b)"}),
      readNew(documentOfContent("3C 00 'b' F0 00 F0 01 F0")));
  EXPECT_EQ(failedContent({}, "Error when decoding element name - invalid index"),
            readNew(documentOfContent("01 F0")));
}

TEST(FIReaderElementName, IsAddedAgainEachTimeItIsLiteral) {
  EXPECT_EQ(wholeContent({"startElement(, a, a, [])", "endElement(, a, a)",
                          "startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(documentOfContent("3C 00 'a' F0 01 F0")));
}

TEST(FIReaderElementName, IsNotAddedByAnIndex) {
  EXPECT_EQ(failedContent({"startElement(, a, a, [])", "endElement(, a, a)"},
                          "Error when decoding element name - invalid index"),
            readNew(documentOfContent("00 F0 01 F0")));
}

TEST(FIReaderElementName, KeepsItsPrefixAndNamespaceNameInTheTable) {
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])",
                   "startElement(u, a, p:a, [])", "endElement(u, a, p:a)", "endElement(u, a, p:a)",
                   "endPrefixMapping(p)"}),
            readNew(document("38 CF 00 'p' 00 'u' F0 3F 01 01 00 'a' 00 FF F0")));
}

TEST(FIReaderElementName, TakesItsLocalNameFromTheSharedTable) {
  // An index into the local names, in the names of element and attribute.
  EXPECT_EQ(whole({"startElement(, a, a, [{, a, a, CDATA, v}, {, b, b, CDATA, v}])",
                   "startElement(, b, b, [])", "endElement(, b, b)", "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 80 00 'v' 78 00 'b' 00 'v' F0 3C 81 FF F0")));
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"), readNew(document("3C 80")));
}

TEST(FIReaderElementName, CountsPrefixAndNamespaceNameFromOne) {
  const std::string declarations = "38 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 ";
  const auto read = [&](const std::string& name) { return readNew(document(declarations + name)); };
  const auto element = [](const std::string& names) {
    return whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, v)",
                  "startElement(" + names + ", [])", "endElement(" + names + ")",
                  "endPrefixMapping(p)", "endPrefixMapping(q)"});
  };
  EXPECT_EQ(element("u, a, p:a"), read("3F 01 01 00 'a' FF"));
  EXPECT_EQ(element("v, a, q:a"), read("3F 02 02 00 'a' FF"));
  EXPECT_EQ(element("v, a, p:a"), read("3F 01 02 00 'a' FF"));
  EXPECT_EQ(element("v, a, a"), read("3D 02 00 'a' FF"));
  // The bit before the index is not looked at.
  EXPECT_EQ(element("u, a, p:a"), read("3F 81 81 00 'a' FF"));
}

TEST(FIReaderElementName, HasBuiltInEntriesAtZero) {
  const std::string uri = kXml;
  EXPECT_EQ(whole({"startElement(" + uri + ", a, xml:a, [])", "endElement(" + uri + ", a, xml:a)"}),
            readNew(document("3F 00 00 00 'a' FF")));
  EXPECT_EQ(whole({"startElement(" + uri + ", a, a, [])", "endElement(" + uri + ", a, a)"}),
            readNew(document("3D 80 00 'a' FF")));
  // Each is built in for itself.
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(u, a, xml:a, [])",
                   "endElement(u, a, xml:a)", "endPrefixMapping()"}),
            readNew(document("38 CD 00 'u' F0 3F 00 01 00 'a' FF")));
}

TEST(FIReaderElementName, RefusesPartsBeyondTheirTables) {
  const EventLog::Lines mapping = {"startPrefixMapping(p, u)"};
  const std::string declaration = "38 CF 00 'p' 00 'u' F0 ";
  EXPECT_EQ(failed({}, "Error when parsing prefix"), readNew(document("3F 01 00 00 'a' FF")));
  EXPECT_EQ(failed({}, "Error when parsing namespace"), readNew(document("3F 00 01 00 'a' FF")));
  EXPECT_EQ(failed({}, "Error when parsing namespace"), readNew(document("3D 01 00 'a' FF")));
  EXPECT_EQ(failed(mapping, "Error when parsing prefix"),
            readNew(document(declaration + "3F 02 00 00 'a' FF")));
  EXPECT_EQ(failed(mapping, "Error when parsing namespace"),
            readNew(document(declaration + "3D 02 00 'a' FF")));
  EXPECT_EQ(failed(mapping, "Error when parsing prefix"),
            readNew(document(declaration + "3F 6F FF FF 00 00 'a' FF")));
  EXPECT_EQ(failed(mapping, "Error when decoding index"),
            readNew(document(declaration + "3F 70 00 00 'a' FF")));
}

TEST(FIReaderElementName, WithAPrefixHasANamespaceName) {
  const std::string message = "Qualified name with a prefix, but without a namespace";
  EXPECT_EQ(failed({}, message), readNew(document("3E 00 00 'a' FF")));
  EXPECT_EQ(failed({}, message), readNew(document("7E 00 00 'a' F0 FF")));
  EXPECT_EQ(failed({"startPrefixMapping(p, )"}, message),
            readNew(document("38 CE 00 'p' F0 3E 01 00 'a' FF")));
}

// --- Namespace declarations ---

TEST(FIReaderNamespaces, HaveEitherPartBothOrNone) {
  const struct {
    const char* written;
    const char* prefix;
    const char* mapping;
  } rows[] = {{"CC", "", ", "},
              {"CD 00 'u'", "", ", u"},
              {"CE 00 'p'", "p", "p, "},
              {"CF 00 'p' 00 'u'", "p", "p, u"}};
  for (const auto& row : rows) {
    EXPECT_EQ(
        whole({"startPrefixMapping(" + std::string(row.mapping) + ")", "startElement(, a, a, [])",
               "endElement(, a, a)", "endPrefixMapping(" + std::string(row.prefix) + ")"}),
        readNew(document("38 " + std::string(row.written) + " F0 3C 00 'a' FF")));
  }
}

TEST(FIReaderNamespaces, MayBeAnEmptyList) {
  EXPECT_EQ(whole({"startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(document("38 F0 3C 00 'a' FF")));
}

TEST(FIReaderNamespaces, EndInTheOrderInWhichTheyBegan) {
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startPrefixMapping(, v)",
                   "startPrefixMapping(q, u)", "startPrefixMapping(p, w)",
                   "startElement(, a, a, [])", "endElement(, a, a)", "endPrefixMapping(p)",
                   "endPrefixMapping()", "endPrefixMapping(q)", "endPrefixMapping(p)"}),
            readNew(document("38 CF 00 'p' 00 'u' CD 00 'v' CF 00 'q' 80 CF 80 00 'w' F0 "
                             "3C 00 'a' FF")));
}

TEST(FIReaderNamespaces, CountFromZeroWithoutTheBuiltInEntry) {
  // The same entry is 0 in a declaration and 1 in a name.
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startPrefixMapping(p, u)", "startElement(u, a, p:a, [])",
             "endElement(u, a, p:a)", "endPrefixMapping(p)", "endPrefixMapping(p)"}),
      readNew(document("38 CF 00 'p' 00 'u' CF 80 80 F0 3F 01 01 00 'a' FF")));
  for (const char* written : {"CD 80", "CE 80", "CD 00 'u' CD 81", "CE 00 'p' CE 81"}) {
    EXPECT_EQ(failed({}, "Error when decoding string - invalid index"),
              readNew(document("38 " + std::string(written) + " F0 3C 00 'a' FF")))
        << written;
  }
}

TEST(FIReaderNamespaces, EndWithOneTerminatorOnly) {
  for (unsigned octet = 0; octet <= 0xFF; ++octet) {
    if ((octet >= 0xCC && octet <= 0xCF) || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    // Nothing is told before the list is whole.
    EXPECT_EQ(failed({}, "Error while parsing namespaces"),
              readNew(document("38 CD 00 'u'") + static_cast<char>(octet) +
                      octets("00 'x' 00 'x' F0 3C 00 'a' FF")));
  }
}

TEST(FIReaderNamespaces, AreToldBeforeTheNameIsRead) {
  EXPECT_EQ(failed({"startPrefixMapping(, u)"}, "Error when decoding element name"),
            readNew(document("38 CD 00 'u' F0 39")));
  EXPECT_EQ(failed({"startPrefixMapping(, u)"}, "Unexpected end of document"),
            readNew(document("38 CD 00 'u' F0")));
}

TEST(FIReaderNamespaces, AreFollowedByANameWhoseHighBitsMeanNothing) {
  const EventLog::Lines element = {"startElement(, a, a, [])", "endElement(, a, a)"};
  for (const char* octet : {"3C", "7C", "BC", "FC"}) {
    EXPECT_EQ(whole(element), readNew(document("38 F0 " + std::string(octet) + " 00 'a' FF")));
    EXPECT_EQ(whole(element), readNew(document("78 F0 " + std::string(octet) + " 00 'a' F0 FF")));
  }
  for (const char* octet : {"00", "40", "80", "C0"}) {
    EXPECT_EQ(wholeContent(element),
              readNew(documentOfContent("38 F0 " + std::string(octet) + " F0")));
  }
  // Not a terminator: an index of four octets.
  EXPECT_EQ(failed({}, "Error when decoding element name - invalid index"),
            readNew(document("38 F0 F0 00 00 00")));
}

TEST(FIReaderNamespaces, AreNotFollowedByNamespacesAgain) {
  for (const char* octet : {"38", "39", "3A", "3B", "78", "B8", "F8", "FB"}) {
    EXPECT_EQ(failed({}, "Error when decoding element name"),
              readNew(document("38 F0 " + std::string(octet) + " F0 3C 00 'a' FF")))
        << octet;
  }
}

TEST(FIReaderNamespaces, LeaveTheBitOfAttributesToTheFirstOctet) {
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(, a, a, [{, b, b, CDATA, c}])",
                   "endElement(, a, a)", "endPrefixMapping()"}),
            readNew(document("78 CD 00 'u' F0 3C 00 'a' 78 00 'b' 00 'c' F0 FF")));
}

TEST(FIReaderNamespaces, OfNestedElementsEndEachWithItsElement) {
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startElement(, a, a, [])",
                   "startPrefixMapping(q, v)", "startPrefixMapping(r, u)",
                   "startElement(u, b, r:b, [])", "endElement(u, b, r:b)", "endPrefixMapping(q)",
                   "endPrefixMapping(r)", "endElement(, a, a)", "endPrefixMapping(p)"}),
            readNew(document("38 CF 00 'p' 00 'u' F0 3C 00 'a' "
                             "38 CF 00 'q' 00 'v' CF 00 'r' 80 F0 3F 03 01 00 'b' FF F0")));
}

// --- Ends ---

/// The start and end of an element without attributes, in short.
std::string shape(const std::string& written) {
  struct Shape : Tavrin::ContentHandler {
    std::string text;
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const Tavrin::Attributes&) override {
      text += "<" + localName + ">";
    }
    void endElement(const std::string&, const std::string& localName, const std::string&) override {
      text += "</" + localName + ">";
    }
    void characters(const std::string& data) override { text += data; }
    void endDocument() override { text += "."; }
  } handler;
  Tavrin::XMLReader_FI reader;
  reader.setContentHandler(&handler);
  const std::string all = document(written);
  std::istringstream stream(all);
  const std::string outcome = outcomeOf([&] { reader.parse(stream); });
  if (outcome != "done") return handler.text + outcome;
  EXPECT_EQ(static_cast<std::streamoff>(all.size()), stream.tellg());
  return handler.text;
}

TEST(FIReaderTerminators, EndOneLevelOrTwo) {
  EXPECT_EQ("<a><b></b></a>.", shape("3C 00 'a' 3C 00 'b' F0 F0 F0"));
  EXPECT_EQ("<a><b></b></a>.", shape("3C 00 'a' 3C 00 'b' F0 FF"));
  EXPECT_EQ("<a><b></b></a>.", shape("3C 00 'a' 3C 00 'b' FF F0"));
  EXPECT_EQ("<a><b></b></a>.", shape("3C 00 'a' 3C 00 'b' FF FF"));
}

TEST(FIReaderTerminators, OfTwoLevelsEndNoThird) {
  EXPECT_EQ("<a><b><c></c></b></a>.", shape("3C 00 'a' 3C 00 'b' 3C 00 'c' FF F0 F0"));
  EXPECT_EQ("<a><b><c></c></b></a>.", shape("3C 00 'a' 3C 00 'b' 3C 00 'c' FF FF"));
  EXPECT_EQ("<a><b><c></c></b></a>.", shape("3C 00 'a' 3C 00 'b' 3C 00 'c' F0 FF F0"));
  EXPECT_EQ("<a><b><c></c></b>x</a>.", shape("3C 00 'a' 3C 00 'b' 3C 00 'c' FF 80 'x' FF"));
  EXPECT_EQ("<a><b></b></a>SAXException: Unexpected end of document",
            shape("3C 00 'a' 3C 00 'b' FF"));
}

TEST(FIReaderTerminators, BehindAttributesEndTheElementToo) {
  EXPECT_EQ("<a></a>.", shape("7C 00 'a' FF F0"));
  EXPECT_EQ("<a></a>.", shape("7C 00 'a' F0 F0 F0"));
  EXPECT_EQ("<a></a>.", shape("7C 00 'a' F0 FF"));
  EXPECT_EQ("<a><b></b>x</a>.", shape("3C 00 'a' 7C 00 'b' FF 80 'x' FF"));
  EXPECT_EQ("<a><b></b><b></b></a>.", shape("3C 00 'a' 7C 00 'b' FF 41 FF FF"));
  EXPECT_EQ("<a><b></b></a>.", shape("7C 00 'a' F0 7C 00 'b' F0 FF F0"));
}

TEST(FIReaderTerminators, OfTwoLevelsTellBothEndsAtOnce) {
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])", "startPrefixMapping(q, v)",
             "startElement(v, b, q:b, [])", "endElement(v, b, q:b)", "endPrefixMapping(q)",
             "endElement(u, a, p:a)", "endPrefixMapping(p)", "comment(c)"}),
      readNew(document("38 CF 00 'p' 00 'u' F0 3F 01 01 00 'a' "
                       "38 CF 00 'q' 00 'v' F0 3F 02 02 00 'b' FF E2 00 'c' F0")));
}

}  // namespace
}  // namespace reader_test
