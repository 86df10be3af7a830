#include <gtest/gtest.h>

#include "FIReaderValues.h"

// Which algorithm a field stands for, how long its data are, and what is wrong with them.

namespace reader_test {
namespace {

const char* const kNoString = "Error when decoding string - invalid index";

// --- Fields ---

/// The URI that stands for a field in the vocabulary below.
std::string uriOf(unsigned field) { return field < 32 ? "" : "u" + std::to_string(field); }

/// A document whose initial vocabulary has a URI for each field from 32 to 255.
std::string withAllURIs(const std::string& octetsOfChildren) {
  std::string document = fromComponents("20 04 00 80 00 E0");
  for (unsigned field = 32; field <= 255; ++field) {
    document += static_cast<char>(uriOf(field).size() - 1) + uriOf(field);
  }
  return document + octetsOfChildren;
}

/// Eight octets that are zero, as each algorithm shows them; empty where there is none.
std::string zerosOf(unsigned field) {
  switch (field) {
    case 0:
      return "HexadecimalData{0000000000000000}";
    case 1:
      return "Base64Data{AAAAAAAAAAA=}";
    case 2:
      return "ShortData{0 0 0 0}";
    case 3:
      return "IntData{0 0}";
    case 4:
      return "LongData{0}";
    case 5: {
      std::string shown = "BooleanData{false";
      for (int i = 1; i < 60; ++i) shown += " false";
      return shown + "}";
    }
    case 6:
      return "FloatData{0 0}";
    case 7:
      return "DoubleData{0}";
    case 9:
      return "CDATAData{\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x00}";
    default:
      return "";
  }
}

const std::string kZeros(8, '\0');

TEST(FIReaderAlgorithms, OfContentAreToldByEightBitsLessOne) {
  for (unsigned field = 0; field <= 255; ++field) {
    SCOPED_TRACE(field);
    LoggedReader reader;
    reader.reader.setContentHandler(nullptr);
    reader.log.attachAlgorithmsTo(reader.reader);
    // The field's two highest bits end the first octet, the others begin the next.
    const std::string chunk = bigEndian(0x8C02 | field << 2, 2) + '\x05' + kZeros;
    const unsigned read = field & 0xBF;
    const std::string zeros = zerosOf(read);
    const std::string arguments = uriOf(read) + ", " + std::to_string(read) + ", ";
    EXPECT_EQ(join({zeros.empty() ? "octets(" + arguments + "00 00 00 00 00 00 00 00)"
                                  : "object(" + arguments + zeros + ")"}),
              reader.read(withAllURIs(octets("3C 00 'a'") + chunk + octets("FF"))));
  }
}

TEST(FIReaderAlgorithms, OfAttributesAreToldByEightBits) {
  for (unsigned field = 0; field <= 255; ++field) {
    SCOPED_TRACE(field);
    for (const unsigned addToTable : {0U, 0x4000U}) {
      LoggedReader reader;
      const std::string value = bigEndian(0x3007 | addToTable | field << 4, 2) + kZeros;
      const std::string zeros = zerosOf(field);
      const std::string text = zeros.substr(0, zeros.size() - 1).substr(zeros.find('{') + 1);
      EXPECT_EQ(zeros.empty() ? failed({}, "Unknown encoding algorithm - " + uriOf(field))
                              : whole({"startElement(, a, a, [{, b, b, CDATA, " + text + ", , " +
                                           std::to_string(field) + ", " + zeros + "}])",
                                       "endElement(, a, a)"}),
                reader.read(withAllURIs(octets("7C 00 'a' 78 00 'b'") + value + octets("FF F0"))));
    }
  }
}

TEST(FIReaderAlgorithms, OfAnApplicationNeedAnEntryInTheTable) {
  // The lookup fails first, whatever the application has registered.
  TypedReader reader;
  EXPECT_EQ(failedContent({}, kNoString), reader.read(documentOfContent("8C 80 'x'")));
  EXPECT_EQ(failed({}, kNoString), reader.read(document("7C 00 'a' 78 00 'b' 32 00 'x' FF F0")));
  EXPECT_EQ(failedContent({}, kNoString), reader.read(withAlgorithmURI("3C 00 'a' 8C 84 'x' FF")));
  EXPECT_EQ(failed({}, kNoString),
            reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b' 32 10 'x' FF F0")));
}

TEST(FIReaderAlgorithms, OfAnApplicationAreFoundByTheirURI) {
  const std::string content = withAlgorithmURI("3C 00 'a' 8C 81 'xy' FF");
  const std::string attribute = withAlgorithmURI("7C 00 'a' 78 00 'b' 32 01 'xy' FF F0");
  const std::string known = wholeContent({"object(urn:reversed, 32, EncodedData{yx})"});
  const std::string unknown = wholeContent({"octets(urn:reversed, 32, 78 79)"});
  const std::string refused = failed({}, "Unknown encoding algorithm - urn:reversed");

  TypedReader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(known, reader.read(content));
  // The map is the application's, and read at each use.
  reader.map = {{"urn:Reversed", &reader.reversed}};
  EXPECT_EQ(unknown, reader.read(content));
  EXPECT_EQ(refused, reader.read(attribute));
  reader.map = {{"urn:reversed", nullptr}};
  EXPECT_EQ(unknown, reader.read(content));
  EXPECT_EQ(refused, reader.read(attribute));
  reader.map.clear();
  EXPECT_EQ(unknown, reader.read(content));
  EXPECT_EQ(refused, reader.read(attribute));
  reader.reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, nullptr);
  EXPECT_EQ(unknown, reader.read(content));
  EXPECT_EQ(refused, reader.read(attribute));
}

TEST(FIReaderAlgorithms, OfAnApplicationMayHaveTheEmptyURI) {
  // An external vocabulary names it by a null text.
  const char* const texts[] = {nullptr};
  Tavrin::ExternalVocabulary vocabulary;
  vocabulary.encodingAlgorithms = {texts, 1, 1};
  Tavrin::ExternalVocabularyMap vocabularies = {{"v", &vocabulary}};
  TypedReader reader;
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, &vocabularies);
  reader.map = {{"", &reader.reversed}};
  EXPECT_EQ(wholeContent({"characters(yx)"}),
            reader.read(fromComponents("20 10 00 00 'v' 3C 00 'a' 8C 81 'xy' FF")));
}

TEST(FIReaderAlgorithms, BuiltInAreNoneOfTheApplications) {
  TypedReader reader;
  reader.map[""] = &reader.reversed;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(
      wholeContent({"object(, 0, HexadecimalData{01})", "octets(, 8, 01)", "octets(, 31, 01)"}),
      reader.read(withAlgorithmURI("3C 00 'a' 8C 00 01 8C 20 01 8C 7C 01 FF")));
}

/// An algorithm that fails as a test says.
class FailingAlgorithm : public ReversedAlgorithm {
 public:
  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    return decode(length, stream);
  }
  std::function<Tavrin::EncodedData&(std::uint32_t, std::istream&)> decode;
};

TEST(FIReaderAlgorithms, OfAnApplicationMayThrowAnything) {
  FailingAlgorithm failing;
  TypedReader reader;
  reader.map = {{"urn:reversed", &failing}};
  const std::string content = withAlgorithmURI("3C 00 'a' 8C 81 'xy' FF");
  const std::string started = "startDocument()\nstartElement(, a, a, [])\n";
  failing.decode = [](std::uint32_t, std::istream&) -> Tavrin::EncodedData& {
    throw Tavrin::EncodingAlgorithmException("no such data");
  };
  EXPECT_EQ(started + "EncodingAlgorithmException: no such data\n", reader.read(content));
  failing.decode = [](std::uint32_t, std::istream&) -> Tavrin::EncodedData& {
    throw std::runtime_error("broken");
  };
  EXPECT_EQ(started + "std::exception: broken\n", reader.read(content));
  reader.map = {{"urn:reversed", &reader.reversed}};
  EXPECT_EQ(wholeContent({"characters(yx)"}), reader.read(content));
}

TEST(FIReaderAlgorithms, OfAnApplicationThatReadTooFarEndTheDocument) {
  FailingAlgorithm failing;
  TypedReader reader;
  reader.map = {{"urn:reversed", &failing}};
  failing.decode = [&](std::uint32_t, std::istream& stream) -> Tavrin::EncodedData& {
    return reader.reversed.decodeFromInputStream(100, stream);
  };
  EXPECT_EQ(failedContent({}, "Unexpected end of document"),
            reader.read(withAlgorithmURI("3C 00 'a' 8C 81 'xy' FF")));
}

// --- Lengths ---

TEST(FIReaderAlgorithmData, OfEveryLengthFormInContent) {
  const struct {
    const char* written;
    std::size_t octetCount;
  } rows[] = {{"8C 00", 1},
              {"8C 01", 2},
              {"8C 02 00", 3},
              {"8C 02 FF", 258},
              {"8C 03 00 00 00 00", 259},
              {"8C 03 00 00 00 01", 260},
              {"8C 03 00 02 00 00", 131331},
              // No algorithm: the octets are the same.
              {"8C 20", 1},
              {"8C 22 FF", 258},
              {"8C 23 00 00 00 00", 259},
              {"8C 23 00 02 00 00", 131331}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.written);
    LoggedReader reader;
    reader.log.attachAlgorithmsTo(reader.reader);
    reader.log.attachPrimitiveTypesTo(reader.reader);
    const std::string data(row.octetCount, 'x');
    std::string shown = "78";
    for (std::size_t i = 1; i < row.octetCount; ++i) shown += " 78";
    const bool known = row.written[3] == '0';
    EXPECT_EQ(wholeContent({(known ? "bytes(" : "octets(, 8, ") + shown + ")"}),
              reader.read(document("3C 00 'a'") + octets(row.written) + data + octets("FF")));
  }
}

TEST(FIReaderAlgorithmData, OfEveryLengthFormInAttributes) {
  const struct {
    const char* written;
    std::size_t octetCount;
  } rows[] = {{"30 90", 1},
              {"30 97", 8},
              {"30 98 00", 9},
              {"30 98 FF", 264},
              {"30 9C 00 00 00 00", 265},
              {"30 9C 00 00 00 01", 266},
              {"30 9C 00 02 00 00", 131337}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.written);
    const std::string data(row.octetCount, 'x');
    EXPECT_EQ(
        whole(
            {"startElement(, a, a, [{, b, b, CDATA, " + data + ", , 9, CDATAData{" + data + "}}])",
             "endElement(, a, a)"}),
        readNew(document("7C 00 'a' 78 00 'b'") + octets(row.written) + data + octets("FF F0")));
  }
}

TEST(FIReaderAlgorithmData, InAttributesHaveAStringsLength) {
  // Refused before the algorithm is looked for.
  for (const char* written : {"30 09", "30 3B", "30 8D", "32 0E", "3F FF"}) {
    EXPECT_EQ(failed({}, "Error when decoding string length"),
              readNew(document("7C 00 'a' 78 00 'b' " + std::string(written))))
        << written;
  }
}

// A length and its bias may go beyond 32 bits: so many octets do not come.
TEST(FIReaderAlgorithmData, OfALengthThatNoAlgorithmTakesAreCutOff) {
  const std::string end = "Unexpected end of document";
  for (const char* chunk : {"8C 03", "8C 07", "8C 17", "8C 23", "8C 27", "8C 83"}) {
    // 4294967295 octets, one more, and the greatest length there is.
    for (const char* length : {"FF FF FE FC", "FF FF FE FD", "FF FF FF FF"}) {
      EXPECT_EQ(failedContent({}, end), readNew(fromComponents("20 04 00 01 00 'u' 3C 00 'a' " +
                                                               std::string(chunk) + " " + length)))
          << chunk << " " << length;
    }
  }
  for (const char* value : {"30 0C", "30 1C", "30 5C", "30 9C"}) {
    for (const char* length : {"FF FF FE F6", "FF FF FE F7", "FF FF FF FF"}) {
      EXPECT_EQ(failed({}, end), readNew(document("7C 00 'a' 78 00 'b' " + std::string(value) +
                                                  " " + length + " 'xyz'")))
          << value << " " << length;
    }
  }
}

TEST(FIReaderAlgorithmData, OfALengthThatNoAlgorithmTakesMayBeOfAWrongOne) {
  const struct {
    unsigned field;
    const char* name;
    unsigned long size;
  } rows[] = {{2, "short", 2}, {3, "int", 4}, {4, "long", 8}, {6, "float", 4}, {7, "double", 8}};
  for (const auto& row : rows) {
    for (unsigned long length = 4294967296; length < 4294967296 + 9; ++length) {
      SCOPED_TRACE(std::string(row.name) + ", " + std::to_string(length));
      const std::string refused = length % row.size == 0
                                      ? "SAXException: Unexpected end of document\n"
                                      : "EncodingAlgorithmException: Invalid length for encoded " +
                                            std::string(row.name) + " data\n";
      EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\n" + refused,
                readNew(document("3C 00 'a'") + bigEndian(0x8C03 | row.field << 2, 2) +
                        bigEndian(length - 259, 4)));
      EXPECT_EQ("startDocument()\n" + refused,
                readNew(document("7C 00 'a' 78 00 'b'") + bigEndian(0x300C | row.field << 4, 2) +
                        bigEndian(length - 265, 4)));
    }
  }
}

/// Takes any length, and reads nothing of it.
class IndifferentAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t, std::istream&) override {
    ++calls;
    return holder_;
  }
  void encodeToOutputStream(bool, const Tavrin::EncodedData&, std::ostream&) override {}

  int calls = 0;

 private:
  Tavrin::CDATAData holder_;
};

TEST(FIReaderAlgorithmData, OfALengthThatNoAlgorithmTakesDoNotReachAnApplicationsOwn) {
  IndifferentAlgorithm algorithm;
  Tavrin::EncodingAlgorithmMap map = {{"u", &algorithm}};
  LoggedReader reader;
  reader.reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  const std::string chunk = "20 04 00 01 00 'u' 3C 00 'a' 8C 83 ";
  EXPECT_EQ(wholeContent({"characters()"}), reader.read(fromComponents(chunk + "FF FF FE FC FF")));
  EXPECT_EQ(1, algorithm.calls);
  EXPECT_EQ(failedContent({}, "Unexpected end of document"),
            reader.read(fromComponents(chunk + "FF FF FE FD FF")));
  EXPECT_EQ(1, algorithm.calls);
}

/// Data of a length that the algorithm cannot take.
struct WrongLength {
  const char* algorithm;
  unsigned field;
  std::vector<unsigned> lengths;
};

const WrongLength kWrongLengths[] = {{"short", 2, {1, 3, 5, 7}},
                                     {"int", 3, {1, 2, 3, 5, 6, 7}},
                                     {"long", 4, {1, 2, 3, 4, 5, 6, 7}},
                                     {"float", 6, {1, 2, 3, 5, 6, 7}},
                                     {"double", 7, {1, 2, 3, 4, 5, 6, 7}}};

TEST(FIReaderAlgorithmData, OfAWrongLengthAreRefusedAlsoWhereTheyAreCutOff) {
  for (const WrongLength& row : kWrongLengths) {
    for (const unsigned length : row.lengths) {
      SCOPED_TRACE(std::string(row.algorithm) + ", " + std::to_string(length));
      const std::string refused = "EncodingAlgorithmException: Invalid length for encoded " +
                                  std::string(row.algorithm) + " data\n";
      const std::string chunk = length < 3
                                    ? bigEndian(0x8C00 | row.field << 2 | (length - 1), 2)
                                    : bigEndian(0x8C0200 | row.field << 10 | (length - 3), 3);
      const std::string value = bigEndian(0x3000 | row.field << 4 | (length - 1), 2);
      for (const std::string& data : {std::string(length, '\0'), std::string()}) {
        EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\n" + refused,
                  readNew(document("3C 00 'a'") + chunk + data));
        EXPECT_EQ("startDocument()\n" + refused,
                  readNew(document("7C 00 'a' 78 00 'b'") + value + data));
      }
    }
  }
}

TEST(FIReaderAlgorithmData, OfBooleansHaveNoMoreUnusedBitsThanBits) {
  const std::string refused =
      "startDocument()\nstartElement(, a, a, [])\n"
      "EncodingAlgorithmException: Invalid length for encoded boolean data\n";
  for (const char* first : {"50", "70", "8F", "F0"}) {
    EXPECT_EQ(refused, readNew(documentOfContent("8C 14 " + std::string(first)))) << first;
  }
  // Of two octets there are twelve.
  EXPECT_EQ(refused, readNew(documentOfContent("8C 15 D0 00")));
  EXPECT_EQ(refused, readNew(documentOfContent("8C 15 D0")));
}

TEST(FIReaderAlgorithmData, OfBooleansLeaveOctetsWithoutBooleansInTheStream) {
  // With 8 to 15 unused bits the last octet holds no boolean. It is taken for the next item.
  EXPECT_EQ(wholeContent({"characters(true false true false)", "characters(x)"}),
            readNew(documentOfContent("8C 15 8A 80 'x'")));
  EXPECT_EQ(wholeContent({"characters()", "characters(x)"}),
            readNew(documentOfContent("8C 15 CF 80 'x'")));
  EXPECT_EQ(wholeContent({"characters(true true true true true)", "characters(x)"}),
            readNew(documentOfContent("8C 16 00 FF 80 80 'x'")));
}

TEST(FIReaderAlgorithmData, CutOffAreNotTold) {
  for (const TypedValue& value : typedValues()) {
    const std::string chunk = octets(value.chunk);
    const std::string attributeValue = octets(value.attributeValue);
    for (std::size_t length = 1; length < chunk.size(); ++length) {
      SCOPED_TRACE(std::string(value.name) + ", " + std::to_string(length));
      TypedReader reader;
      reader.log.attachPrimitiveTypesTo(reader.reader);
      reader.log.attachAlgorithmsTo(reader.reader);
      EXPECT_EQ(failedContent({}, "Unexpected end of document"),
                reader.read(withAlgorithmURI("3C 00 'a'") + chunk.substr(0, length)));
    }
    for (std::size_t length = 1; length < attributeValue.size(); ++length) {
      SCOPED_TRACE(std::string(value.name) + ", " + std::to_string(length));
      TypedReader reader;
      EXPECT_EQ(
          failed({}, "Unexpected end of document"),
          reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b'") + attributeValue.substr(0, length)));
    }
  }
}

}  // namespace
}  // namespace reader_test
