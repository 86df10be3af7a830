#include <gtest/gtest.h>

#include "X891ReaderValues.h"

// Algorithms of an application (X.891, 7.18 and 8.3): registered or not, and what they may do.

namespace x891_test {
namespace {

using Tavrin::EncodingAlgorithmException;

const EventLog::Lines kStarted = {"startDocument()", "startElement(, a, a, [])"};
const char* const kOtherLength = "Encoded data of another length than its value";

/// Three octets of the application's algorithm as content, and as an attribute value.
std::string contentUpToData() { return withAlgorithmURI("3C 00 'a' 8C 7E 00"); }
std::string valueUpToData() { return withAlgorithmURI("7C 00 'a' 78 00 'b' 31 F2"); }

/// What a reader tells for which the application's algorithm is this one.
std::string readWith(const ScriptedAlgorithm::Script& script, const std::string& document,
                     bool handled = false) {
  ScriptedAlgorithm algorithm(script);
  Tavrin::EncodingAlgorithmMap map = {{"urn:reversed", &algorithm}};
  X891Reader reader;
  if (handled) reader.log.attachAlgorithmsTo(reader.reader);
  reader.reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  return reader.read(document);
}

std::string take(std::uint32_t length, std::istream& stream) {
  std::string octets(length, '\0');
  stream.read(octets.data(), static_cast<std::streamsize>(length));
  return octets;
}

TEST(X891ReaderAlgorithms, UnknownOnesGoToTheHandlerAsOctets) {
  X891Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(wholeContent({"octets(urn:reversed, 31, 61 62 63)"}),
            reader.read(contentUpToData() + "abc" + octets("FF")));
  // Others that are registered do not matter.
  TypedReader other;
  other.map = {{"urn:other", &other.reversed}};
  other.log.attachAlgorithmsTo(other.reader);
  EXPECT_EQ(wholeContent({"octets(urn:reversed, 31, 61 62 63)"}),
            other.read(contentUpToData() + "abc" + octets("FF")));
}

TEST(X891ReaderAlgorithms, UnknownOnesAreRefusedWithoutAHandler) {
  const std::string message =
      "Unknown encoding algorithm - urn:reversed (add it to the property "
      "registered-encoding-algorithms, or set raw-octets)";
  expectRefused(
      contentUpToData() + "abc", octets("FF"),
      message + ", or take its octets with the property encoding-algorithm-content-handler",
      kStarted);
  expectRefused(valueUpToData(), "abc" + octets("FF F0"), message, {"startDocument()"});
  expectRefused(withAlgorithmURI("3C 00 'a' E2 31 F2"), "abc" + octets("FF"), message, kStarted);
}

TEST(X891ReaderAlgorithms, UnknownOnesAreRefusedWhereTheirTextIsNeeded) {
  const std::string message =
      "Unknown encoding algorithm - urn:reversed (add it to the property "
      "registered-encoding-algorithms, or set raw-octets)";
  X891Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  std::string document = withAlgorithmURI("3C 00 'a' 9C 7E 00 'abc'");
  EXPECT_EQ(failure(kStarted, message + ", because the text enters a table", document.size()),
            reader.read(document + octets("FF")));
  document = valueUpToData();
  EXPECT_EQ(failure({"startDocument()"}, message, document.size()),
            reader.read(document + "abc" + octets("FF F0")));
}

TEST(X891ReaderAlgorithms, WithoutAnEntryAreRefused) {
  const auto message = [](int number) {
    return "No URI for the encoding algorithm " + std::to_string(number) + " in the vocabulary";
  };
  expectContentRefused("8C 7C", "00 FF", message(32));
  expectRefused(withAlgorithmURI("3C 00 'a' 8C 80"), octets("00 FF"), message(33), kStarted);
  expectRefused(withAlgorithmURI("3C 00 'a' 8F FC"), octets("00 FF"), message(256), kStarted);
}

/// Reads octet by octet, and as many as it is told to.
class PatientFloats : public Tavrin::FloatEncodingAlgorithm {
 public:
  std::uint32_t most = 1000;

  Tavrin::FloatData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    data_.data_.clear();
    for (std::uint32_t i = 0; i < std::min(length, most); ++i) {
      data_.data_.push_back(static_cast<float>(stream.get()));
    }
    return data_;
  }

 private:
  Tavrin::FloatData data_;
};

class PatientReader : public Tavrin::XMLReader_X891 {
 public:
  PatientFloats floats;

 protected:
  Tavrin::EncodingAlgorithm* getEncodingAlgorithm(unsigned int field, std::string& uri) override {
    return field == Tavrin::algorithms::floatNumber
               ? &floats
               : Tavrin::XMLReader_X891::getEncodingAlgorithm(field, uri);
  }
};

TEST(X891ReaderAlgorithms, MayTakeThePlaceOfABuiltInOne) {
  const std::string document =
      octets("E0 00 00 01 00 3C 00 'a' 8C 1A 05 01 02 03 04 05 06 07 08 FF");
  const auto read = [&document](std::uint32_t most) {
    PatientReader reader;
    reader.floats.most = most;
    std::istringstream stream(document);
    try {
      reader.parse(stream);
    } catch (const Tavrin::SAXException& exception) {
      return exception.getMessage();
    }
    return std::string("all is read");
  };
  EXPECT_EQ(read(8), "all is read");
  EXPECT_EQ(read(7), kOtherLength);
  EXPECT_EQ(read(0), kOtherLength);
}

TEST(X891ReaderAlgorithms, HaveTheirOctetsAlone) {
  // All that is there is the data: the rest of the document cannot be read.
  EXPECT_EQ(wholeContent({"characters(3:abc:-1)", "characters(3:abc:-1)"}),
            readWith(
                [](std::uint32_t length, std::istream& stream) {
                  const std::string octets = take(length, stream);
                  const int next = stream.peek();
                  stream.clear();
                  return std::to_string(length) + ":" + octets + ":" + std::to_string(next);
                },
                contentUpToData() + "abc" + octets("8C 7E 00 'abc' FF")));
}

TEST(X891ReaderAlgorithms, MustTakeTheirOctets) {
  for (const std::uint32_t wanted : {0U, 1U, 2U, 4U, 100U}) {
    const auto script = [wanted](std::uint32_t, std::istream& stream) {
      return take(wanted, stream);
    };
    EXPECT_EQ(failure(kStarted, kOtherLength, contentUpToData().size() + 3),
              readWith(script, contentUpToData() + "abc" + octets("FF")));
    EXPECT_EQ(failure({"startDocument()"}, kOtherLength, valueUpToData().size() + 3),
              readWith(script, valueUpToData() + "abc" + octets("FF F0")));
  }
}

TEST(X891ReaderAlgorithms, FailuresOfTheDataAreFailuresOfTheDocument) {
  const auto script = [](std::uint32_t, std::istream&) -> std::string {
    throw EncodingAlgorithmException("odd data");
  };
  EXPECT_EQ(failure(kStarted, "odd data", contentUpToData().size() + 3),
            readWith(script, contentUpToData() + "abc" + octets("FF")));
  EXPECT_EQ(failure({"startDocument()"}, "odd data", valueUpToData().size() + 3),
            readWith(script, valueUpToData() + "abc" + octets("FF F0")));
}

TEST(X891ReaderAlgorithms, OtherExceptionsPass) {
  const std::string document = contentUpToData() + "abc" + octets("FF");
  EXPECT_EQ(
      join(kStarted) + "SAXException: mine\n",
      readWith([](auto, auto&) -> std::string { throw Tavrin::SAXException("mine"); }, document));
  EXPECT_EQ(join(kStarted) + "FastInfosetException: mine\n",
            readWith([](auto, auto&) -> std::string { throw Tavrin::FastInfosetException("mine"); },
                     document));
  EXPECT_EQ(
      join(kStarted) + "std::exception: mine\n",
      readWith([](auto, auto&) -> std::string { throw std::runtime_error("mine"); }, document));
  EXPECT_THROW(readWith([](auto, auto&) -> std::string { throw 7; }, document), int);
}

TEST(X891ReaderAlgorithms, TextMustBeCharactersOfXML) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {{"\x01", "Invalid character U+0001"}, {"\xFF", "Invalid UTF-8 octet 0xFF"}};
  for (const auto& each : cases) {
    const auto script = [&each](std::uint32_t length, std::istream& stream) -> std::string {
      take(length, stream);
      return each.text;
    };
    const std::string inContent = contentUpToData() + "abc";
    EXPECT_EQ(failure(kStarted, each.message, inContent.size()),
              readWith(script, inContent + octets("FF")));
    const std::string inValue = valueUpToData() + "abc";
    EXPECT_EQ(failure({"startDocument()"}, each.message, inValue.size()),
              readWith(script, inValue + octets("FF F0")));
    const std::string added = withAlgorithmURI("3C 00 'a' 9C 7E 00 'abc'");
    EXPECT_EQ(failure(kStarted, each.message, added.size()),
              readWith(script, added + octets("FF"), true));
    const std::string comment = withAlgorithmURI("3C 00 'a' E2 31 F2 'abc'");
    EXPECT_EQ(failure(kStarted, each.message, comment.size()),
              readWith(script, comment + octets("FF")));
  }
}

TEST(X891ReaderAlgorithms, TextMayBeEmpty) {
  const auto script = [](std::uint32_t length, std::istream& stream) -> std::string {
    take(length, stream);
    return "";
  };
  EXPECT_EQ(wholeContent({}), readWith(script, contentUpToData() + "abc" + octets("FF")));
}

TEST(X891ReaderAlgorithms, ReaderIsUsableBehindAFailure) {
  TypedReader reader;
  bool fails = true;
  ScriptedAlgorithm scripted([&fails](std::uint32_t length, std::istream& stream) {
    if (fails) throw 7;
    return take(length, stream);
  });
  reader.map = {{"urn:reversed", &scripted}};
  const std::string document = contentUpToData() + "abc" + octets("FF");
  EXPECT_THROW(reader.read(document), int);
  fails = false;
  EXPECT_EQ(wholeContent({"characters(abc)"}), reader.read(document));
}

}  // namespace
}  // namespace x891_test
