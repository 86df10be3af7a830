#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// External vocabularies: four of their tables come before the document's own, the others count for
// nothing.

namespace reader_test {
namespace {

const char* const kNoString = "Error when decoding string - invalid index";

/// Two entries, the second a null text, in three positions: the document's own begin at 3.
const char* const kTexts[] = {"external", nullptr};
const char* const kNames[][3] = {{"p", "u", "l"}, {nullptr, nullptr, nullptr}};
const Tavrin::StringTable kStrings = {kTexts, 2, 3};
const Tavrin::QualifiedNameTable kQualifiedNames = {kNames, 2, 3};

/// A reader that knows a vocabulary `v`, in which all of the twelve tables have entries, and `w`,
/// in which none has.
class VocabularyReader : public LoggedReader {
 public:
  VocabularyReader() {
    log.attachAlgorithmsTo(reader);
    reader.setProperty(Tavrin::properties::externalVocabularies, &map);
  }

  Tavrin::ExternalVocabulary full = {kStrings, kStrings, kStrings,        kStrings,
                                     kStrings, kStrings, kStrings,        kStrings,
                                     kStrings, kStrings, kQualifiedNames, kQualifiedNames};
  Tavrin::ExternalVocabulary empty;
  Tavrin::ExternalVocabularyMap map = {{"v", &full}, {"w", &empty}};
};

/// A document whose initial vocabulary names the external vocabulary `v` and nothing else.
std::string withV(const std::string& written) {
  return fromComponents("20 10 00 00 'v' " + written);
}

std::string readWithV(const std::string& written) {
  return VocabularyReader().read(withV(written));
}

// --- Which vocabulary ---

TEST(FIReaderExternalVocabulary, IsRefusedWhereItIsUnknown) {
  EXPECT_EQ("SAXException: Unknown external vocabulary - v\n", readNew(withV("F0")));
  VocabularyReader reader;
  EXPECT_EQ("SAXException: Unknown external vocabulary - urn:other\n",
            reader.read(fromComponents("20 10 00 08 'urn:other' F0")));
  // URIs compare octet for octet.
  EXPECT_EQ("SAXException: Unknown external vocabulary - V\n",
            reader.read(fromComponents("20 10 00 00 'V' F0")));
  reader.map.clear();
  EXPECT_EQ("SAXException: Unknown external vocabulary - v\n", reader.read(withV("F0")));
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, nullptr);
  EXPECT_EQ("SAXException: Unknown external vocabulary - v\n", reader.read(withV("F0")));
}

TEST(FIReaderExternalVocabulary, IsNamedByALiteral) {
  EXPECT_EQ("SAXException: Error when parsing identifier\n",
            VocabularyReader().read(fromComponents("20 10 00 80 F0")));
}

TEST(FIReaderExternalVocabulary, IsRefusedBeforeTheOtherTablesAreRead) {
  EXPECT_EQ("SAXException: Unknown external vocabulary - x\n",
            VocabularyReader().read(fromComponents("20 10 04 00 'x' 01 80 F0")));
}

// --- The four tables that count ---

TEST(FIReaderExternalVocabulary, ComesBeforeTheAttributeValues) {
  const auto read = [](const std::string& index) {
    return readWithV("7C 00 'a' 78 00 'b' 40 'x' 00 00 'z' 78 00 'b' " + index + " FF F0");
  };
  const auto value = [](const std::string& text) {
    return whole(
        {"startElement(, a, a, [{, b, b, CDATA, x}, {u, l, p:l, CDATA, z}, "
         "{, b, b, CDATA, " +
             text + "}])",
         "endElement(, a, a)"});
  };
  EXPECT_EQ(value("external"), read("80"));
  EXPECT_EQ(value(""), read("81"));
  EXPECT_EQ(failed({}, kNoString), read("82"));
  EXPECT_EQ(value("x"), read("83"));
  EXPECT_EQ(failed({}, kNoString), read("84"));
}

TEST(FIReaderExternalVocabulary, ComesBeforeTheElementNames) {
  const auto read = [](const std::string& index) {
    return readWithV("3C 00 'a' " + index + " FF F0");
  };
  const auto child = [](const std::string& names) {
    return wholeContent({"startElement(" + names + ", [])", "endElement(" + names + ")"});
  };
  const std::string message = "Error when decoding element name - invalid index";
  EXPECT_EQ(child("u, l, p:l"), read("00"));
  EXPECT_EQ(child(", , "), read("01"));
  EXPECT_EQ(failedContent({}, message), read("02"));
  EXPECT_EQ(child(", a, a"), read("03"));
  EXPECT_EQ(failedContent({}, message), read("04"));
}

TEST(FIReaderExternalVocabulary, ComesBeforeTheAttributeNames) {
  const auto read = [](const std::string& index) {
    return readWithV("7C 00 'a' 78 00 'b' 00 'x' " + index + " 00 'y' FF F0");
  };
  const auto attribute = [](const std::string& names) {
    return whole({"startElement(, a, a, [{, b, b, CDATA, x}, {" + names + ", CDATA, y}])",
                  "endElement(, a, a)"});
  };
  const std::string message = "Error when decoding attribute name - invalid index";
  EXPECT_EQ(attribute("u, l, p:l"), read("00"));
  EXPECT_EQ(attribute(", , "), read("01"));
  EXPECT_EQ(failed({}, message), read("02"));
  EXPECT_EQ(attribute(", b, b"), read("03"));
  EXPECT_EQ(failed({}, message), read("04"));
}

TEST(FIReaderExternalVocabulary, ComesBeforeTheEncodingAlgorithms) {
  const auto read = [](const std::string& field) {
    return VocabularyReader().read(
        fromComponents("20 14 00 00 'v' 01 02 'own' 3C 00 'a' 8C " + field + " 'd' FF"));
  };
  EXPECT_EQ(wholeContent({"octets(external, 32, 64)"}), read("80"));
  EXPECT_EQ(wholeContent({"octets(, 33, 64)"}), read("84"));
  EXPECT_EQ(failedContent({}, kNoString), read("88"));
  EXPECT_EQ(wholeContent({"octets(own, 35, 64)"}), read("8C"));
  EXPECT_EQ(failedContent({}, kNoString), read("90"));
}

TEST(FIReaderExternalVocabulary, NamesTheAlgorithmsOfAttributesToo) {
  const auto read = [](const std::string& value) {
    return VocabularyReader().read(
        fromComponents("20 14 00 00 'v' 01 02 'own' 7C 00 'a' 78 00 'b' " + value + " 'd' FF F0"));
  };
  EXPECT_EQ(failed({}, "Unknown encoding algorithm - external"), read("32 00"));
  EXPECT_EQ(failed({}, "Unknown encoding algorithm - "), read("32 10"));
  EXPECT_EQ(failed({}, kNoString), read("32 20"));
  EXPECT_EQ(failed({}, "Unknown encoding algorithm - own"), read("32 30"));
  EXPECT_EQ(failed({}, kNoString), read("32 40"));
}

TEST(FIReaderExternalVocabulary, MayNameAnAlgorithmOfNoURI) {
  const std::vector<const char*> nulls(224);
  VocabularyReader reader;
  reader.empty.encodingAlgorithms = {nulls.data(), 224, 224};
  EXPECT_EQ(failed({}, "Unknown encoding algorithm - "),
            reader.read(fromComponents("20 10 00 00 'w' 7C 00 'a' 78 00 'b' 3F F0 'd' FF F0")));
}

TEST(FIReaderExternalVocabulary, MayBeNone) {
  // A null pointer in the map: there is no vocabulary, and the one before is no longer selected.
  VocabularyReader reader;
  reader.map["x"] = nullptr;
  EXPECT_EQ(whole({}), reader.read(withV("F0")));
  EXPECT_EQ(wholeContent({"startElement(, a, a, [])", "endElement(, a, a)"}),
            reader.read(fromComponents("20 10 00 00 'x' 3C 00 'a' 00 FF F0")));
}

TEST(FIReaderExternalVocabulary, ComesBeforeTheTablesOfTheInitialVocabulary) {
  EXPECT_EQ(whole({"startElement(, e, e, [{, g, g, CDATA, v}])", "endElement(, e, e)"}),
            VocabularyReader().read(fromComponents("20 10 13 00 'v' 01 00 'v' 01 00 00 'e' "
                                                   "01 00 00 'g' 43 03 83 FF F0")));
}

// --- The eight that do not ---

TEST(FIReaderExternalVocabulary, HasNoPrefixesOrNamespaceNames) {
  EXPECT_EQ(failed({}, kNoString), readWithV("38 CE 80 F0 3C 00 'a' FF"));
  EXPECT_EQ(failed({}, kNoString), readWithV("38 CD 80 F0 3C 00 'a' FF"));
  EXPECT_EQ(failed({}, "Error when parsing prefix"), readWithV("3F 01 00 00 'a' FF"));
  EXPECT_EQ(failed({}, "Error when parsing namespace"), readWithV("3D 01 00 'a' FF"));
  // The document's own begin at 0 in a declaration, at 1 in a name.
  EXPECT_EQ(
      whole({"startPrefixMapping(q, w)", "startPrefixMapping(q, w)", "startElement(w, a, q:a, [])",
             "endElement(w, a, q:a)", "endPrefixMapping(q)", "endPrefixMapping(q)"}),
      readWithV("38 CF 00 'q' 00 'w' CF 80 80 F0 3F 01 01 00 'a' FF"));
}

TEST(FIReaderExternalVocabulary, HasNoLocalNames) {
  EXPECT_EQ(failed({}, kNoString), readWithV("3C 80 FF"));
  EXPECT_EQ(wholeContent({"startElement(, a, a, [])", "endElement(, a, a)"}),
            readWithV("3C 00 'a' 3C 80 FF F0"));
}

TEST(FIReaderExternalVocabulary, HasNoOtherNCNames) {
  EXPECT_EQ(failed({}, kNoString), readWithV("E1 80 00 'd' F0"));
  EXPECT_EQ(whole({"processingInstruction(t, d)", "processingInstruction(t, e)"}),
            readWithV("E1 00 't' 00 'd' E1 80 00 'e' F0"));
}

TEST(FIReaderExternalVocabulary, HasNoOtherURIs) {
  EXPECT_EQ(failed({}, kNoString), readWithV("C6 80 FF"));
  EXPECT_EQ(whole({"startDTD(, s, s)", "endDTD()"}), readWithV("C7 00 's' 80 FF"));
}

TEST(FIReaderExternalVocabulary, HasNoCharacterChunks) {
  EXPECT_EQ(failedContent({}, "Error when decoding character chunk - invalid index"),
            readWithV("3C 00 'a' A0 FF"));
  EXPECT_EQ(wholeContent({"characters(x)", "characters(x)"}), readWithV("3C 00 'a' 90 'x' A0 FF"));
}

TEST(FIReaderExternalVocabulary, HasNoOtherStrings) {
  EXPECT_EQ(failed({}, kNoString), readWithV("E2 80 F0"));
  EXPECT_EQ(failed({}, kNoString), readWithV("E1 00 't' 80 F0"));
  EXPECT_EQ(whole({"comment(c)", "comment(c)"}), readWithV("E2 40 'c' E2 80 F0"));
}

TEST(FIReaderExternalVocabulary, HasNoStringsForAVersion) {
  EXPECT_EQ("SAXException: Error when decoding string - invalid index\n",
            VocabularyReader().read(fromComponents("21 10 00 00 'v' 80 F0")));
}

TEST(FIReaderExternalVocabulary, HasNoRestrictedAlphabets) {
  EXPECT_EQ(wholeContent({"characters()"}), readWithV("3C 00 'a' 88 00 FF"));
}

TEST(FIReaderExternalVocabulary, WithoutEntriesChangesNothing) {
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, x}, {, b, b, CDATA, x}])",
                   "startElement(, a, a, [])", "endElement(, a, a)", "endElement(, a, a)"}),
            VocabularyReader().read(fromComponents("20 10 00 00 'w' 7C 00 'a' 78 00 'b' 40 'x' "
                                                   "00 80 F0 00 FF F0")));
}

TEST(FIReaderExternalVocabulary, MayOccupyPositionsWithoutAnyEntry) {
  VocabularyReader reader;
  reader.empty.elementNameSurrogates = {nullptr, 0, 4294967295};
  EXPECT_EQ(failedContent({}, "Error when decoding element name - invalid index"),
            reader.read(fromComponents("20 10 00 00 'w' 3C 00 'a' 00")));
  EXPECT_EQ(failedContent({}, "Error when decoding element name - invalid index"),
            reader.read(fromComponents("20 10 00 00 'w' 3C 00 'a' 30 0F FF FF")));
}

// --- From document to document ---

/// An element whose name is the first of the table: `l` with the external vocabulary.
const char* const kFirstName = "00 FF";
const EventLog::Lines kNamed = {"startElement(u, l, p:l, [])", "endElement(u, l, p:l)"};

TEST(FIReaderExternalVocabulary, StaysForTheDocumentsThatFollow) {
  VocabularyReader reader;
  EXPECT_EQ(whole({}), reader.read(withV("F0")));
  EXPECT_EQ(whole(kNamed), reader.read(document(kFirstName)));
  // Also behind a failure, and with an initial vocabulary that names none.
  EXPECT_EQ("SAXException: Not a Fast Infoset document\n", reader.read(""));
  EXPECT_EQ(failed(kNamed, "Error while parsing document"), reader.read(document("00 F0 C8")));
  EXPECT_EQ(whole(kNamed),
            reader.read(fromComponents("20 00 02 01 00 00 'e' " + std::string(kFirstName))));
}

TEST(FIReaderExternalVocabulary, StaysUntilAnotherIsNamed) {
  VocabularyReader reader;
  EXPECT_EQ(whole(kNamed), reader.read(withV(kFirstName)));
  EXPECT_EQ(failed({}, "Error when decoding element name - invalid index"),
            reader.read(fromComponents("20 10 00 00 'w' " + std::string(kFirstName))));
  EXPECT_EQ(failed({}, "Error when decoding element name - invalid index"),
            reader.read(document(kFirstName)));
}

TEST(FIReaderExternalVocabulary, StaysWhereAnUnknownOneIsNamed) {
  VocabularyReader reader;
  EXPECT_EQ(whole(kNamed), reader.read(withV(kFirstName)));
  EXPECT_EQ("SAXException: Unknown external vocabulary - x\n",
            reader.read(fromComponents("20 10 00 00 'x' F0")));
  EXPECT_EQ(whole(kNamed), reader.read(document(kFirstName)));
}

TEST(FIReaderExternalVocabulary, StaysWithoutTheMap) {
  VocabularyReader reader;
  EXPECT_EQ(whole(kNamed), reader.read(withV(kFirstName)));
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, nullptr);
  EXPECT_EQ(whole(kNamed), reader.read(document(kFirstName)));
}

TEST(FIReaderExternalVocabulary, OfADocumentThatFailsLaterIsSelected) {
  VocabularyReader reader;
  EXPECT_EQ("SAXException: Error when parsing identifier\n",
            reader.read(fromComponents("20 12 00 00 'v' 01 80")));
  EXPECT_EQ(whole(kNamed), reader.read(document(kFirstName)));
}

}  // namespace
}  // namespace reader_test
