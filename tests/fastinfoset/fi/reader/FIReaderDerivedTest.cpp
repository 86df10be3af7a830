#include <gtest/gtest.h>

#include <string_view>
#include <type_traits>

#include "FIReaderSamples.h"

// Classes derived from the reader: what they are offered, and what they may be called.

namespace reader_test {
namespace {

using Tavrin::XMLReader_FI;

// A name is three strings, in this order, for anyone.
static_assert(sizeof(XMLReader_FI::QualifiedName) == 3 * sizeof(std::string));
static_assert(std::is_aggregate_v<XMLReader_FI::QualifiedName>);

struct Lookups : XMLReader_FI {
  using Lookup = QualifiedName (XMLReader_FI::*)(unsigned long) const;
  static constexpr Lookup element = &Lookups::getElementName;
  static constexpr Lookup attribute = &Lookups::getAttributeName;
};

TEST(FIReaderDerived, HasNamesOfThreeParts) {
  const XMLReader_FI::QualifiedName name = {"p", "n", "l"};
  const auto& [prefix, namespaceName, localName] = name;
  EXPECT_EQ("pnl", prefix + namespaceName + localName);
  const Lookups reader;
  EXPECT_EQ("SAXException: Error when decoding element name - invalid index",
            outcomeOf([&] { (reader.*Lookups::element)(0); }));
  EXPECT_EQ("SAXException: Error when decoding attribute name - invalid index",
            outcomeOf([&] { (reader.*Lookups::attribute)(0); }));
}

/// A reader that is every handler, too.
template <typename Reader>
class OwnHandler : public Reader, public EventLog {
 public:
  OwnHandler() {
    mergeCharacters = false;
    showAlgorithms = true;
    attachTo(*this);
    attachDeclarationsTo(*this);
    attachPrimitiveTypesTo(*this);
    attachAlgorithmsTo(*this);
    Reader::setProperty(Tavrin::properties::registeredEncodingAlgorithms, nullptr);
  }
};

template <typename Reader>
std::string toldByItself(const std::string& document) {
  const CapturedOutput output;
  OwnHandler<Reader> reader;
  std::istringstream stream(document);
  const std::string outcome = outcomeOf([&] { reader.parse(stream); });
  return reader.text() + outcome;
}

template <typename Reader>
std::string toldToAnother(const std::string& document) {
  const CapturedOutput output;
  Reader reader;
  EventLog log;
  log.mergeCharacters = false;
  log.showAlgorithms = true;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  log.attachPrimitiveTypesTo(reader);
  log.attachAlgorithmsTo(reader);
  std::istringstream stream(document);
  const std::string outcome = outcomeOf([&] { reader.parse(stream); });
  return log.text() + outcome;
}

TEST(FIReaderDerived, MayBeEveryHandler) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    EXPECT_EQ(toldToAnother<XMLReader_FI>(sample.octets),
              toldByItself<XMLReader_FI>(sample.octets));
  }
  const std::string plain = document("7C 00 'a' 78 00 'b' 00 'c' F0 81 'xy' E2 00 'c' F0 F0");
  EXPECT_EQ(toldToAnother<Tavrin::XMLReader_X891>(plain),
            toldByItself<Tavrin::XMLReader_X891>(plain));
}

TEST(FIReaderDerived, MayBeCalledAsTheHandlerThatItIs) {
  OwnHandler<XMLReader_FI> reader;
  const Tavrin::AttributesImpl none;
  reader.startDocument();
  reader.startElement("", "a", "a", none);
  reader.characters("x");
  reader.comment("c");
  reader.bytes("b");
  reader.octets("u", 1, "o");
  reader.endElement("", "a", "a");
  reader.endDocument();
  EXPECT_EQ(whole({"startElement(, a, a, [])", "characters(x)", "comment(c)", "bytes(62)",
                   "octets(u, 1, 6F)", "endElement(, a, a)"}),
            reader.text());
}

/// Has operations of its own with names that come to mind.
class OwnOperations : public XMLReader_FI {
 public:
  int calls = 0;

  virtual void clearTables() { ++calls; }
  virtual void decodeDocument() { ++calls; }
  virtual void decodeInitialVocabulary() { ++calls; }
  virtual Tavrin::EncodingAlgorithm* getEncodingAlgorithm(unsigned, std::string&) {
    ++calls;
    return nullptr;
  }
  virtual void endChildren(bool) { ++calls; }
  virtual void checkText(std::string_view) { ++calls; }
  virtual void checkPadding(unsigned) const { std::abort(); }
  virtual void deliverCharacters(const std::string&) { ++calls; }
  virtual void deliverComment(const std::string&) { ++calls; }
  virtual void deliverVersion(const std::string&) { ++calls; }
  virtual void deliverStartDTD(const std::string&, const std::string&) { ++calls; }
  virtual void deliverEndDTD() { ++calls; }
  virtual void deliver(unsigned, const std::string&, const Tavrin::EncodedData&) { ++calls; }
};

TEST(FIReaderDerived, OverridesNothingByAccident) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    const CapturedOutput output;
    SampleReader plain;
    plain.read(sample.octets);
    OwnOperations reader;
    std::istringstream stream(sample.octets);
    outcomeOf([&] { reader.parse(stream); });
    EXPECT_EQ(0, reader.calls);
  }
}

}  // namespace
}  // namespace reader_test
