#include <Allocations.h>
#include <gtest/gtest.h>

#include "Streams.h"
#include "TextReaderSupport.h"

namespace {

// 64 MiB; with a sanitizer a tenth, which takes as long.
constexpr std::size_t kItems =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    100000;
#else
    1048576;
#endif

constexpr char kStart[] = "<root>\n";
constexpr char kItem[] = "<item id='12345678'>some text<b/>more &amp; more</item><!--c-->\n";
constexpr char kEnd[] = "</root>";
static_assert(sizeof kItem - 1 == 64, "64 MiB are a mebi of items");

/// A document that exists nowhere as a whole.
class ItemBuffer : public std::streambuf {
 public:
  std::size_t octets = 0;

 protected:
  std::streamsize xsgetn(char* target, std::streamsize asked) override {
    std::streamsize given = 0;
    while (given < asked) {
      if (rest_.empty()) {
        if (next_ > kItems + 1) break;
        rest_ = next_ == 0 ? kStart : next_ <= kItems ? kItem : kEnd;
        ++next_;
      }
      const auto count = std::min(rest_.size(), static_cast<std::size_t>(asked - given));
      std::memcpy(target + given, rest_.data(), count);
      rest_.remove_prefix(count);
      given += static_cast<std::streamsize>(count);
    }
    octets += static_cast<std::size_t>(given);
    return given;
  }

 private:
  std::size_t next_ = 0;  ///< 0 the start, 1 to kItems the items, then the end.
  std::string_view rest_;
};

struct Counter : Tavrin::ContentHandler, Tavrin::LexicalHandler {
  void startElement(const std::string&, const std::string& localName, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    ++starts;
    if (localName == "item" && attributes.getValue("id") == "12345678") ++items;
  }
  void endElement(const std::string&, const std::string&, const std::string&) override { ++ends; }
  void characters(const std::string& chunk) override { text += chunk.size(); }
  void comment(const std::string&) override { ++comments; }
  void endDocument() override { ++documents; }

  std::size_t starts = 0;
  std::size_t items = 0;
  std::size_t ends = 0;
  std::size_t text = 0;
  std::size_t comments = 0;
  std::size_t documents = 0;
};

TEST(ExpatMemory, StaysTheSameHoweverLongTheDocument) {
  Counter counter;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&counter);
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(&counter));
  ItemBuffer buffer;
  std::istream stream(&buffer);
  const std::size_t peak =
      allocations::peakOf([&] { EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); })); });

  EXPECT_EQ(sizeof kStart + kItems * 64 + sizeof kEnd - 2, buffer.octets);
  EXPECT_EQ(1 + 2 * kItems, counter.starts);
  EXPECT_EQ(kItems, counter.items);
  EXPECT_EQ(1 + 2 * kItems, counter.ends);
  // "some text", "more & more", and the line feed after every item and the root's start.
  EXPECT_EQ(1 + 21 * kItems, counter.text);
  EXPECT_EQ(kItems, counter.comments);
  EXPECT_EQ(1U, counter.documents);
  // Blocks of 1 MiB, of which expat keeps some.
  EXPECT_LT(peak, std::size_t{6} << 20);
}

/// What is in use at each start tag.
struct Uses : Tavrin::ContentHandler {
  Uses() { ofStarts.reserve(8); }
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes&) override {
    ofStarts.push_back(allocations::inUse());
  }
  std::vector<std::size_t> ofStarts;
};

TEST(ExpatMemory, OfALongNameIsNotHeldBehindIt) {
  if (!allocations::areCounted()) GTEST_SKIP() << "no allocations are counted";
  constexpr std::size_t kLong = std::size_t{4} << 20;
  const std::string name(kLong, 'n');
  const std::string document = "<a><" + name + "/><b/></a>";
  Uses uses;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&uses);
  const std::size_t before = allocations::inUse();
  EXPECT_EQ("done", parseText(reader, document));
  EXPECT_LT(allocations::inUse(), before + kLong);
  ASSERT_EQ(3U, uses.ofStarts.size());
  // The local name and the qualified one. expat keeps its own copies.
  EXPECT_GE(uses.ofStarts[1], uses.ofStarts[2] + 2 * kLong);
}

TEST(ExpatMemory, OfADocumentIsNotHeldBehindIt) {
  if (!allocations::areCounted()) GTEST_SKIP() << "no allocations are counted";
  Uses uses;
  uses.ofStarts.reserve(8);
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&uses);
  const std::string document = "<" + std::string(1000, 'n') + ">" + std::string(1000, 't') + "</" +
                               std::string(1000, 'n') + ">";
  std::istringstream stream(document);
  const std::size_t before = allocations::live();
  reader.parse(stream);
  // Sanitizers see blocks go that were there before.
  EXPECT_LE(allocations::live(), before);
}

}  // namespace
