#include "AgreementLog.h"

#include <Tavrin/Identifiers.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "WhatIsThrown.h"

namespace agreement {

using namespace Tavrin;

namespace {

/// An integer as the stream carries those of `ints`: its low 32 bits.
long narrowed(long number) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(number)); }

template <typename Holder>
std::unique_ptr<EncodedData> copyIfOf(const EncodedData& data) {
  const auto* holder = dynamic_cast<const Holder*>(&data);
  return holder ? std::make_unique<Holder>(*holder) : nullptr;
}

/// A copy of a value, as it comes back.
std::unique_ptr<EncodedData> carried(const EncodedData& data) {
  if (const auto* integers = dynamic_cast<const IntData*>(&data)) {
    auto copy = std::make_unique<IntData>(*integers);
    for (long& number : copy->data_) number = narrowed(number);
    return copy;
  }
  for (auto* copyOf : {&copyIfOf<HexadecimalData>, &copyIfOf<Base64Data>, &copyIfOf<CDATAData>,
                       &copyIfOf<ShortData>, &copyIfOf<LongData>, &copyIfOf<BooleanData>,
                       &copyIfOf<FloatData>, &copyIfOf<DoubleData>}) {
    if (auto copy = copyOf(data)) return copy;
  }
  throw std::invalid_argument("a value of an application's own type");
}

/// A value that is empty has an empty text, and no other has.
bool isEmpty(const EncodedData& data) { return data.toString().empty(); }

/// The attributes of a start tag, as they come back.
void carry(const Attributes& from, EncodingAlgorithmAttributesImpl& to) {
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&from);
  for (int i = 0; i < from.getLength(); ++i) {
    if (from.getURI(i) == namespaces::xmlns) continue;
    const EncodedData* data = typed ? typed->getAlgorithmData(i) : nullptr;
    if (data && !isEmpty(*data)) {
      to.addAttribute(from.getURI(i), from.getLocalName(i), from.getQName(i), "CDATA", "",
                      typed->getAlgorithmIndex(i), carried(*data));
    } else {
      to.addAttribute(from.getURI(i), from.getLocalName(i), from.getQName(i), "CDATA",
                      from.getValue(i));
    }
  }
}

}  // namespace

ExactLog::ExactLog() {
  mergeCharacters = false;
  showAlgorithms = true;
}

void ExactLog::startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Attributes& attributes) {
  EventLog::startElement(uri, localName, qName, attributes);
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  for (int i = 0; typed && i < attributes.getLength(); ++i) {
    if (const EncodedData* data = typed->getAlgorithmData(i)) data->callContentHandler(*this);
  }
}

// --- ExpectedEvents ---

void ExpectedEvents::flushText() {
  if (!gathered_.empty()) log_.characters(gathered_);
  gathered_.clear();
}

void ExpectedEvents::startDocument() { log_.startDocument(); }

void ExpectedEvents::endDocument() {
  flushText();
  log_.endDocument();
}

void ExpectedEvents::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  declarations_.push_back(prefix);
  declarations_.push_back(uri);
}

void ExpectedEvents::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Attributes& attributes) {
  flushText();
  openPrefixes_.emplace_back();
  for (std::size_t i = 0; i < declarations_.size(); i += 2) {
    log_.startPrefixMapping(declarations_[i], declarations_[i + 1]);
    openPrefixes_.back().push_back(declarations_[i]);
  }
  declarations_.clear();
  EncodingAlgorithmAttributesImpl list;
  carry(attributes, list);
  log_.startElement(uri, localName, qName, list);
}

void ExpectedEvents::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qName) {
  flushText();
  log_.endElement(uri, localName, qName);
  for (const std::string& prefix : openPrefixes_.back()) log_.endPrefixMapping(prefix);
  openPrefixes_.pop_back();
}

void ExpectedEvents::characters(const std::string& text) { gathered_ += text; }

void ExpectedEvents::processingInstruction(const std::string& target, const std::string& data) {
  flushText();
  log_.processingInstruction(target, data);
}

void ExpectedEvents::section(const std::string& text) {
  log_.startCDATA();
  log_.characters(text);
  log_.endCDATA();
}

void ExpectedEvents::endCDATA() {
  if (!gathered_.empty()) section(gathered_);
  gathered_.clear();
}

void ExpectedEvents::comment(const std::string& text) {
  flushText();
  log_.comment(text);
}

void ExpectedEvents::bytes(const std::string& data) { object("", 1, Base64Data(data)); }

void ExpectedEvents::shorts(const std::vector<short>& data) { object("", 2, ShortData(data)); }

void ExpectedEvents::ints(const std::vector<long>& data) { object("", 3, IntData(data)); }

void ExpectedEvents::longs(const std::vector<long>& data) { object("", 4, LongData(data)); }

void ExpectedEvents::booleans(const std::vector<bool>& data) { object("", 5, BooleanData(data)); }

void ExpectedEvents::floats(const std::vector<float>& data) { object("", 6, FloatData(data)); }

void ExpectedEvents::doubles(const std::vector<double>& data) { object("", 7, DoubleData(data)); }

void ExpectedEvents::object(const std::string&, int index, const EncodedData& data) {
  flushText();
  if (isEmpty(data)) return;
  const std::unique_ptr<EncodedData> value = carried(data);
  if (index == 9) {
    section(value->toString());
  } else if (typedAs_ == TypedAs::primitives) {
    value->callContentHandler(log_);
  } else if (typedAs_ == TypedAs::objects) {
    log_.object("", index, *value);
  } else {
    log_.characters(value->toString());
  }
}

void ExpectedEvents::octets(const std::string&, int index, const std::string& data) {
  flushText();
  if (data.empty() || typedAs_ != TypedAs::objects) return;
  log_.octets("", index & ~0x40, data);  // One bit of the field is not read.
}

// --- The two that decode ---

std::string readBack(const std::string& octets, TypedAs typedAs) {
  ExactLog log;
  XMLReader_FI reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  if (typedAs == TypedAs::primitives) log.attachPrimitiveTypesTo(reader);
  if (typedAs == TypedAs::objects) log.attachAlgorithmsTo(reader);
  std::istringstream stream(octets);
  const std::string outcome = thrown([&] { reader.parse(stream); });
  return outcome == "nothing" ? log.text() : log.text() + outcome + "\n";
}

std::string decoded(const std::string& octets, TypedAs typedAs) {
  try {
    return join(naive::decode(octets, typedAs));
  } catch (const std::runtime_error& error) {
    return std::string(error.what()) + "\n";
  }
}

}  // namespace agreement
