#include <gtest/gtest.h>

#include <stdexcept>

#include "X891ReaderSamples.h"

// The stream under the document: where it is cut, what follows, and what is wrong with it.

namespace x891_test {
namespace {

bool isRead(const std::string& told) {
  return told.size() > 14 && told.compare(told.size() - 14, 14, "endDocument()\n") == 0;
}

TEST(X891ReaderStreams, SamplesAreRead) {
  for (const std::string& sample : samples()) {
    const std::string told = SampleReader().read(sample);
    EXPECT_TRUE(isRead(told)) << told << EventLog::showOctets(sample);
  }
}

TEST(X891ReaderStreams, RefuseEachDocumentThatIsCut) {
  for (const std::string& sample : samples()) {
    SampleReader reader;
    const std::string whole = reader.read(sample);
    // Up to here stands what may be a whole header.
    const std::size_t header = sample[0] == '<' ? sample.find('>') + 5 : 4;
    for (std::size_t length = 0; length < sample.size(); ++length) {
      const bool isCutHeader =
          length == 0 || (length < header && (sample[0] != '<' || length > header - 5));
      const std::string message =
          isCutHeader ? "Not a Fast Infoset document" : "Unexpected end of document";
      const std::string told = reader.read(sample.substr(0, length));
      // Events of the whole document, in order, and then the failure with all octets read.
      const std::string end = failure({}, message, length);
      ASSERT_GE(told.size(), end.size()) << told;
      const std::size_t events = told.size() - end.size();
      EXPECT_EQ(end, told.substr(events)) << EventLog::showOctets(sample.substr(0, length));
      EXPECT_EQ(whole.substr(0, events), told.substr(0, events));
    }
  }
}

TEST(X891ReaderStreams, AreLeftBehindTheLastOctet) {
  for (const std::string& sample : samples()) {
    std::istringstream stream("before" + sample + "behind");
    stream.seekg(6);
    SampleReader reader;
    reader.reader.parse(stream);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(static_cast<std::streamoff>(6 + sample.size()), stream.tellg());
    std::string rest;
    stream >> rest;
    EXPECT_EQ("behind", rest);
  }
}

TEST(X891ReaderStreams, MayHoldOneDocumentBehindAnother) {
  std::string all;
  for (const std::string& sample : samples()) all += sample;
  std::istringstream stream(all + all);
  SampleReader reader;
  for (int round = 0; round < 2; ++round) {
    for (const std::string& sample : samples()) {
      reader.log.clear();
      reader.reader.parse(stream);
      // As though it were alone.
      EXPECT_EQ(SampleReader().read(sample), reader.log.text());
    }
  }
  EXPECT_EQ("SAXParseException: Not a Fast Infoset document (-1:0)",
            outcomeOf([&] { reader.reader.parse(stream); }));
}

/// Gives an octet at a time, and stops the test where more is wanted than the document has.
class Trickle : public std::streambuf {
 public:
  explicit Trickle(std::string octets) : octets_(std::move(octets)) {}

 protected:
  int_type underflow() override {
    if (next_ == octets_.size()) throw std::logic_error("read beyond the document");
    octet_ = octets_[next_++];
    setg(&octet_, &octet_, &octet_ + 1);
    return traits_type::to_int_type(octet_);
  }

 private:
  std::string octets_;
  std::size_t next_ = 0;
  char octet_ = 0;
};

TEST(X891ReaderStreams, NeedNotBeSeekable) {
  for (const std::string& sample : samples()) {
    Trickle buffer(sample);
    std::istream stream(&buffer);
    stream.exceptions(std::ios_base::badbit);
    SampleReader reader;
    EXPECT_EQ("done", outcomeOf([&] { reader.reader.parse(stream); }));
    EXPECT_EQ(SampleReader().read(sample), reader.log.text());
  }
}

/// What is told of a document with this text, a chunk of 3 to 258 octets.
std::string toldOfText(const std::string& text, bool isBuffered) {
  const std::string head = octets("82") + static_cast<char>(text.size() - 3);
  const std::string read = document("3C 00 'a'") + head + text + octets("FF");
  SampleReader reader;
  if (isBuffered) return reader.read(read);
  Trickle buffer(read);
  std::istream stream(&buffer);
  stream.exceptions(std::ios_base::badbit);
  const std::string outcome = outcomeOf([&] { reader.reader.parse(stream); });
  return reader.log.text() + (outcome == "done" ? "" : outcome + "\n");
}

// Many octets are looked at together, in the stream's buffer where it has them.
TEST(X891ReaderStreams, OfAnyBufferMayHaveLongText) {
  const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
  const struct {
    std::string piece;
    std::string fault;
  } cases[] = {
      {"\xC3\xA9 ", ""},
      {"\xD0\xB6", ""},
      {"\xE0\xA4\xA8\xE0\xA4\xA6\xE0\xA5\x80", ""},
      {"\xED\x95\x9C\xEA\xB8\x80", ""},
      {"\xEF\xBC\x8C\xEF\xBF\xBD", ""},
      {"\xF0\x9F\x8E\x89", ""},
      {"\xF4\x8F\xBF\xBD\t\n", ""},
      {"\x01", "character U+0001"},
      {"\xEF\xBF\xBE", "character U+FFFE"},
      {"\xEF\xBF\xBF", "character U+FFFF"},
      {"\xFF", "UTF-8 octet 0xFF"},
      {"\xA9", "UTF-8 octet 0xA9"},
      {"\xC3", "UTF-8 octet 0xC3"},
      {"\xE0\x9F\xBF", "UTF-8 octet 0xE0"},
      {"\xED\xA0\x80", "UTF-8 octet 0xED"},
      {"\xF0\x8F\xBF\xBF", "UTF-8 octet 0xF0"},
      {"\xF4\x90\x80\x80", "UTF-8 octet 0xF4"},
  };
  for (const auto& [piece, fault] : cases) {
    for (const std::size_t front : {0, 1, 15, 16, 17, 31, 47, 48, 63, 100}) {
      for (const std::size_t behind : {0, 1, 40, 120}) {
        const std::string text = std::string(front, 'x') + piece + std::string(behind, 'y');
        if (text.size() < 19) continue;
        const std::string expected =
            fault.empty() ? wholeContent({"characters(" + EventLog::show(text) + ")"})
                          : failure(started, "Invalid " + fault,
                                    document("3C 00 'a' 82 00").size() + text.size());
        for (const bool isBuffered : {false, true}) {
          EXPECT_EQ(expected, toldOfText(text, isBuffered)) << EventLog::showOctets(text);
        }
      }
    }
  }
}

TEST(X891ReaderStreams, MayThrow) {
  for (const std::string& sample : samples()) {
    SampleReader reader;
    for (std::size_t length = 0; length < sample.size(); ++length) {
      std::istringstream stream(sample.substr(0, length));
      stream.exceptions(std::ios_base::badbit | std::ios_base::eofbit);
      const std::string outcome = outcomeOf([&] { reader.reader.parse(stream); });
      // Blocks of octets are read from the buffer, which throws nothing.
      if (outcome != "std::ios_base::failure") {
        EXPECT_EQ(
            "SAXParseException: Unexpected end of document (-1:" + std::to_string(length) + ")",
            outcome);
      }
    }
    std::istringstream stream(sample);
    stream.exceptions(std::ios_base::badbit | std::ios_base::eofbit);
    EXPECT_EQ("done", outcomeOf([&] { reader.reader.parse(stream); }));
  }
}

TEST(X891ReaderStreams, MayHaveFailedBefore) {
  for (const auto state : {std::ios_base::badbit, std::ios_base::failbit, std::ios_base::eofbit}) {
    std::istringstream stream(documentOfContent(""));
    stream.setstate(state);
    Tavrin::XMLReader_X891 reader;
    EXPECT_EQ("SAXParseException: Not a Fast Infoset document (-1:0)",
              outcomeOf([&] { reader.parse(stream); }));
  }
  std::istream none(nullptr);
  Tavrin::XMLReader_X891 reader;
  EXPECT_EQ("SAXParseException: Not a Fast Infoset document (-1:0)",
            outcomeOf([&] { reader.parse(none); }));
}

TEST(X891ReaderStreams, MayBeChangedByAHandler) {
  const std::string read = document("3C 00 'a' 80 'x' E2 00 'c' F0 F0");
  for (const auto state : {std::ios_base::badbit, std::ios_base::failbit, std::ios_base::eofbit}) {
    std::istringstream stream(read);
    EventLog log;
    Tavrin::XMLReader_X891 reader;
    log.attachTo(reader);
    log.beforeEvent = [&](std::size_t) { stream.setstate(state); };
    EXPECT_EQ("SAXParseException: Unexpected end of document (-1:5)",
              outcomeOf([&] { reader.parse(stream); }));
  }
  std::istringstream stream(read);
  std::istringstream other(octets("E2 00 'd' F0 F0"));
  EventLog log;
  Tavrin::XMLReader_X891 reader;
  log.attachTo(reader);
  log.beforeEvent = [&](std::size_t events) {
    if (events == 3) static_cast<std::ios&>(stream).rdbuf(other.rdbuf());
  };
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); }));
  EXPECT_EQ("setDocumentLocator()\n" + wholeContent({"characters(x)", "comment(d)"}), log.text());
}

}  // namespace
}  // namespace x891_test
