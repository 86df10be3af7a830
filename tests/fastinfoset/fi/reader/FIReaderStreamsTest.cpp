#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include "FIReaderSamples.h"

// The stream under the document: where the reader leaves it, and what is wrong with it.

namespace reader_test {
namespace {

const char* const kNotADocument = "SAXException: Not a Fast Infoset document";
const char* const kUnexpectedEnd = "SAXException: Unexpected end of document";

std::string parse(Tavrin::XMLReader& reader, std::istream& stream) {
  const CapturedOutput output;
  return outcomeOf([&] { reader.parse(stream); });
}

TEST(FIReaderStream, IsLeftBehindTheDocumentsLastOctet) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    std::istringstream stream("before" + sample.octets + "behind");
    stream.seekg(6);
    SampleReader reader;
    EXPECT_EQ("done", parse(reader.reader, stream));
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(static_cast<std::streamoff>(6 + sample.octets.size()), stream.tellg());
    std::string rest;
    stream >> rest;
    EXPECT_EQ("behind", rest);
  }
}

TEST(FIReaderStream, MayHoldOneDocumentBehindAnother) {
  std::string all;
  for (const Sample& sample : samples()) all += sample.octets;
  std::istringstream stream(all);
  // Each with a reader of its own, as tables of some samples stay for the next.
  std::size_t end = 0;
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    SampleReader reader;
    SampleReader alone;
    end += sample.octets.size();
    EXPECT_EQ("done", parse(reader.reader, stream));
    EXPECT_EQ(static_cast<std::streamoff>(end), stream.tellg());
    alone.read(sample.octets);
    EXPECT_EQ(alone.log.text(), reader.log.text());
  }
  Tavrin::XMLReader_FI reader;
  EXPECT_EQ(kNotADocument, parse(reader, stream));
}

TEST(FIReaderStream, MayHoldDocumentsForOneReader) {
  std::istringstream stream(document("3C 00 'a' FF") + document("3C 00 'b' F0 F0") +
                            document("E2 00 'c' FF") + document("C4 FF") + "<a/>");
  LoggedReader reader;
  const auto next = [&] {
    reader.log.clear();
    const std::string outcome = parse(reader.reader, stream);
    return reader.log.text() + outcome + " at " + std::to_string(stream.tellg());
  };
  EXPECT_EQ(whole({"startElement(, a, a, [])", "endElement(, a, a)"}) + "done at 9", next());
  EXPECT_EQ(whole({"startElement(, b, b, [])", "endElement(, b, b)"}) + "done at 19", next());
  EXPECT_EQ(whole({"comment(c)"}) + "done at 28", next());
  EXPECT_EQ(whole({"startDTD(, , )", "endDTD()"}) + "done at 35", next());
  EXPECT_EQ(std::string(kNotADocument) + " at 36", next());
}

TEST(FIReaderStream, MayBeWithoutABuffer) {
  std::istream stream(nullptr);
  LoggedReader reader;
  EXPECT_EQ(kNotADocument, parse(reader.reader, stream));
  EXPECT_EQ("", reader.log.text());
}

TEST(FIReaderStream, ThatHasFailedBeforeIsNotRead) {
  for (const std::ios_base::iostate state :
       {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
    SCOPED_TRACE(state);
    std::istringstream stream(document("3C 00 'a' FF"));
    stream.setstate(state);
    LoggedReader reader;
    EXPECT_EQ(kNotADocument, parse(reader.reader, stream));
    EXPECT_EQ("", reader.log.text());
    // Nothing is lost: cleared, it holds its document still.
    stream.clear();
    EXPECT_EQ(0, stream.tellg());
    EXPECT_EQ("done", parse(reader.reader, stream));
  }
}

TEST(FIReaderStream, ThatThrowsDoesNotWhereTheDocumentIsWhole) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    std::istringstream stream(sample.octets);
    stream.exceptions(std::ios_base::failbit | std::ios_base::badbit | std::ios_base::eofbit);
    SampleReader reader;
    EXPECT_EQ("done", parse(reader.reader, stream));
  }
}

TEST(FIReaderStream, ThatThrowsAtItsEndThrowsOutOfTheReader) {
  const struct {
    std::string octets;
    const char* outcome;
  } rows[] = {{octets("E0 00"), "std::ios_base::failure"},
              {document(""), "std::ios_base::failure"},
              {document("3C"), "std::ios_base::failure"},
              {document("3C 60 00 00"), "std::ios_base::failure"},
              {documentOfContent("8C 0E 05 00"), "std::ios_base::failure"},
              // A literal is taken from the buffer, which sets no state.
              {document("3C 05 'a'"), kUnexpectedEnd}};
  for (const auto& row : rows) {
    std::istringstream stream(row.octets);
    stream.exceptions(std::ios_base::failbit | std::ios_base::badbit | std::ios_base::eofbit);
    LoggedReader reader;
    EXPECT_EQ(row.outcome, parse(reader.reader, stream));
    // The reader is as good as new.
    EXPECT_EQ(whole({"comment(c)"}), reader.read(document("E2 00 'c' F0")));
  }
}

/// Gives its octets one by one, and throws behind them.
class OctetBuffer : public std::streambuf {
 public:
  OctetBuffer(std::string octets, bool throws) : octets_(std::move(octets)), throws_(throws) {}

 protected:
  int_type underflow() override {
    if (next_ == octets_.size()) {
      if (throws_) throw std::runtime_error("broken");
      return traits_type::eof();
    }
    char* octet = &octets_[next_++];
    setg(octet, octet, octet + 1);
    return traits_type::to_int_type(*octet);
  }

 private:
  std::string octets_;
  bool throws_;
  std::size_t next_ = 0;
};

TEST(FIReaderStream, MayGiveItsOctetsOneByOne) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    OctetBuffer buffer(sample.octets, true);
    std::istream stream(&buffer);
    SampleReader reader;
    EXPECT_EQ("done", parse(reader.reader, stream));
    SampleReader plain;
    plain.read(sample.octets);
    EXPECT_EQ(plain.log.text(), reader.log.text());
  }
}

TEST(FIReaderStream, ThatBreaksOffEndsTheDocumentOrThrows) {
  for (const Sample& sample : samples()) {
    SampleReader reader;
    const std::string whole = reader.read(sample.octets);
    for (std::size_t length = 0; length < sample.octets.size(); ++length) {
      SCOPED_TRACE(std::string(sample.name) + ", " + std::to_string(length));
      OctetBuffer buffer(sample.octets.substr(0, length), true);
      std::istream stream(&buffer);
      const std::string outcome = parse(reader.reader, stream);
      // A stream keeps the exceptions of its buffer to itself, the buffer does not.
      if (outcome != "std::exception: broken") {
        EXPECT_EQ(length < 4 ? kNotADocument : kUnexpectedEnd, outcome);
      }
    }
    EXPECT_EQ(whole, reader.read(sample.octets));
  }
}

// --- What handlers do to the stream ---

/// Parses a document whose handler does something to the stream before its event of that number.
template <typename Reader>
std::string parseWith(std::istream& stream, std::size_t event, const std::function<void()>& action,
                      EventLog& log) {
  Reader reader;
  log.mergeCharacters = false;
  log.attachTo(reader);
  log.beforeEvent = [&](std::size_t events) {
    if (events == event) action();
  };
  return parse(reader, stream);
}

const char* const kFiveEvents = "3C 00 'a' 80 'x' E2 00 'c' F0 F0";

TEST(FIReaderStream, MayBeFailedByAHandler) {
  for (const std::ios_base::iostate state :
       {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
    for (std::size_t event = 0; event < 6; ++event) {
      SCOPED_TRACE(event);
      std::istringstream stream(document(kFiveEvents));
      EventLog log;
      const std::string outcome = parseWith<Tavrin::XMLReader_FI>(
          stream, event, [&] { stream.setstate(state); }, log);
      // Behind the last octet no state matters.
      EXPECT_EQ(event < 5 ? kUnexpectedEnd : "done", outcome);
      EXPECT_EQ(event + 1, log.eventCount());
    }
  }
}

TEST(FIReaderStream, MayGetAnotherBufferFromAHandler) {
  std::istringstream stream(document("3C 00 'a' 80 'x' 3C 00 'b' F0 F0"));
  std::istringstream other(octets("E2 00 'c' F0 F0 'z'"));
  EventLog log;
  EXPECT_EQ("done",
            parseWith<Tavrin::XMLReader_FI>(
                stream, 2, [&] { static_cast<std::ios&>(stream).rdbuf(other.rdbuf()); }, log));
  EXPECT_EQ(
      whole({"startElement(, a, a, [])", "characters(x)", "comment(c)", "endElement(, a, a)"}),
      log.text());
  EXPECT_EQ('z', stream.get());
}

TEST(FIReaderStream, MayLoseItsBufferToAHandler) {
  std::istringstream stream(document(kFiveEvents));
  EventLog log;
  EXPECT_EQ(kUnexpectedEnd,
            parseWith<Tavrin::XMLReader_FI>(
                stream, 1, [&] { static_cast<std::ios&>(stream).rdbuf(nullptr); }, log));
  EXPECT_EQ(2U, log.eventCount());
}

TEST(FIReaderStream, IsReadWithItsOwnOperation) {
  std::istringstream stream(document("3C 00 'a' F0 F0"));
  std::ostringstream tied;
  struct Counting : std::stringbuf {
    int flushes = 0;
    int sync() override { return ++flushes, 0; }
  } flushed;
  std::ostream out(&flushed);
  stream.tie(&out);
  EventLog log;
  std::vector<std::streamsize> counts;
  Tavrin::XMLReader_FI reader;
  log.attachTo(reader);
  log.beforeEvent = [&](std::size_t) { counts.push_back(stream.gcount()); };
  EXPECT_EQ("done", parse(reader, stream));
  // Each octet is one call of get, which looks after the tied stream; a literal is not.
  EXPECT_EQ((std::vector<std::streamsize>(4, 1)), counts);
  EXPECT_EQ(9, flushed.flushes);
}

/// Notes how much is asked for at a time.
class BulkBuffer : public std::stringbuf {
 public:
  explicit BulkBuffer(const std::string& octets) : std::stringbuf(octets, std::ios_base::in) {}
  std::vector<std::streamsize> reads;

 protected:
  std::streamsize xsgetn(char* octets, std::streamsize count) override {
    reads.push_back(count);
    return std::stringbuf::xsgetn(octets, count);
  }
};

TEST(FIReaderStream, GivesALiteralInOnePiece) {
  const std::string text(1000000, 'x');
  BulkBuffer buffer(document("3C 01 'ab' 83") + bigEndian(text.size() - 259, 4) + text +
                    octets("7C 00 'c' 78 00 'd' 02 'xyz' FF FF"));
  std::istream stream(&buffer);
  Tavrin::XMLReader_FI reader;
  EXPECT_EQ("done", parse(reader, stream));
  EXPECT_EQ((std::vector<std::streamsize>{2, 1000000, 1, 1, 3}), buffer.reads);
}

/// Says of no more octets than a few that they are there.
class SecretiveBulkBuffer : public BulkBuffer {
 public:
  explicit SecretiveBulkBuffer(std::string octets) : BulkBuffer({}), octets_(std::move(octets)) {}

 protected:
  int_type underflow() override {
    if (next_ == octets_.size()) return traits_type::eof();
    const std::size_t end = std::min(octets_.size(), next_ + 1000);
    setg(&octets_[next_], &octets_[next_], octets_.data() + end);
    next_ = end;
    return traits_type::to_int_type(*gptr());
  }
  std::streamsize showmanyc() override { return 0; }

 private:
  std::string octets_;
  std::size_t next_ = 0;
};

// Of numbers, too, each octet is one call of get, also where they wait until all have arrived.
TEST(FIReaderStream, GivesTheOctetsOfNumbersOneByOne) {
  for (const std::size_t size : {std::size_t{400}, std::size_t{200000}}) {
    for (const unsigned field : {2U, 3U, 4U, 5U, 6U, 7U}) {
      SCOPED_TRACE(std::to_string(size) + ", " + std::to_string(field));
      const std::string data(size, '\x01');
      const std::string all = document("3C 00 'a'") + bigEndian(0x8C03 | field << 2, 2) +
                              bigEndian(size - 259, 4) + data + octets("F0 F0");
      SecretiveBulkBuffer buffer(all);
      std::istream stream(&buffer);
      Tavrin::XMLReader_FI reader;
      EXPECT_EQ("done", parse(reader, stream));
      EXPECT_EQ(std::vector<std::streamsize>{1}, buffer.reads);  // The name.
      EXPECT_EQ(1, stream.gcount());

      SecretiveBulkBuffer tiedBuffer(all);
      std::istream tiedStream(&tiedBuffer);
      struct Counting : std::stringbuf {
        std::size_t flushes = 0;
        int sync() override { return ++flushes, 0; }
      } flushed;
      std::ostream out(&flushed);
      tiedStream.tie(&out);
      EXPECT_EQ("done", parse(reader, tiedStream));
      EXPECT_EQ(all.size() - 1, flushed.flushes);
    }
  }
}

TEST(FIReaderStream, GivesAsManyOctetsOfBooleansAsTheirCountIn32BitsNeeds) {
  LoggedReader reader;
  reader.log.attachPrimitiveTypesTo(reader.reader);
  EXPECT_EQ(wholeContent({"booleans(1 0 1 0)"}),
            reader.read(documentOfContent("8C 17 1F FF FE FE 0A")));
}

}  // namespace
}  // namespace reader_test
