#include <iostream>

#include "Documents.h"
#include "FIReaderSamples.h"
#include "Subjects.h"
#include "TrappedCode.h"
#include "X891ReaderSamples.h"

using namespace Tavrin;

namespace {

/// A stream that owns its buffer.
class EntityStream : public std::istream {
 public:
  explicit EntityStream(std::string_view octets) : std::istream(nullptr), buffer_(octets) {
    rdbuf(&buffer_);
  }

 private:
  TrappedInput buffer_;
};

class Resolver : public EntityResolver {
 public:
  std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                              const std::string& systemId) override {
    return std::make_unique<EntityStream>(documents::entity(systemId));
  }
};

/// Standard output, to which the reader of "FI" tells what nobody hears, is not for tests.
class WithoutOutput {
 public:
  WithoutOutput() : before_(std::cout.rdbuf(nullptr)) {}
  ~WithoutOutput() { std::cout.rdbuf(before_); }
  WithoutOutput(const WithoutOutput&) = delete;
  WithoutOutput& operator=(const WithoutOutput&) = delete;

 private:
  std::streambuf* before_;
};

enum class Feed { stream, throwingStream, blocks };

void parse(XMLReader& reader, std::string_view document, Feed feed) {
  if (feed == Feed::blocks) {
    constexpr std::size_t kBlock = 7;
    for (std::size_t i = 0; i < document.size(); i += kBlock) {
      const std::string_view block = document.substr(i, kBlock);
      reader.parse(block.data(), block.size(), i + block.size() == document.size());
    }
    return;
  }
  TrappedInput buffer(document);
  std::istream stream(&buffer);
  if (feed == Feed::throwingStream) {
    stream.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
  }
  reader.parse(stream);
}

class TextReader : public Subject {
 public:
  TextReader(std::string type, const std::string& document, bool hasDeclarations, Feed feed)
      : reader_(XMLReaderFactory::createXMLReader(type)),
        isExpat_(type == "Expat"),
        document_(document),
        hasDeclarations_(hasDeclarations),
        feed_(feed) {}

  void run(Trace& trace) override {
    // The end tag of an empty element still comes.
    TracingHandler handler(trace, isExpat_);
    reader_->setContentHandler(&handler);
    reader_->setEntityResolver(&resolver_);
    reader_->setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(&handler));
    if (hasDeclarations_) {
      reader_->setDTDHandler(&handler);
      reader_->setProperty(properties::declarationHandler, static_cast<DeclHandler*>(&handler));
    }
    parse(*reader_, document_, feed_);
  }

  // Of blocks, a document that a handler's own exception ended may still be open.
  void recover() override {
    reader_->setContentHandler(nullptr);
    if (isExpat_) return reader_->parse(nullptr, 0, true);
    parse(*reader_, "<a/>", Feed::stream);
  }

 private:
  Resolver resolver_;
  std::unique_ptr<XMLReader> reader_;
  bool isExpat_;
  const std::string& document_;
  bool hasDeclarations_;
  Feed feed_;
};

void attach(XMLReader& reader, TracingHandler& handler, bool typed) {
  reader.setContentHandler(&handler);
  reader.setErrorHandler(nullptr);
  reader.setDTDHandler(&handler);
  reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(&handler));
  reader.setProperty(properties::primitiveTypeContentHandler,
                     typed ? static_cast<PrimitiveTypeContentHandler*>(&handler) : nullptr);
  reader.setProperty(properties::encodingAlgorithmContentHandler,
                     typed ? static_cast<EncodingAlgorithmContentHandler*>(&handler) : nullptr);
}

/// Its algorithm may throw.
template <typename Sample>
class TrappedSample : public Sample {
 public:
  TrappedSample() { this->map["urn:reversed"] = &trapped_; }

 private:
  TrappedAlgorithm trapped_{this->reversed};
};

template <bool typed, Feed feed>
class X891Reader : public Subject {
 public:
  void run(Trace& trace) override {
    TracingHandler handler(trace);
    attach(sample_.reader, handler, typed);
    for (const std::string& document : x891_test::samples()) {
      // As text it has no content of algorithms that are unknown.
      const bool isKnown = document.find(kUnknown) == std::string::npos;
      if (typed || isKnown) parse(sample_.reader, document, feed);
    }
  }

 private:
  static constexpr char kUnknown[] = "\x8C\x80";

  TrappedSample<x891_test::SampleReader> sample_;
};

/// Tables of a document stay for the next one, so that each document has a reader of its own. After
/// a failure that reads another document, to show that it can.
template <bool typed, Feed feed>
class FIReader : public Subject {
 public:
  void run(Trace& trace) override {
    const WithoutOutput without;
    TracingHandler handler(trace);
    for (const reader_test::Sample& document : reader_test::samples()) {
      TrappedSample<reader_test::SampleReader> sample;
      attach(sample.reader, handler, typed);
      try {
        parse(sample.reader, document.octets, feed);
      } catch (...) {
        sample.reader.setContentHandler(nullptr);
        parse(sample.reader, reader_test::document("3C 00 'a' FF"), Feed::stream);
        throw;
      }
    }
  }
};

template <typename Made>
std::unique_ptr<Subject> make() {
  return std::make_unique<Made>();
}

template <Feed feed>
std::unique_ptr<Subject> makeExpat() {
  return std::make_unique<TextReader>("Expat", documents::text(false), false, feed);
}
template <Feed feed>
std::unique_ptr<Subject> makeExpatOfDeclarations() {
  return std::make_unique<TextReader>("Expat", documents::declarations(false), true, feed);
}
template <Feed feed>
std::unique_ptr<Subject> makeXML10() {
  return std::make_unique<TextReader>("XML10", documents::text(true), true, feed);
}
template <Feed feed>
std::unique_ptr<Subject> makeXML10OfDeclarations() {
  return std::make_unique<TextReader>("XML10", documents::declarations(true), true, feed);
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const SubjectKind& kind) { return out << kind.name; }

std::vector<SubjectKind> readers() {
  return {{"Expat", true, makeExpat<Feed::stream>},
          {"ExpatInBlocks", true, makeExpat<Feed::blocks>},
          {"ExpatOfDeclarations", true, makeExpatOfDeclarations<Feed::stream>},
          {"XML10", true, makeXML10<Feed::stream>},
          {"XML10InBlocks", true, makeXML10<Feed::blocks>},
          {"XML10OfDeclarations", true, makeXML10OfDeclarations<Feed::blocks>},
          {"FI", false, make<FIReader<false, Feed::stream>>},
          {"FITyped", false, make<FIReader<true, Feed::stream>>},
          {"FIThrowingStream", false, make<FIReader<true, Feed::throwingStream>>},
          {"X891", false, make<X891Reader<false, Feed::stream>>},
          {"X891Typed", false, make<X891Reader<true, Feed::stream>>},
          {"X891ThrowingStream", false, make<X891Reader<true, Feed::throwingStream>>}};
}
