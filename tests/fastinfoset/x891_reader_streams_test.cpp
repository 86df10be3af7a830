#include <gtest/gtest.h>

#include <stdexcept>

#include "x891_reader_samples.h"

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

TEST(X891ReaderStreams, NeedNotBeSeekable) {
  // Gives an octet at a time, and stops the test where more is wanted than the document has.
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
  for (const std::string& sample : samples()) {
    Trickle buffer(sample);
    std::istream stream(&buffer);
    stream.exceptions(std::ios_base::badbit);
    SampleReader reader;
    EXPECT_EQ("done", outcomeOf([&] { reader.reader.parse(stream); }));
    EXPECT_EQ(SampleReader().read(sample), reader.log.text());
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

}  // namespace
}  // namespace x891_test
