// Random events, right ones and wrong ones, to the writers "X891" and "XML10". What they accept is
// read again as it was sent; what they refuse leaves no trace: the accepted events alone make the
// same octets.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <set>
#include <sstream>
#include <typeinfo>
#include <utility>

#include "Documents.h"
#include "Normal.h"

using namespace Tavrin;

namespace {

/// Takes choices from the input; from its end on, each is the first.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool done() const { return next_ == end_; }
  unsigned octet() { return done() ? 0 : *next_++; }
  unsigned below(unsigned bound) { return octet() % bound; }
  bool flag() { return below(2) != 0; }

  template <typename Item, std::size_t Count>
  const Item& oneOf(const Item (&items)[Count]) {
    return items[below(Count)];
  }

  std::string octets(std::size_t size) {
    size = std::min(size, static_cast<std::size_t>(end_ - next_));
    std::string result(next_, next_ + size);
    next_ += size;
    return result;
  }

  template <typename Number>
  Number number() {
    Number result = 0;
    const std::string from = octets(sizeof result);
    std::memcpy(&result, from.data(), from.size());
    return result;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

const std::string kPrefixes[] = {"", "p", "q", "xml", "xmlns", "1", "p:"};
const std::string kURIs[] = {"",         "urn:p",         "urn:q",          "urn:<&'\"",
                             "urn:\xFF", namespaces::xml, namespaces::xmlns};
const std::string kNames[] = {"a", "b", "c", "\xC3\xA4", "xmlns", "e", "n", "", "a:b", "1", "\xC3"};
const std::string kTexts[] = {"text",
                              " ",
                              "1",
                              "",
                              "\r",
                              "\n\t",
                              "<&>'\"",
                              "]]>",
                              "]]",
                              ">",
                              "-",
                              "--",
                              "?>",
                              "\xF0\x9F\x8C\xB3",
                              "12.5E+1 ",
                              "2003-02-03",
                              "\xEF\xBF\xBF",
                              std::string(1, '\0')};
const std::string kTypes[] = {"CDATA", "ID", "NMTOKENS", "(x|y)", "NOTATION (n)", "X"};
const std::string kModes[] = {"", "#IMPLIED", "#REQUIRED", "#FIXED", "#X"};
const std::string kModels[] = {"ANY", "EMPTY", "(#PCDATA)", "(a|b)*", "(a,(b|c)+)?", "(a"};

template <typename Data, typename Items>
TypedValue typed(int index, Items items) {
  return keep({}, index, Data(std::move(items)));
}

template <typename Number, typename Item = Number>
std::vector<Item> numbers(Choices& choices) {
  std::vector<Item> result;
  for (unsigned i = choices.below(6); i > 0; --i) result.push_back(choices.number<Number>());
  return result;
}

TypedValue typedValue(Choices& choices) {
  // Most often what belongs to the algorithm.
  const int index = static_cast<int>(choices.below(10));
  const int algorithm = choices.below(32) == 1 ? static_cast<int>(choices.octet()) - 2 : index;
  switch (index) {
    case 0:
      return typed<HexadecimalData>(algorithm, choices.octets(choices.octet()));
    case 1:
      return typed<Base64Data>(algorithm, choices.octets(choices.octet()));
    case 2:
      return typed<ShortData>(algorithm, numbers<short>(choices));
    case 3:
      return typed<IntData>(algorithm, choices.below(16) == 1
                                           ? numbers<long>(choices)
                                           : numbers<std::int32_t, long>(choices));
    case 4:
      return typed<LongData>(algorithm, numbers<long>(choices));
    case 5: {
      std::vector<bool> booleans;
      for (unsigned i = choices.below(20); i > 0; --i) booleans.push_back(choices.flag());
      return typed<BooleanData>(algorithm, booleans);
    }
    case 6:
      return typed<FloatData>(algorithm, numbers<float>(choices));
    case 7:
      return typed<DoubleData>(algorithm, numbers<double>(choices));
    case 8: {
      std::vector<UUID> uuids(choices.below(3));
      for (UUID& uuid : uuids) {
        for (std::uint8_t& octet : uuid) octet = static_cast<std::uint8_t>(choices.octet());
      }
      return typed<UUIDData>(algorithm, uuids);
    }
    default:
      return typed<CDATAData>(algorithm, choices.oneOf(kTexts));
  }
}

/// Chooses events of which most may come.
class Generator {
 public:
  Generator(const std::uint8_t* data, std::size_t size, bool typedToo)
      : choices_(data, size), typedToo_(typedToo) {}

  Choices& choices() { return choices_; }
  bool done() const { return choices_.done(); }

  Event next() {
    static constexpr Event::Kind kinds[] = {Event::startElement,
                                            Event::startElement,
                                            Event::startElement,
                                            Event::endElement,
                                            Event::endElement,
                                            Event::characters,
                                            Event::characters,
                                            Event::startPrefixMapping,
                                            Event::startPrefixMapping,
                                            Event::comment,
                                            Event::processingInstruction,
                                            Event::startCDATA,
                                            Event::endCDATA,
                                            Event::ignorableWhitespace,
                                            Event::skippedEntity,
                                            Event::object,
                                            Event::object,
                                            Event::octets,
                                            Event::startDTD,
                                            Event::endDTD,
                                            Event::notationDecl,
                                            Event::unparsedEntityDecl,
                                            Event::externalEntityDecl,
                                            Event::internalEntityDecl,
                                            Event::elementDecl,
                                            Event::attributeDecl,
                                            Event::startDocument,
                                            Event::endDocument};
    Event event{choices_.oneOf(kinds)};
    const bool isTyped = event.kind == Event::object || event.kind == Event::octets;
    if (isTyped && !typedToo_) event.kind = Event::characters;
    fill(event);
    return event;
  }

  /// What is accepted binds later choices.
  void accepted(const Event& event) {
    if (event.kind == Event::startElement) open_.push_back(event.texts);
    if (event.kind == Event::endElement) open_.pop_back();
    if (event.kind == Event::startPrefixMapping) bound_ = event.texts;
    if (event.kind == Event::internalEntityDecl) withText_.insert(event.texts[0]);
  }

  const std::vector<std::vector<std::string>>& open() const { return open_; }

 private:
  std::string text() {
    std::string result = choices_.oneOf(kTexts);
    if (choices_.below(8) == 1) result += choices_.oneOf(kTexts);
    // Of every form of length.
    if (choices_.below(32) == 1) result += std::string(choices_.octet() * 4, 'x');
    return result;
  }

  /// Namespace name, local name and qualified name.
  std::vector<std::string> name() {
    const std::string& local = choices_.oneOf(kNames);
    if (!bound_.empty() && choices_.below(3) != 0) {
      return {bound_[1], local, bound_[0].empty() ? local : bound_[0] + ':' + local};
    }
    if (choices_.below(4) != 1) return {"", local, local};
    const std::string& prefix = choices_.oneOf(kPrefixes);
    const std::string& uri = choices_.oneOf(kURIs);
    return {uri, local, prefix.empty() ? local : prefix + ':' + local};
  }

  void fill(Event& event) {
    const auto oneOf = [this](const auto& items) { return choices_.oneOf(items); };
    switch (event.kind) {
      case Event::startElement:
        event.texts = name();
        for (unsigned i = choices_.below(4); i > 0; --i) {
          const std::vector<std::string> parts = name();
          Event::Attribute attribute{parts[0], parts[1], parts[2], "CDATA", text(), {}};
          if (typedToo_ && choices_.below(3) == 1) {
            attribute.typed = typedValue(choices_);
            attribute.value.clear();
          }
          event.attributes.push_back(std::move(attribute));
        }
        break;
      case Event::endElement:
        event.texts = open_.empty() || choices_.below(16) == 1 ? name() : open_.back();
        break;
      case Event::startPrefixMapping:
        event.texts = {oneOf(kPrefixes), oneOf(kURIs)};
        break;
      case Event::processingInstruction:
      case Event::internalEntityDecl:
        event.texts = {oneOf(kNames), text()};
        break;
      case Event::elementDecl:
        event.texts = {oneOf(kNames), oneOf(kModels)};
        break;
      case Event::attributeDecl:
        // Of an element that never comes: its defaults would be attributes.
        event.texts = {"declared", oneOf(kNames), oneOf(kTypes), oneOf(kModes), text()};
        break;
      case Event::startDTD:
      case Event::notationDecl:
      case Event::externalEntityDecl:
        event.texts = {oneOf(kNames), text(), text()};
        break;
      case Event::unparsedEntityDecl:
        event.texts = {oneOf(kNames), text(), text(), oneOf(kNames)};
        break;
      case Event::skippedEntity:
        // A reference to an entity that has a text comes back as that text.
        event.texts = {oneOf(kNames)};
        if (withText_.contains(event.texts[0])) event.texts[0] = "skipped";
        break;
      case Event::characters:
      case Event::ignorableWhitespace:
      case Event::comment:
        event.texts = {text()};
        break;
      case Event::object:
        event.value = typedValue(choices_);
        break;
      case Event::octets:
        event.value = {choices_.flag() ? "" : "urn:algorithm", static_cast<int>(choices_.below(34)),
                       nullptr, choices_.octets(choices_.octet())};
        break;
      default:
        break;
    }
  }

  Choices choices_;
  bool typedToo_;
  std::vector<std::vector<std::string>> open_;
  std::vector<std::string> bound_;
  std::set<std::string> withText_;
};

/// Properties and features, the same for both writers of a document.
class Settings {
 public:
  Settings(Choices& choices, bool isFastInfoset) : isFastInfoset_(isFastInfoset) {
    if (isFastInfoset) {
      vocabulary_ = choices.below(4);
      length_ = choices.flag() ? 32 : choices.octet();
      tables_ = choices.flag() ? 1U << 20U : choices.octet() * 8U;
    } else {
      quote_ = choices.flag() ? '"' : '\'';
      emptyTags_ = choices.flag();
      declaration_ = choices.flag();
      indent_ = choices.below(4) == 1;
    }
    statements_ = choices.below(4);
  }

  /// Indentation adds white space.
  bool keepsText() const { return !indent_; }

  void applyTo(XMLWriter& writer) {
    bool yes = true;
    if (statements_ == 1) writer.setProperty(properties::standalone, &yes);
    if (!isFastInfoset_) {
      writer.setProperty(properties::quoteCharacter, &quote_);
      writer.setFeature(features::emptyTags, emptyTags_);
      writer.setFeature(features::xmlDeclaration, declaration_);
      writer.setFeature(features::autoIndent, indent_);
      return;
    }
    std::string version = "1.1";
    if (statements_ == 2) writer.setProperty(properties::documentXMLVersion, &version);
    writer.setProperty(properties::indexedAttributeValueLength, &length_);
    writer.setProperty(properties::indexedChunkLength, &length_);
    writer.setProperty(properties::maximumTableOctets, &tables_);
    ExternalVocabulary* const known = externalVocabularies().at("urn:v");
    if ((vocabulary_ & 1U) != 0) writer.setProperty(properties::initialVocabulary, known);
    if ((vocabulary_ & 2U) != 0) {
      std::string uri = "urn:v";
      writer.setProperty(properties::externalVocabularies, &externalVocabularies());
      writer.setProperty(properties::externalVocabulary, &uri);
    }
  }

 private:
  bool isFastInfoset_;
  unsigned vocabulary_ = 0;
  std::uint64_t length_ = 32;
  std::uint64_t tables_ = 0;
  unsigned statements_ = 0;
  char quote_ = '\'';
  bool emptyTags_ = true;
  bool declaration_ = true;
  bool indent_ = false;
};

/// Whether a writer takes an event. What it refuses leaves no octet behind.
bool accepts(XMLWriter& writer, std::ostringstream& out, const Event& event) {
  const auto before = out.tellp();
  try {
    send(event, writer);
    return true;
  } catch (const SAXException&) {
  } catch (const EncodingAlgorithmException&) {
  } catch (const std::bad_cast&) {
    // A holder that is not the algorithm's own.
    if (event.kind != Event::object && event.kind != Event::startElement) throw;
  }
  if (out.tellp() != before) finding("octets of an event that was refused: " + event.show());
  return false;
}

Events sendAll(Generator& generator, XMLWriter& writer, std::ostringstream& out) {
  Events accepted;
  const auto offer = [&](const Event& event) {
    if (!accepts(writer, out, event)) return;
    accepted.push_back(event);
    generator.accepted(event);
  };
  offer({Event::startDocument});
  while (!generator.done()) offer(generator.next());
  // To the end of the document, however far it has come.
  offer({Event::endDTD});
  offer({Event::endCDATA});
  if (accepted.empty()) finding("startDocument is refused");
  while (!generator.open().empty()) {
    const std::size_t before = accepted.size();
    offer({Event::endElement, generator.open().back()});
    if (accepted.size() != before) continue;
    // A mapping waits for its element.
    const auto last = std::find_if(accepted.rbegin(), accepted.rend(), [](const Event& event) {
      return event.kind == Event::startElement || event.kind == Event::startPrefixMapping;
    });
    if (last->kind == Event::startPrefixMapping) return accepted;
    finding("the end of an open element is refused");
  }
  offer({Event::endDocument});
  return accepted;
}

std::string writeAgain(const char* type, Settings& settings, const Events& events) {
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  std::ostringstream out;
  writer->setOutputStream(&out);
  settings.applyTo(*writer);
  try {
    for (const Event& event : events) send(event, *writer);
  } catch (const SAXException& exception) {
    finding("what was accepted is refused without what was refused: " + exception.getMessage());
  }
  return out.str();
}

/// The first document that was complete.
Events firstDocument(const Events& events) {
  const auto end = std::find_if(events.begin(), events.end(), [](const Event& event) {
    return event.kind == Event::endDocument;
  });
  return end == events.end() ? Events() : Events(events.begin(), end + 1);
}

/// Attributes that are declarations count as mappings, and mappings end where a reader says so.
/// White space in front of the data belongs to no instruction.
Events asRead(const Events& events, bool isText) {
  struct Element {
    std::vector<std::string> prefixes;
  };
  Events result;
  std::vector<Element> open;
  std::vector<std::vector<std::string>> mappings;
  std::set<std::string> entities;
  std::set<std::pair<std::string, std::string>> attributes;
  const auto isDeclaredAgain = [&](const Event& event) {
    switch (event.kind) {
      case Event::internalEntityDecl:
      case Event::externalEntityDecl:
      case Event::unparsedEntityDecl:
        return !entities.insert(event.texts[0]).second;
      case Event::attributeDecl:
        return !attributes.insert({event.texts[0], event.texts[1]}).second;
      default:
        return false;
    }
  };
  const auto declare = [&](const std::string& prefix, const std::string& uri) {
    const bool isKnown =
        std::any_of(mappings.begin(), mappings.end(),
                    [&](const std::vector<std::string>& mapping) { return mapping[0] == prefix; });
    if (!isKnown) mappings.push_back({prefix, uri});
  };
  for (const Event& event : events) {
    if (event.kind == Event::startPrefixMapping) {
      declare(event.texts[0], event.texts[1]);
      continue;
    }
    if (event.kind == Event::startElement) {
      Event start{event.kind, event.texts};
      for (const Event::Attribute& attribute : event.attributes) {
        const std::string value =
            attribute.typed.data == nullptr ? attribute.value : attribute.typed.data->toString();
        if (attribute.qName == "xmlns") {
          declare("", value);
        } else if (attribute.qName.starts_with("xmlns:")) {
          declare(attribute.qName.substr(6), value);
        } else if (attribute.qName.empty() && attribute.uri == namespaces::xmlns) {
          declare(attribute.localName == "xmlns" ? "" : attribute.localName, value);
        } else {
          start.attributes.push_back(attribute);
        }
      }
      open.emplace_back();
      for (const auto& mapping : mappings) {
        result.push_back({Event::startPrefixMapping, mapping});
        open.back().prefixes.push_back(mapping[0]);
      }
      mappings.clear();
      result.push_back(std::move(start));
      continue;
    }
    // Of several declarations in XML text the first counts.
    if (!isText || !isDeclaredAgain(event)) result.push_back(event);
    if (event.kind == Event::processingInstruction) {
      std::string& data = result.back().texts[1];
      data.erase(0, std::min(data.find_first_not_of(" \t\r\n"), data.size()));
    }
    if (event.kind == Event::endElement) {
      auto& prefixes = open.back().prefixes;
      while (!prefixes.empty()) {
        result.push_back({Event::endPrefixMapping, {prefixes.back()}});
        prefixes.pop_back();
      }
      open.pop_back();
    }
  }
  return result;
}

/// Typed content as a reader gives it: decoded where the algorithm is built in, CDATA as a section.
Events typedAsRead(const Events& events) {
  XMLWriter_X891 writer;
  Events result;
  for (Event event : events) {
    for (Event::Attribute& attribute : event.attributes) {
      // There is no typed value without an octet.
      if (attribute.typed.octets.empty()) attribute.typed = {};
    }
    const bool isTyped = event.kind == Event::object || event.kind == Event::octets;
    if (isTyped && event.value.octets.empty()) continue;
    // The one that the vocabulary names, by either.
    if (isTyped && (!event.value.algorithmURI.empty() || event.value.algorithmIndex >= 31)) {
      event.value.algorithmURI = "urn:algorithm";
      event.value.algorithmIndex = -1;
    }
    if (event.kind == Event::octets && event.value.algorithmURI.empty()) {
      const int index = event.value.algorithmIndex;
      EncodingAlgorithm* const algorithm = writer.getEncodingAlgorithm({}, index);
      if (algorithm != nullptr) {
        std::istringstream stream(event.value.octets);
        const auto length = static_cast<std::uint32_t>(event.value.octets.size());
        event = {Event::object,
                 {},
                 {},
                 keep({}, index, algorithm->decodeFromInputStream(length, stream))};
      }
    }
    if (event.kind == Event::object && event.value.algorithmIndex == algorithms::cdata) {
      result.push_back({Event::startCDATA});
      result.push_back({Event::characters, {event.value.octets}});
      result.push_back({Event::endCDATA});
    } else {
      result.push_back(std::move(event));
    }
  }
  return result;
}

void tryWriter(const char* type, const std::uint8_t* data, std::size_t size) {
  const bool isFastInfoset = std::string(type) == "X891";
  Generator generator(data, size, isFastInfoset);
  Settings settings(generator.choices(), isFastInfoset);
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  std::ostringstream out;
  writer->setOutputStream(&out);
  settings.applyTo(*writer);
  const Events accepted = sendAll(generator, *writer, out);
  if (writeAgain(type, settings, accepted) != out.str()) {
    finding(std::string("an event that ") + type + " refused left a trace");
  }
  const Events document = firstDocument(accepted);
  if (document.empty()) return;
  const auto reader = makeReader(isFastInfoset ? "X891" : "XML10");
  const Reading again =
      isFastInfoset ? readFastInfoset(*reader, out.str(), true) : readText(*reader, out.str());
  if (!again.failure.empty()) {
    finding(std::string(type) + " wrote what cannot be read: " + again.failure + '\n' +
            (isFastInfoset ? "" : out.str()));
  }
  if (!settings.keepsText()) return;
  if (isFastInfoset) {
    expectEqual("Fast Infoset", inFastInfoset(typedAsRead(asRead(document, false))),
                inFastInfoset(typedAsRead(again.events)));
  } else {
    expectEqual("XML text", inXMLText(asRead(document, true)), inXMLText(again.events, document));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  tryWriter(data[0] % 2 == 0 ? "X891" : "XML10", data + 1, size - 1);
  return 0;
}
