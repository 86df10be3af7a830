#include <gtest/gtest.h>

#include <typeinfo>

#include "FIReaderPrimitives.h"
#include "FIReaderValues.h"

// What the operations that decode whole items return to a class derived from the reader.

namespace reader_test {
namespace {

class Operations : public Primitives {
 public:
  using XMLReader_FI::decodeAttributes;
  using XMLReader_FI::decodeCharacters;
  using XMLReader_FI::decodeDTD;
  using XMLReader_FI::decodeElement;
  using XMLReader_FI::decodeNamespaces;
  using XMLReader_FI::getEncodingAlgorithm;
  using XMLReader_FI::isFastInfosetDocument;
};

TEST(FIReaderOperations, TellWhetherAnElementEndsWhatItStandsIn) {
  const struct {
    int octet;
    const char* following;
    bool endsOuter;
  } rows[] = {
      {0x3C, "00 'a' F0", false},
      {0x3C, "00 'a' FF", true},
      // The end of the attributes is one of the two.
      {0x7C, "00 'a' FF", false},
      {0x7C, "00 'a' F0 F0", false},
      {0x7C, "00 'a' F0 FF", true},
      // So is that of a child.
      {0x3C, "00 'a' 3C 00 'b' FF", false},
      {0x3C, "00 'a' 3C 00 'b' F0 F0", false},
      {0x3C, "00 'a' 3C 00 'b' F0 FF", true},
      {0x3C, "00 'a' 3C 00 'b' 3C 00 'c' FF FF", true},
      {0x38, "F0 3C 00 'a' 80 'x' FF", true},
  };
  for (const auto& row : rows) {
    Operations reader;
    bool endsOuter = !row.endsOuter;
    EXPECT_EQ("done", reader.run(octets(row.following),
                                 [&] { endsOuter = reader.decodeElement(row.octet); }));
    EXPECT_EQ(row.endsOuter, endsOuter) << row.following;
  }
}

TEST(FIReaderOperations, TellWhetherADocumentTypeEndsTheDocument) {
  for (const bool endsDocument : {false, true}) {
    Operations reader;
    bool ended = !endsDocument;
    EXPECT_EQ("done", reader.run(octets(endsDocument ? "E1 00 't' FF FF" : "E1 00 't' FF F0"),
                                 [&] { ended = reader.decodeDTD(0xC4); }));
    EXPECT_EQ(endsDocument, ended);
  }
}

TEST(FIReaderOperations, TellWhetherAttributesEndTheElement) {
  for (const bool endsElement : {false, true}) {
    Operations reader;
    Tavrin::EncodingAlgorithmAttributesImpl attributes;
    bool ended = !endsElement;
    EXPECT_EQ("done",
              reader.run(octets(endsElement ? "78 00 'b' 00 'x' FF" : "78 00 'b' 00 'x' F0"),
                         [&] { ended = reader.decodeAttributes(attributes); }));
    EXPECT_EQ(endsElement, ended);
    ASSERT_EQ(1, attributes.getLength());
    EXPECT_EQ("x", attributes.getValue("b"));
  }
}

TEST(FIReaderOperations, ListNamespaceDeclarationsInPairs) {
  Operations reader;
  std::vector<std::string> declarations;
  EXPECT_EQ("done", reader.run(octets("CF 00 'p' 00 'u' CC CD 80 CE 00 'q' F0"),
                               [&] { reader.decodeNamespaces(declarations); }));
  EXPECT_EQ((std::vector<std::string>{"p", "u", "", "", "", "u", "q", ""}), declarations);
}

TEST(FIReaderOperations, RefuseAChunkWhoseOctetIsThatOfAnElement) {
  for (int octet = 0; octet < 0x80; ++octet) {
    Operations reader;
    EXPECT_EQ("SAXException: Error when decoding character chunk", reader.run("", [&] {
      reader.decodeCharacters(octet);
    })) << octet;
  }
}

TEST(FIReaderOperations, CompareTheHeaderOctetByOctet) {
  const struct {
    const char* written;
    bool isDocument;
  } rows[] = {{"E0 00 00 01", true},
              {"E0 00 00 02", false},
              {"E0 00 01", false},
              {"E0 01", false},
              {"3C", false}};
  for (const auto& row : rows) {
    Operations reader;
    bool isDocument = !row.isDocument;
    // It takes the octets up to the first that differs, and no more.
    EXPECT_EQ("done", reader.run(octets(row.written),
                                 [&] { isDocument = reader.isFastInfosetDocument(); }));
    EXPECT_EQ(row.isDocument, isDocument) << row.written;
  }
}

TEST(FIReaderOperations, FindTheAlgorithmOfAField) {
  const std::type_info* const builtIn[] = {&typeid(Tavrin::HexadecimalEncodingAlgorithm),
                                           &typeid(Tavrin::Base64EncodingAlgorithm),
                                           &typeid(Tavrin::ShortEncodingAlgorithm),
                                           &typeid(Tavrin::IntEncodingAlgorithm),
                                           &typeid(Tavrin::LongEncodingAlgorithm),
                                           &typeid(Tavrin::BooleanEncodingAlgorithm),
                                           &typeid(Tavrin::FloatEncodingAlgorithm),
                                           &typeid(Tavrin::DoubleEncodingAlgorithm),
                                           nullptr,
                                           &typeid(Tavrin::CDATAEncodingAlgorithm)};
  Operations reader;
  for (unsigned field = 0; field < 32; ++field) {
    SCOPED_TRACE(field);
    std::string uri = "before";
    Tavrin::EncodingAlgorithm* algorithm = reader.getEncodingAlgorithm(field, uri);
    if (field >= std::size(builtIn) || builtIn[field] == nullptr) {
      EXPECT_EQ(nullptr, algorithm);
    } else {
      ASSERT_NE(nullptr, algorithm);
      EXPECT_TRUE(*builtIn[field] == typeid(*algorithm));
      EXPECT_EQ(algorithm, reader.getEncodingAlgorithm(field, uri));
    }
    EXPECT_EQ("before", uri);
  }
}

TEST(FIReaderOperations, FindAnApplicationsAlgorithmByItsURI) {
  ReversedAlgorithm reversed;
  Tavrin::EncodingAlgorithmMap map = {{"y", &reversed}};
  Operations reader;
  reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  EXPECT_EQ("done", reader.run(
                        "", [] {}, octets("20 04 00 02 00 'x' 00 'y'")));
  std::string uri = "before";
  EXPECT_EQ(nullptr, reader.getEncodingAlgorithm(32, uri));
  EXPECT_EQ("x", uri);
  EXPECT_EQ(&reversed, reader.getEncodingAlgorithm(33, uri));
  EXPECT_EQ("y", uri);
  EXPECT_EQ("SAXException: Error when decoding string - invalid index",
            outcomeOf([&] { reader.getEncodingAlgorithm(34, uri); }));
  EXPECT_EQ("y", uri);
}

}  // namespace
}  // namespace reader_test
