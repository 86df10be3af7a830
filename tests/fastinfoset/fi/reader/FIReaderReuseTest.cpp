#include <gtest/gtest.h>

#include "FIReaderSamples.h"

// One reader for many documents, good ones and bad ones.

namespace reader_test {
namespace {

/// A document for each way in which one can fail.
struct Malformed {
  std::string octets;
  const char* failure;
};

const std::vector<Malformed>& malformedDocuments() {
  static const std::vector<Malformed> documents = {
      {"", "SAXException: Not a Fast Infoset document"},
      {document("3C 00 'a' 3C 00 'b' 3C 00 'c'"), "SAXException: Unexpected end of document"},
      {document("3C 00 'a' 8C 03 FF FF FF FF"), "SAXException: Unexpected end of document"},
      {document("3C 00 'a' E2 F0"), "SAXException: Error when decoding index"},
      {document("3C 00 'a' 39"), "SAXException: Error when decoding element name"},
      {document("3C 00 'a' B9"), "SAXException: Error when decoding character chunk"},
      {document("3C 00 'a' E1 41"), "SAXException: Error when parsing identifier"},
      {document("3C 00 'a' E2 09"), "SAXException: Error when decoding string length"},
      {document("3C 00 'a' E2 80"), "SAXException: Error when decoding string - invalid index"},
      {fromComponents("20 00 04 02 00 'x' 80"), "SAXException: Error when decoding string"},
      {document("3C 00 'a' F0 3C"), "SAXException: Found more than one element on the top level"},
      {document("3C 00 'a' F0 C8"), "SAXException: Error while parsing document"},
      {document("3C 00 'a' F0 C4"), "SAXException: Found DTD behind the top level element"},
      {document("C4 F0 C4"), "SAXException: Found more than one DTD"},
      {document("38 CF 00 'p' 00 'u' FF"), "SAXException: Error while parsing namespaces"},
      {document("C4 00"), "SAXException: Error while parsing DTD"},
      {document("3C 00 'a' CC"), "SAXException: Error when decoding element children"},
      {document("3E 00 00 'a'"),
       "SAXException: Qualified name with a prefix, but without a namespace"},
      {document("3F 01 01 00 'a'"), "SAXException: Error when parsing prefix"},
      {document("3D 01 00 'a'"), "SAXException: Error when parsing namespace"},
      {document("3C 00 'a' 01"), "SAXException: Error when decoding element name - invalid index"},
      {document("7C 00 'a' 00"),
       "SAXException: Error when decoding attribute name - invalid index"},
      {document("7C 00 'a' 78 00 'b' 40 'x' 70"),
       "SAXException: Error when decoding attribute name"},
      {document("3C 00 'a' 90 'x' A1"),
       "SAXException: Error when decoding character chunk - invalid index"},
      {document("7C 00 'a' 78 00 'b' 30 80"), "SAXException: Unknown encoding algorithm - "},
      {fromComponents("20 10 00 00 'x'"), "SAXException: Unknown external vocabulary - x"},
      {document("3C 00 'a' 8C 08"),
       "EncodingAlgorithmException: Invalid length for encoded short data"},
      {document("3C 00 'a' 8C 0C"),
       "EncodingAlgorithmException: Invalid length for encoded int data"},
      {document("3C 00 'a' 8C 10"),
       "EncodingAlgorithmException: Invalid length for encoded long data"},
      {document("3C 00 'a' 8C 14 F0"),
       "EncodingAlgorithmException: Invalid length for encoded boolean data"},
      {document("3C 00 'a' 8C 18"),
       "EncodingAlgorithmException: Invalid length for encoded float data"},
      {document("3C 00 'a' 8C 1C"),
       "EncodingAlgorithmException: Invalid length for encoded double data"},
  };
  return documents;
}

TEST(FIReaderReuse, IsPossibleBehindEveryFailure) {
  // Every table is filled and used, and an end that counts the open elements.
  const std::string good = document(
      "C6 00 's' F0 E1 00 't' 40 'd' 78 CF 00 'p' 00 'u' F0 3F 01 01 00 'a' 7B 01 01 00 'b' 40 'v' "
      "00 80 F0 3C 81 90 'x' A0 FF E1 80 80 F0");
  const std::string told = whole(
      {"startDTD(, , s)", "endDTD()", "processingInstruction(t, d)", "startPrefixMapping(p, u)",
       "startElement(u, a, p:a, [{u, b, p:b, CDATA, v}, {u, b, p:b, CDATA, v}])",
       "startElement(, b, b, [])", "characters(x)", "characters(x)", "endElement(, b, b)",
       "endElement(u, a, p:a)", "endPrefixMapping(p)", "processingInstruction(t, d)"});
  LoggedReader reader;
  EXPECT_EQ(told, reader.read(good));
  for (const Malformed& malformed : malformedDocuments()) {
    SCOPED_TRACE(malformed.failure);
    reader.read(malformed.octets);
    EXPECT_EQ(malformed.failure, reader.outcome);
    EXPECT_EQ(told, reader.read(good));
    // Twice in a row.
    reader.read(malformed.octets);
    EXPECT_EQ(malformed.failure, reader.outcome);
    reader.read(malformed.octets);
    EXPECT_EQ(malformed.failure, reader.outcome);
  }
  EXPECT_EQ(told, reader.read(good));
}

TEST(FIReaderReuse, LeavesNoEntryOfADocumentToTheNext) {
  const std::string filling = document(
      "C6 00 's' F0 E1 00 't' 40 'd' 78 CF 00 'p' 00 'u' F0 3F 01 01 00 'a' 78 00 'b' 40 'v' F0 "
      "90 'x' FF");
  const std::string noString = "Error when decoding string - invalid index";
  const struct {
    const char* written;
    std::string told;
  } rows[] = {
      {"38 CE 80", failed({}, noString)},
      {"38 CD 80", failed({}, noString)},
      {"3F 01 00 00 'a'", failed({}, "Error when parsing prefix")},
      {"3F 00 01 00 'a'", failed({}, "Error when parsing namespace")},
      {"3C 80", failed({}, noString)},
      {"E1 80", failed({}, noString)},
      {"E1 00 't' 80", failed({}, noString)},
      {"C6 80", failed({}, noString)},
      {"7C 00 'a' 78 00 'b' 80", failed({}, noString)},
      {"3C 00 'a' A0", failedContent({}, "Error when decoding character chunk - invalid index")},
      {"00", failed({}, "Error when decoding element name - invalid index")},
      {"7C 00 'a' 00", failed({}, "Error when decoding attribute name - invalid index")},
  };
  for (const auto& row : rows) {
    LoggedReader reader;
    reader.read(filling);
    EXPECT_EQ("done", reader.outcome);
    EXPECT_EQ(row.told, reader.read(document(row.written))) << row.written;
  }
}

TEST(FIReaderReuse, TellsTheSameDocumentTheSameEachTime) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    SampleReader reader;
    const std::string first = reader.read(sample.octets);
    EXPECT_EQ(first, reader.read(sample.octets));
    EXPECT_EQ(first, reader.read(sample.octets));
  }
}

TEST(FIReaderReuse, OfReadersBesideEachOtherSharesNothing) {
  LoggedReader one;
  LoggedReader other;
  EXPECT_EQ(wholeContent({"characters(x)"}), one.read(documentOfContent("90 'x'")));
  EXPECT_EQ(failedContent({}, "Error when decoding character chunk - invalid index"),
            other.read(documentOfContent("A0")));
  EXPECT_EQ(whole({}), one.read(fromComponents("20 04 00 01 00 'u' F0")));
  EXPECT_EQ(failedContent({}, "Error when decoding string - invalid index"),
            other.read(documentOfContent("8C 80 'x'")));
}

}  // namespace
}  // namespace reader_test
