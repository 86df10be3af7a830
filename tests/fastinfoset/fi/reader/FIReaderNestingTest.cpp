#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include <Allocations.h>
#include "FIReaderSupport.h"

// A reader that is its own handler may decode what comes next while it is told of something, and
// what it was told stays as it is. What was open when a document failed is gone with the failure.

namespace reader_test {
namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

class DecodingHandler : public Tavrin::XMLReader_FI, public Tavrin::ContentHandler {
 public:
  using XMLReader_FI::decodeCharacters;
  using XMLReader_FI::decodeElement;

  DecodingHandler() { setContentHandler(this); }

  std::string read(const std::string& octets) {
    std::istringstream stream(octets);
    stream_ = &stream;
    return outcomeOf([&] { XMLReader_FI::parse(stream); });
  }
  int next() { return stream_->get(); }

  std::string told;
  std::function<void(const std::string&)> atText;
  std::function<void()> atMapping;
  std::function<void()> atStart;

 private:
  void startPrefixMapping(const std::string& prefix, const std::string&) override {
    told += "[" + prefix;
    if (atMapping) atMapping();
  }
  void endPrefixMapping(const std::string& prefix) override { told += prefix + "]"; }
  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes&) override {
    told += "<" + qName + ">";
    if (atStart) atStart();
  }
  void endElement(const std::string&, const std::string&, const std::string& qName) override {
    told += "</" + qName + ">";
  }
  void characters(const std::string& text) override {
    told += text;
    if (atText) atText(text);
  }

  std::istream* stream_ = nullptr;
};

TEST(FIReaderNesting, LeavesTheTextAloneThatIsBeingTold) {
  DecodingHandler reader;
  reader.atText = [&](const std::string& text) {
    const std::string before = text;
    reader.atText = nullptr;
    reader.decodeCharacters(reader.next());
    EXPECT_EQ(before, text);
  };
  EXPECT_EQ("done", reader.read(documentOfContent("82 20 'abcdefghijklmnopqrstuvwxyz123456789' "
                                                  "82 1F 'ABCDEFGHIJKLMNOPQRSTUVWXYZ12345678'")));
}

TEST(FIReaderNesting, LeavesTheDeclarationsAloneThatAreBeingTold) {
  DecodingHandler reader;
  reader.atMapping = [&] {
    if (reader.told != "[p") return;
    // Many elements at once, one in the other.
    EXPECT_FALSE(reader.decodeElement(reader.next()));
  };
  std::string nested = "3C 00 'x'";
  std::string told = "<x>";
  for (int i = 0; i < 100; ++i) {
    nested += " 00";
    told += "<x>";
  }
  for (int i = 0; i <= 100; ++i) {
    nested += " F0";
    told += "</x>";
  }
  // The handler decodes what stands behind the declarations, and the name comes after that.
  EXPECT_EQ("done", reader.read(document("38 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 " + nested +
                                         " 3C 00 'a' F0 F0")));
  EXPECT_EQ("[p" + told + "[q<a></a>p]q]", reader.told);
}

TEST(FIReaderNesting, ForgetsTheElementsThatFailed) {
  DecodingHandler reader;
  reader.atStart = [&] {
    if (reader.told != "<a>") return;
    EXPECT_EQ("SAXException: Error when decoding element children",
              outcomeOf([&] { reader.decodeElement(reader.next()); }));
  };
  EXPECT_EQ("done", reader.read(document("3C 00 'a' 3C 00 'b' 3C 00 'c' CC F0 F0")));
  EXPECT_EQ("<a><b><c></a>", reader.told);
}

TEST(FIReaderNesting, HoldsNothingOfADocumentThatFailed) {
  if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  const std::string uri(kMebibyte, 'u');
  const std::string failing =
      document("38 CD 60") + bigEndian(uri.size() - 321, 4) + uri + octets("F0 3C 00 'a' CC");
  DecodingHandler reader;
  EXPECT_EQ("SAXException: Error when decoding element children", reader.read(failing));
  // The next document empties the tables, and the copy in them.
  const std::size_t inUse = allocations::inUse();
  EXPECT_EQ("SAXException: Not a Fast Infoset document", reader.read("x"));
  EXPECT_LT(inUse, allocations::inUse() + kMebibyte + kMebibyte / 2);
}

TEST(FIReaderNesting, HoldsNoLongTextWhenItIsTold) {
  if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  DecodingHandler reader;
  std::size_t first = 0;
  std::size_t second = 0;
  reader.told.reserve(2 * kMebibyte);
  reader.atText = [&](const std::string& text) {
    (text.size() > 1 ? first : second) = allocations::inUse();
  };
  const std::string text(kMebibyte, 't');
  EXPECT_EQ("done", reader.read(document("3C 00 'a' 83") + bigEndian(text.size() - 259, 4) + text +
                                octets("80 'x' F0 F0")));
  EXPECT_GE(first, second + kMebibyte);
}

}  // namespace
}  // namespace reader_test
