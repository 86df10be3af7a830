#include <gtest/gtest.h>

#include <sstream>

#include "Streams.h"
#include "TextReaderSupport.h"
#include "ThrownKinds.h"

namespace {

/// Answers every reference with a buffer of the test's, and counts the streams that are alive.
class Resolver : public Tavrin::EntityResolver {
 public:
  explicit Resolver(std::function<std::unique_ptr<std::streambuf>()> open)
      : open_(std::move(open)) {}
  ~Resolver() override { EXPECT_EQ(0, alive_) << "streams were not deleted"; }

  std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
    ++calls;
    return std::make_unique<Stream>(open_(), alive_, state);
  }

  std::ios::iostate state = std::ios::goodbit;
  int calls = 0;

 private:
  class Stream : public std::istream {
   public:
    Stream(std::unique_ptr<std::streambuf> buffer, int& alive, std::ios::iostate state)
        : std::istream(buffer.get()), buffer_(std::move(buffer)), alive_(alive) {
      ++alive_;
      setstate(state);
    }
    ~Stream() override { --alive_; }

   private:
    std::unique_ptr<std::streambuf> buffer_;
    int& alive_;
  };

  std::function<std::unique_ptr<std::streambuf>()> open_;
  int alive_ = 0;
};

Resolver resolverOf(const std::string& text) {
  return Resolver([text] { return std::make_unique<std::stringbuf>(text); });
}

constexpr char kGeneral[] = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]>\n<a>1&e;2</a>";
constexpr char kSubset[] = "<!DOCTYPE a SYSTEM 'x.dtd'\n><a/>";
constexpr char kParameter[] = "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>\n%p;]><a/>";

TEST(ExpatEntityStreams, AreReadInBlocksOf1048576Octets) {
  struct Row {
    std::streamsize size;
    std::vector<Read> reads;
  };
  const Row rows[] = {
      {kBlock - 1, {{kBlock, kBlock - 1}}},
      {kBlock, {{kBlock, kBlock}, {kBlock, 0}}},
      {kBlock + 1, {{kBlock, kBlock}, {kBlock, 1}}},
      {2 * kBlock, {{kBlock, kBlock}, {kBlock, kBlock}, {kBlock, 0}}},
      {2 * kBlock + 1, {{kBlock, kBlock}, {kBlock, kBlock}, {kBlock, 1}}},
      {1, {{kBlock, 1}}},
      {0, {{kBlock, 0}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.size);
    const std::string text(static_cast<std::size_t>(row.size), 'x');
    std::vector<Read> reads;
    struct Keeping : NotingBuffer {
      Keeping(const std::string& content, std::vector<Read>& kept)
          : NotingBuffer(content), kept_(kept) {}
      ~Keeping() override { kept_ = reads(); }
      std::vector<Read>& kept_;
    };
    Resolver resolver([&] { return std::make_unique<Keeping>(text, reads); });
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    reader.setEntityResolver(&resolver);
    EXPECT_EQ("done", parseText(reader, kGeneral));
    EXPECT_EQ(row.reads, reads);
    EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])",
                        "characters(1" + text + "2)", "endElement(, a, a)"}),
              log.text());
  }
}

TEST(ExpatEntityStreams, OfAnExternalSubsetMayHaveManyBlocksToo) {
  // Comments are far apart, so that blocks end within them.
  const std::string comment(3000000, 'c');
  Resolver resolver =
      resolverOf("<!--" + comment + "--><!ATTLIST a d CDATA 'v'><!--" + comment + "-->");
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, kSubset));
  EXPECT_EQ(
      wholeLog({"startDTD(a, , x.dtd)", "comment(" + comment + ")", "comment(" + comment + ")",
                "endDTD()", "startElement(, a, a, [{, d, d, CDATA, v}])", "endElement(, a, a)"}),
      log.text());
}

TEST(ExpatEntityStreams, KeepTheirStateFlagsUnconsulted) {
  Resolver resolver = resolverOf("x");
  resolver.state = std::ios::failbit | std::ios::badbit | std::ios::eofbit;
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, kGeneral));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(1x2)",
                      "endElement(, a, a)"}),
            log.text());
}

TEST(ExpatEntityStreams, WithoutABufferAreEmptyEntities) {
  Resolver resolver([] { return nullptr; });
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, kGeneral));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(12)",
                      "endElement(, a, a)"}),
            log.text());
  EXPECT_EQ(1, resolver.calls);
}

TEST(ExpatEntityStreams, EndWithTheFirstReadThatIsNotFull) {
  Resolver resolver([] {
    auto buffer = std::make_unique<NotingBuffer>("xy");
    buffer->limit = 1;
    return buffer;
  });
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, kGeneral));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(1x2)",
                      "endElement(, a, a)"}),
            log.text());
}

struct FailureRow {
  const char* document;
  Failure failure;
  EventLog::Lines before;
};

const FailureRow kFailures[] = {
    {kGeneral,
     {XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 5},
     {"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(1)"}},
    {kSubset, {XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 1}, {"startDTD(a, , x.dtd)"}},
    {kParameter, {XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 1}, {"startDTD(a, , )"}},
};

/// Every document fails at its entity, and the reader is none the worse.
void checkFailures(Tavrin::EntityResolver& resolver) {
  for (const FailureRow& row : kFailures) {
    SCOPED_TRACE(row.document);
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    reader.setEntityResolver(&resolver);
    EXPECT_EQ(row.failure.thrown(), parseText(reader, row.document));
    EventLog::Lines expected = {"setDocumentLocator()", "startDocument()"};
    expected.insert(expected.end(), row.before.begin(), row.before.end());
    expected.push_back(row.failure.logged());
    EXPECT_EQ(join(expected), log.text());

    log.clear();
    EXPECT_EQ("done", parseText(reader, "<b/>"));
    EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());
  }
}

TEST(ExpatEntityStreams, WhoseBufferThrowsFailTheDocument) {
  for (const Thrown& thrown : thrownKinds()) {
    SCOPED_TRACE(thrown.name);
    Resolver resolver([&] {
      auto buffer = std::make_unique<NotingBuffer>("");
      buffer->beforeRead = [&](std::size_t) { thrown.raise(); };
      return buffer;
    });
    checkFailures(resolver);
  }
}

TEST(ExpatEntityStreams, ThatTheResolverThrowsInsteadOfFailTheDocument) {
  struct Thrower : Tavrin::EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
      thrown->raise();
      return nullptr;
    }
    const Thrown* thrown = nullptr;
  };
  for (const Thrown& thrown : thrownKinds()) {
    SCOPED_TRACE(thrown.name);
    Thrower resolver;
    resolver.thrown = &thrown;
    checkFailures(resolver);
  }
}

TEST(ExpatEntityStreams, ThatAreNotWellFormedFailTheDocument) {
  Resolver resolver = resolverOf("<");
  checkFailures(resolver);
}

TEST(ExpatEntityStreams, AreDeletedAlsoWhenAHandlerThrows) {
  Resolver resolver = resolverOf("<b/>");
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  log.beforeEvent = [](std::size_t number) {
    if (number == 6) throw 42;
  };
  // The start of b throws, and so does all that follows, but for fatalError.
  EventLog failures;
  reader.setErrorHandler(&failures);
  const Failure aborted{XML_ERROR_ABORTED, 2, 8};
  EXPECT_EQ(aborted.thrown(), parseText(reader, kGeneral));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startDTD(a, , )", "endDTD()",
                  "startElement(, a, a, [])", "characters(1)"}),
            log.text());
  EXPECT_EQ(join({aborted.logged()}), failures.text());
  EXPECT_EQ(1, resolver.calls);
}

TEST(ExpatEntityStreams, AreNotAskedForWithoutAResolver) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(nullptr);
  EXPECT_EQ("done", parseText(reader, kGeneral));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(12)",
                      "endElement(, a, a)"}),
            log.text());

  log.clear();
  EXPECT_EQ("done",
            parseText(reader, "<!DOCTYPE a PUBLIC 'p' 'x.dtd' [<!ENTITY i 'I'>]><a>&i;&e;</a>"));
  EXPECT_EQ(wholeLog({"startDTD(a, p, x.dtd)", "endDTD()", "startElement(, a, a, [])",
                      "characters(I)", "skippedEntity(e)", "endElement(, a, a)"}),
            log.text());

  log.clear();
  EXPECT_EQ("done", parseText(reader, kParameter));
  EXPECT_EQ(
      wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
      log.text());
}

TEST(ExpatEntityStreams, AreNotAskedForByTheResolverThatDoesNothing) {
  Tavrin::EntityResolver resolver;
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, kGeneral));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "characters(12)",
                      "endElement(, a, a)"}),
            log.text());
}

}  // namespace
