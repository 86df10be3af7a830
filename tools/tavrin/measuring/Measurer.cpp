#include "measuring/Measurer.h"

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Factories.h>

#include "files/Failure.h"
#include "measuring/BinarySorter.h"
#include "measuring/TextSorter.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

using Use = CostlyStrings::Use;

std::vector<bool> typedAmong(const Tavrin::Attributes& attributes) {
  const auto* typed = dynamic_cast<const Tavrin::EncodingAlgorithmAttributes*>(&attributes);
  std::vector<bool> result;
  for (int i = 0; typed && i < attributes.getLength(); ++i) {
    result.push_back(typed->getAlgorithmData(i) != nullptr);
  }
  return result;
}

std::uint64_t elementOf(const EventOctets& octets, std::size_t) { return octets.elementName; }

std::uint64_t textOf(const EventOctets& octets, std::size_t) { return octets.text; }

std::uint64_t entryOf(const std::vector<std::uint64_t>& octets, std::size_t i) {
  return i < octets.size() ? octets[i] : 0;  // Nothing where the writer refused the event.
}

std::uint64_t attributeOf(const EventOctets& octets, std::size_t i) {
  return entryOf(octets.attributeNames, i);
}

std::uint64_t valueOf(const EventOctets& octets, std::size_t i) {
  return entryOf(octets.values, i);
}

}  // namespace

/// A copy in one encoding.
class Measurer::Side {
 public:
  Side(Encoding which, const Input& input, const ReadingOptions& options)
      : encoding(which),
        writer(
            Tavrin::XMLWriterFactory::createXMLWriter(which == Encoding::Text ? "XML10" : "X891")),
        relay(*writer, nullptr, input) {
    if (which == Encoding::Text) {
      sorter = std::make_unique<TextSorter>();
    } else {
      sorter = std::make_unique<BinarySorter>();
    }
    stream.rdbuf(sorter.get());
    writer->setOutputStream(&stream);
    options.applyTo(*writer, false);
    if (which == Encoding::Binary) options.vocabularies.applyTo(*writer);
  }

  Encoding encoding;
  std::unique_ptr<OctetSorter> sorter;
  std::ostream stream{nullptr};
  std::unique_ptr<Tavrin::XMLWriter> writer;
  Relay relay;
  EntityDeclarations declarations;
};

Measurer::Measurer(Measurement& measurement, Input& input, const ReadingOptions& options,
                   EntityFiles& entities)
    : measurement_(measurement), input_(input), entities_(entities) {
  for (const Encoding encoding : kEncodings) {
    sides_.push_back(std::make_unique<Side>(encoding, input, options));
  }
}

Measurer::~Measurer() = default;

void Measurer::measure(Tavrin::XMLReader& reader) {
  bool takesDeclarations = false;
  for (const auto& side : sides_) {
    side->relay.expectFrom(reader);
    if (side->relay.needsEntityDeclarations()) side->declarations.findIn(reader, input_);
    side->relay.declare(&side->declarations);
    takesDeclarations = takesDeclarations || side->relay.takesDeclarations();
  }
  attach(reader, *this, takesDeclarations);
  const Losses losses(reader, input_, [this](const auto& place, const auto& message) {
    for (const auto& side : sides_) refuse(*side, Failure::document(place, message));
  });
  try {
    parse(reader, input_, &entities_);
    for (const auto& side : sides_) side->declarations.check();  // A file may have changed.
  } catch (...) {
    for (const auto& side : sides_) {
      // The reader may have kept it to itself.
      if (measurement_.refusalOf(side->encoding).empty()) side->relay.check();
    }
    throw;
  }
  ++measurement_.documents;
}

void Measurer::refuse(Side& side, const Failure& failure) {
  std::string& refusal = measurement_.refusals[static_cast<std::size_t>(side.encoding)];
  if (refusal.empty()) refusal = failure.what();
  // There is nothing to measure.
  if (!measurement_.refusals[0].empty() && !measurement_.refusals[1].empty()) throw failure;
}

template <typename Event>
void Measurer::passTo(Side& side, OctetKind content, Event event) {
  side.sorter->begin(content);
  if (!measurement_.refusalOf(side.encoding).empty()) return;
  try {
    event(side.relay);
  } catch (const Failure& failure) {
    refuse(side, failure);
  }
  const EventOctets& octets = side.sorter->octets();
  OctetsByKind& all = measurement_.kinds[static_cast<std::size_t>(side.encoding)];
  for (std::size_t i = 0; i < kOctetKinds; ++i) all[i] += octets.pending[i] + octets.kinds[i];
}

/// Hands an event to both writers, and counts what they make of it.
/// @param element the name of one that begins
template <typename Event>
void Measurer::pass(OctetKind content, Event event, const std::string* element) {
  for (const auto& side : sides_) {
    passTo(*side, content, event);
    measurement_.paths.add(side->encoding, side->sorter->octets().pending);
  }
  if (element) measurement_.paths.startElement(*element);
  for (const auto& side : sides_) {
    measurement_.paths.add(side->encoding, side->sorter->octets().kinds);
  }
  if (content != OctetKind::Text && textSize_ > 0) addText();
}

/// The writer of Fast Infoset keeps text back until something else comes.
void Measurer::addText() {
  auto octets = ofBoth(textOf, 0);
  octets[static_cast<std::size_t>(Encoding::Text)] = textOctets_;
  measurement_.strings.add(Use::Text, text_, textSize_, 1, octets);
  text_.clear();
  textSize_ = 0;
  textOctets_ = 0;
}

std::array<std::uint64_t, kEncodingCount> Measurer::ofBoth(
    std::uint64_t (*octetsOf)(const EventOctets&, std::size_t), std::size_t i) const {
  std::array<std::uint64_t, kEncodingCount> result{};
  for (const auto& side : sides_) {
    result[static_cast<std::size_t>(side->encoding)] = octetsOf(side->sorter->octets(), i);
  }
  return result;
}

// --- What is counted by strings, too ---

void Measurer::startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Tavrin::Attributes& attributes) {
  for (const auto& side : sides_) side->sorter->expectTyped(typedAmong(attributes));
  pass(
      OctetKind::Names,
      [&](Relay& relay) { relay.startElement(uri, localName, qName, attributes); }, &qName);
  measurement_.strings.add(Use::Element, qName, qName.size(), 1, ofBoth(elementOf, 0));
  addStringsOf(attributes);
}

void Measurer::addStringsOf(const Tavrin::Attributes& attributes) {
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const auto number = static_cast<std::size_t>(i);
    const std::string& name = attributes.getQName(i);
    const std::string& value = attributes.getValue(i);
    measurement_.strings.add(Use::Attribute, name, name.size(), 1, ofBoth(attributeOf, number));
    measurement_.strings.add(Use::Value, value, value.size(), 1, ofBoth(valueOf, number));
  }
}

void Measurer::endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName) {
  pass(OctetKind::Names, [&](Relay& relay) { relay.endElement(uri, localName, qName); });
  measurement_.strings.add(Use::Element, qName, qName.size(), 0, ofBoth(elementOf, 0));
  measurement_.paths.endElement();
}

void Measurer::passText(const std::string& text,
                        void (Tavrin::ContentHandler::*event)(const std::string&)) {
  pass(OctetKind::Text, [&](Relay& relay) { (relay.*event)(text); });
  if (text_.size() < CostlyStrings::kLongestString) {
    text_.append(text, 0, CostlyStrings::kLongestString - text_.size());
  }
  textSize_ += text.size();
  textOctets_ += ofBoth(textOf, 0)[static_cast<std::size_t>(Encoding::Text)];
}

void Measurer::characters(const std::string& text) {
  passText(text, &Tavrin::ContentHandler::characters);
}

void Measurer::ignorableWhitespace(const std::string& text) {
  passText(text, &Tavrin::ContentHandler::ignorableWhitespace);
}

// --- What is counted by kinds alone ---

void Measurer::setDocumentLocator(const Tavrin::Locator* locator) {
  pass(OctetKind::Structure, [&](Relay& relay) { relay.setDocumentLocator(locator); });
}

void Measurer::startDocument() {
  pass(OctetKind::Structure, [&](Relay& relay) { relay.startDocument(); });
}

void Measurer::endDocument() {
  pass(OctetKind::Structure, [&](Relay& relay) { relay.endDocument(); });
}

void Measurer::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  pass(OctetKind::Names, [&](Relay& relay) { relay.startPrefixMapping(prefix, uri); });
}

void Measurer::endPrefixMapping(const std::string& prefix) {
  pass(OctetKind::Names, [&](Relay& relay) { relay.endPrefixMapping(prefix); });
}

void Measurer::processingInstruction(const std::string& target, const std::string& data) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.processingInstruction(target, data); });
}

void Measurer::skippedEntity(const std::string& name) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.skippedEntity(name); });
}

void Measurer::octets(const std::string& uri, int index, const std::string& data) {
  pass(OctetKind::Typed, [&](Relay& relay) { relay.octets(uri, index, data); });
}

void Measurer::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  pass(OctetKind::Typed, [&](Relay& relay) { relay.object(uri, index, data); });
}

void Measurer::startCDATA() {
  pass(OctetKind::Structure, [](Relay& relay) { relay.startCDATA(); });
}

void Measurer::endCDATA() {
  pass(OctetKind::Structure, [](Relay& relay) { relay.endCDATA(); });
}

void Measurer::comment(const std::string& text) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.comment(text); });
}

void Measurer::startEntity(const std::string& name) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.startEntity(name); });
}

void Measurer::endEntity(const std::string& name) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.endEntity(name); });
}

void Measurer::startDTD(const std::string& name, const std::string& publicId,
                        const std::string& systemId) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.startDTD(name, publicId, systemId); });
}

void Measurer::endDTD() {
  pass(OctetKind::Other, [](Relay& relay) { relay.endDTD(); });
}

void Measurer::notationDecl(const std::string& name, const std::string& publicId,
                            const std::string& systemId) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.notationDecl(name, publicId, systemId); });
}

void Measurer::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId, const std::string& notationName) {
  pass(OctetKind::Other,
       [&](Relay& relay) { relay.unparsedEntityDecl(name, publicId, systemId, notationName); });
}

void Measurer::elementDecl(const std::string& name, const std::string& model) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.elementDecl(name, model); });
}

void Measurer::attributeDecl(const std::string& eName, const std::string& aName,
                             const std::string& type, const std::string& mode,
                             const std::string& value) {
  pass(OctetKind::Other,
       [&](Relay& relay) { relay.attributeDecl(eName, aName, type, mode, value); });
}

void Measurer::internalEntityDecl(const std::string& name, const std::string& value) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.internalEntityDecl(name, value); });
}

void Measurer::externalEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  pass(OctetKind::Other, [&](Relay& relay) { relay.externalEntityDecl(name, publicId, systemId); });
}

std::unique_ptr<std::istream> Measurer::resolveEntity(const std::string& publicId,
                                                      const std::string& systemId) {
  Tavrin::EntityResolver* resolver = entities_.resolver();
  std::unique_ptr<std::istream> entity =
      resolver ? resolver->resolveEntity(publicId, systemId) : nullptr;
  if (!entity) pass(OctetKind::Other, [&](Relay& relay) { relay.passOver(systemId); });
  return entity;
}

}  // namespace tool
