#include <EventLog.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_XML10.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// A stream that waits, as a socket does: what it has given is reported before it is asked for more.

namespace {

using namespace Tavrin;

/// Gives a text in pieces, and notes what was reported when it is asked for the next one.
class Pieces : public std::streambuf {
 public:
  Pieces(std::vector<std::string> pieces, const EventLog& log)
      : pieces_(std::move(pieces)), log_(log) {}

  std::vector<std::string> reported;  // Before the first piece, before the second, ...

 protected:
  int_type underflow() override {
    const std::string all = log_.text();
    if (reported.size() <= pieces_.size()) {
      reported.push_back(all.substr(before_));
      before_ = all.size();
    }
    if (next_ == pieces_.size()) return traits_type::eof();
    std::string& piece = pieces_[next_++];
    setg(piece.data(), piece.data(), piece.data() + piece.size());
    return traits_type::to_int_type(piece[0]);
  }

 private:
  std::vector<std::string> pieces_;
  const EventLog& log_;
  std::size_t next_ = 0;
  std::size_t before_ = 0;
};

/// @param deferral null for the default
/// @param scanner  likewise
std::vector<std::string> reportedOf(const std::vector<std::string>& pieces,
                                    bool* deferral = nullptr, const char* scanner = nullptr) {
  EventLog log;
  log.showLocator = false;
  Pieces buffer(pieces, log);
  std::istream stream(&buffer);
  XMLReader_XML10 reader;
  log.attachTo(reader);
  reader.setProperty(properties::reparseDeferral, deferral);
  std::string name = scanner != nullptr ? scanner : "";
  reader.setProperty(properties::textScanner, scanner != nullptr ? &name : nullptr);
  reader.parse(stream);
  return buffer.reported;
}

using Lines = std::vector<std::string>;

TEST(XML10Prompt, ReportsWhatAStreamHasGiven) {
  EXPECT_EQ((Lines{"", "startDocument()\nstartElement(, a, a, [])\n",
                   "startElement(, b, b, [])\nendElement(, b, b)\n", "characters(text)\n",
                   "endElement(, a, a)\n"}),
            reportedOf({"<a>", "<b/>", "text", "</a>"}));
}

TEST(XML10Prompt, ReportsTheFirstOctetsThatShowNoOtherEncoding) {
  // What may be a declaration is waited for.
  EXPECT_EQ(
      (Lines{"", "", "", "startDocument()\nstartElement(, a, a, [])\n", "endElement(, a, a)\n"}),
      reportedOf({"<", "?xml version='1.0'", "?><a>", "</a>"}));
  EXPECT_EQ((Lines{"", "", "startDocument()\n", "startElement(, a, a, [])\nendElement(, a, a)\n"}),
            reportedOf({"<?xml version='1.0' ", "encoding='utf8'?>", "<a></a>"}));
}

const Lines kCutTags = {"<a>", "<", "b", " c='d'", ">", "</b", ">", "</a>"};
const Lines kPromptTags = {"",
                           "startDocument()\nstartElement(, a, a, [])\n",
                           "",
                           "",
                           "",
                           "startElement(, b, b, [{, c, c, CDATA, d}])\n",
                           "",
                           "endElement(, b, b)\n",
                           "endElement(, a, a)\n"};

TEST(XML10Prompt, ReportsATagThatWasCutWithItsLastOctet) {
  EXPECT_EQ(kPromptTags, reportedOf(kCutTags));
  for (bool deferral : {false, true}) EXPECT_EQ(kPromptTags, reportedOf(kCutTags, &deferral));
}

TEST(XML10Prompt, ReportsATagThatWasCutWithItsLastOctetThroughExpatIfAskedTo) {
  bool deferral = false;
  EXPECT_EQ(kPromptTags, reportedOf(kCutTags, &deferral, "expat"));
  deferral = true;
  const Lines deferred = reportedOf(kCutTags, &deferral, "expat");
  EXPECT_EQ(reportedOf(kCutTags, nullptr, "expat"), deferred);
  // The tag is complete, but comes later, if this is an expat that defers.
  const bool isDeferring = dlsym(RTLD_DEFAULT, "XML_SetReparseDeferralEnabled") != nullptr;
  EXPECT_EQ(isDeferring ? "" : "startElement(, b, b, [{, c, c, CDATA, d}])\n", deferred[5]);
}

TEST(XML10Prompt, TheDeferralIsAPropertyWithADefault) {
  XMLReader_XML10 reader;
  const auto deferral = [&] {
    return *static_cast<bool*>(reader.getProperty(properties::reparseDeferral));
  };
  EXPECT_TRUE(deferral());
  bool value = false;
  reader.setProperty(properties::reparseDeferral, &value);
  EXPECT_FALSE(deferral());
  reader.setProperty(properties::reparseDeferral, nullptr);
  EXPECT_TRUE(deferral());
}

TEST(XML10Prompt, TheDeferralHasASetter) {
  XMLReader_XML10 reader;
  EXPECT_TRUE(reader.getReparseDeferral());
  reader.setReparseDeferral(false);
  EXPECT_FALSE(reader.getReparseDeferral());
  EXPECT_FALSE(*static_cast<bool*>(reader.getProperty(properties::reparseDeferral)));
  bool value = true;
  reader.setProperty(properties::reparseDeferral, &value);
  EXPECT_TRUE(reader.getReparseDeferral());

  const std::vector<std::string> blocks = {"<a", ">", "<b", "/>", "</a", ">"};
  EventLog log;
  log.showLocator = false;
  log.attachTo(reader);
  reader.setReparseDeferral(false);
  Lines reported;
  for (const std::string& block : blocks) {
    log.clear();
    reader.parse(block.data(), block.size(), false);
    reported.push_back(log.text());
  }
  EXPECT_EQ((Lines{"", "startDocument()\nstartElement(, a, a, [])\n", "",
                   "startElement(, b, b, [])\nendElement(, b, b)\n", "", "endElement(, a, a)\n"}),
            reported);
}

TEST(XML10Prompt, ReadsABufferThatKeepsNoOctets) {
  /// Knows only its next octet.
  class Unbuffered : public std::streambuf {
   public:
    explicit Unbuffered(std::string text) : text_(std::move(text)) {}

   protected:
    int_type underflow() override {
      return next_ == text_.size() ? traits_type::eof() : traits_type::to_int_type(text_[next_]);
    }
    int_type uflow() override {
      const int_type octet = underflow();
      if (octet != traits_type::eof()) ++next_;
      return octet;
    }

   private:
    std::string text_;
    std::size_t next_ = 0;
  } buffer("<a>text</a>");
  std::istream stream(&buffer);
  EventLog log;
  log.showLocator = false;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  reader.parse(stream);
  EXPECT_EQ(
      "startDocument()\nstartElement(, a, a, [])\ncharacters(text)\nendElement(, a, a)\n"
      "endDocument()\n",
      log.text());
}

TEST(XML10Prompt, ReadsADocumentThatIsLargerThanABlock) {
  const std::string text(3000000, 'x');
  EventLog log;
  log.showLocator = false;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  std::istringstream stream("<a>" + text + "</a>");
  reader.parse(stream);
  EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\ncharacters(" + text +
                ")\nendElement(, a, a)\nendDocument()\n",
            log.text());
}

}  // namespace
