#include "Documents.h"

#include <algorithm>
#include <sstream>
#include <streambuf>

#include "Normal.h"

using namespace Tavrin;

namespace {

/// Gives one octet at a time, so that nothing can be taken from a buffer.
class OctetBuffer : public std::streambuf {
 public:
  explicit OctetBuffer(const std::string& octets) : octets_(octets) {}

 protected:
  int_type underflow() override {
    return position_ == octets_.size() ? traits_type::eof()
                                       : traits_type::to_int_type(octets_[position_]);
  }
  int_type uflow() override {
    const int_type next = underflow();
    if (next != traits_type::eof()) ++position_;
    return next;
  }

 private:
  const std::string& octets_;
  std::size_t position_ = 0;
};

/// Pauses a reader after some events, in blocks alone.
template <typename Reader>
void pauseIn(XMLReader& reader, Recording& recording, unsigned seed) {
  auto* const pausing = dynamic_cast<Reader*>(&reader);
  if (pausing == nullptr) return;
  recording.afterEvent = [pausing, seed]() mutable {
    seed = seed * 1664525U + 1013904223U;
    if ((seed >> 16U) % 3U == 0) pausing->pause();
  };
}

template <typename Reader>
void resumeAll(XMLReader& reader) {
  auto* const paused = dynamic_cast<Reader*>(&reader);
  while (paused != nullptr && paused->isPaused()) paused->resume();
}

/// What follows a document of Fast Infoset is not read.
void parseInBlocks(XMLReader& reader, const std::string& text, unsigned seed,
                   const Events& events) {
  std::size_t position = 0;
  do {
    seed = seed * 1664525U + 1013904223U;
    const std::size_t size = std::min<std::size_t>(text.size() - position, (seed >> 16U) % 24U);
    {
      const std::vector<char> block(text.data() + position, text.data() + position + size);
      reader.parse(block.data(), size, position + size == text.size());
    }  // It is gone before the reader is resumed.
    position += size;
    resumeAll<XMLReader_X891>(reader);
    resumeAll<XMLReader_XML10>(reader);
    if (!events.empty() && events.back().kind == Event::endDocument) return;
  } while (position < text.size());
}

void parse(XMLReader& reader, const std::string& octets, Pieces pieces, const Events& events) {
  if (pieces.way == Pieces::blocks) return parseInBlocks(reader, octets, pieces.seed, events);
  if (pieces.way == Pieces::oneByOne) {
    OctetBuffer buffer(octets);
    std::istream stream(&buffer);
    return reader.parse(stream);
  }
  std::istringstream stream(octets);
  reader.parse(stream);
}

Reading read(XMLReader& reader, const std::string& octets, bool typed, Pieces pieces) {
  Reading result;
  Recording recording(typed);
  recording.attachTo(reader);
  if (pieces.way == Pieces::blocks) {
    pauseIn<XMLReader_X891>(reader, recording, pieces.seed);
    pauseIn<XMLReader_XML10>(reader, recording, pieces.seed);
  }
  try {
    parse(reader, octets, pieces, recording.events);
    if (const void* standalone = reader.getProperty(properties::standalone)) {
      result.statements.standalone = *static_cast<const bool*>(standalone);
    }
    if (const void* version = reader.getProperty(properties::documentXMLVersion)) {
      result.statements.version = *static_cast<const std::string*>(version);
    }
  } catch (const SAXParseException& exception) {
    result.failure = exception.getMessage() + " at " + std::to_string(exception.getLineNumber()) +
                     ':' + std::to_string(exception.getColumnNumber());
  } catch (const SAXException& exception) {
    // A refusal is an answer; what is no SAXException ends the fuzzer.
    result.failure = exception.getMessage();
  }
  if (!typed) return result.events = std::move(recording.events), result;
  reader.setProperty(properties::encodingAlgorithmContentHandler, nullptr);
  result.events = std::move(recording.events);
  return result;
}

}  // namespace

ExternalVocabularyMap& externalVocabularies() {
  static const char* const alphabets[] = {"ab", "0123456789abcdef"};
  static const char* const algorithms[] = {"urn:algorithm"};
  static const char* const prefixes[] = {"p", "q"};
  static const char* const uris[] = {"urn:p", "urn:q"};
  static const char* const names[] = {"a", "b", "c"};
  static const char* const texts[] = {"text", " ", "1"};
  static const char* const surrogates[][3] = {
      {"", "", "a"}, {"p", "urn:p", "b"}, {"", "urn:q", "c"}};
  static ExternalVocabulary vocabulary;
  static ExternalVocabularyMap map;
  if (!map.empty()) return map;
  vocabulary.restrictedAlphabets = {alphabets, 2, 2};
  vocabulary.encodingAlgorithms = {algorithms, 1, 1};
  vocabulary.prefixes = {prefixes, 2, 3};  // An index beyond what is defined.
  vocabulary.namespaceNames = {uris, 2, 2};
  vocabulary.localNames = vocabulary.otherNCNames = {names, 3, 3};
  vocabulary.otherURIs = {uris, 2, 2};
  vocabulary.attributeValues = vocabulary.contentCharacterChunks =
      vocabulary.otherStrings = {texts, 3, 3};
  vocabulary.elementNameSurrogates = {surrogates, 3, 3};
  vocabulary.attributeNameSurrogates = {surrogates, 2, 2};
  map["urn:v"] = &vocabulary;
  return map;
}

std::unique_ptr<XMLReader> makeReader(const char* type) {
  auto reader = XMLReaderFactory::createXMLReader(type);
  std::uint64_t threshold = 1U << 16U;
  if (std::string(type) == "X891") {
    reader->setProperty(properties::amplificationThreshold, &threshold);
    std::uint64_t literal = 1U << 20U;
    reader->setProperty(properties::maximumLiteralOctets, &literal);
    reader->setProperty(properties::externalVocabularies, &externalVocabularies());
  } else {
    reader->setProperty(properties::entityAmplificationThreshold, &threshold);
  }
  return reader;
}

Reading readFastInfoset(XMLReader& reader, const std::string& octets, bool typed, Pieces pieces) {
  return read(reader, octets, typed, pieces);
}

Reading readText(XMLReader& reader, const std::string& text, EntityResolver* resolver,
                 Pieces pieces) {
  reader.setEntityResolver(resolver);
  return read(reader, text, false, pieces);
}

Writing write(const char* type, const Reading& reading, std::initializer_list<Reason> reasons) {
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  std::ostringstream out;
  writer->setOutputStream(&out);
  Writing result;
  const Event* current = nullptr;
  try {
    if (reading.statements.standalone) {
      bool standalone = *reading.statements.standalone;
      writer->setProperty(properties::standalone, &standalone);
    }
    // Text is XML 1.0, whatever the document was.
    if (reading.statements.version && std::string(type) != "XML10") {
      std::string version = *reading.statements.version;
      writer->setProperty(properties::documentXMLVersion, &version);
    }
    for (const Event& event : reading.events) {
      current = &event;
      send(event, *writer);
    }
  } catch (const SAXException& exception) {
    result.refusal = exception.getMessage();
  } catch (const EncodingAlgorithmException& exception) {
    result.refusal = exception.getMessage();
  }
  result.octets = out.str();
  if (result.refusal.empty()) return result;
  const bool isKnown = std::any_of(reasons.begin(), reasons.end(), [&](const Reason& reason) {
    return result.refusal.starts_with(reason.begin) && result.refusal.ends_with(reason.end);
  });
  if (!isKnown) {
    finding("writer " + std::string(type) + " refuses \"" + result.refusal + "\" at " +
            (current != nullptr ? current->show() : "the beginning"));
  }
  return result;
}
