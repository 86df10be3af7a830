#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../sax/AtLimit.h"
#include "../../xml/Rules.h"
#include "../../xml/simd/EasyText.h"
#include "../format/Octets.h"
#include "X891Encoder.h"

// Elements and namespace declarations. A start tag is checked as a whole before any of it is
// written.

namespace Tavrin {

using namespace fastinfoset;

// --- Namespace declarations ---

void XMLWriter_X891::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  encoder_->attempt([&](Encoder& encoder) {
    if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
      throw SAXException("You cannot declare a namespace at this point");
    }
    encoder.declare(prefix, uri);
  });
}

void XMLWriter_X891::Encoder::declare(const std::string& prefix, const std::string& uri) {
  Document& document = document_;
  checkLength(prefix.size());
  checkLength(uri.size());
  xml::refuseIf(xml::whyNotDeclaration(prefix, uri, xmlVersion_ == "1.1"));
  if (document.declared.contains(prefix)) throw SAXException(xml::declaredTwice(prefix));
  const std::size_t written = namespaces_.size();
  const std::size_t bound = document.bindings.count();
  const auto declared = document.declared.insert(prefix).first;
  try {
    document.bindings.declare(prefix, uri);
    // The built-in declaration is never written (X.891, 7.2.21 and 7.2.22).
    if (prefix != "xml") xml::addDeclaration(namespaces_, prefix, uri);
  } catch (...) {
    namespaces_.resize(written);
    document.bindings.undo(document.bindings.count() - bound);
    document.declared.erase(declared);
    throw;
  }
}

/// Declares the prefixes of attributes that startPrefixMapping has not declared.
void XMLWriter_X891::Encoder::declareByAttributes(const Attributes& attributes) {
  for (const int i : declarations_) {
    const std::string& qName = attributes.getQName(i);
    const bool hasName = xml::isDeclarationName(qName);
    std::string prefix(hasName ? xml::declaredPrefix(qName) : attributes.getLocalName(i));
    if (!hasName && prefix == "xmlns") prefix.clear();
    const std::string& uri = attributes.getValue(i);
    if (document_.declared.contains(prefix) && document_.bindings.find(prefix) == uri) continue;
    newPrefixes_.push_back(std::move(prefix));
    try {
      declare(newPrefixes_.back(), uri);
    } catch (...) {
      newPrefixes_.pop_back();
      throw;
    }
  }
}

// --- Elements ---

void XMLWriter_X891::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Attributes& attributes) {
  encoder_->attempt([&](Encoder& encoder) {
    Encoder::Document& document = encoder.document_;
    const std::size_t depth = elements_.size();
    if (depth >= encoder.maximumDepth_) throw SAXException(tooDeep(encoder.maximumDepth_));
    const std::size_t declared = encoder.namespaces_.size();
    encoder.newPrefixes_.clear();
    try {
      const bool mayBegin = state_ == Prolog || state_ == AfterDTD;
      if (mayBegin && !document.childrenBegan) encoder.prepareVocabulary();
      if (state_ == InElement) {
        encoder.stack_.push(elements_, uri, localName, qName);
        hasContent_ = false;
      } else {
        XMLWriter::startElement(uri, localName, qName, attributes);
      }
      encoder.perform([&] { encoder.encodeStartTag({uri, localName, qName}, attributes); });
    } catch (...) {
      while (elements_.size() > depth) elements_.pop_back();
      if (encoder.namespaces_.size() > declared) encoder.namespaces_.resize(declared);
      for (const std::string& prefix : encoder.newPrefixes_) document.declared.erase(prefix);
      document.bindings.undo(encoder.newPrefixes_.size());
      throw;
    }
    if (!document.declared.empty()) document.declared.clear();
  });
}

void XMLWriter_X891::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qName) {
  encoder_->attempt([&](Encoder& encoder) {
    Encoder::Document& document = encoder.document_;
    if (state_ == InElement && !document.declared.empty()) {
      throw SAXException("A prefix mapping needs an element");
    }
    const std::size_t depth = elements_.size();
    try {
      if (depth > 1 && state_ == InElement &&
          xml::ElementStack::hasLast(elements_, uri, localName, qName)) {
        encoder.stack_.pop(elements_);
        hasContent_ = true;
      } else {
        XMLWriter::endElement(uri, localName, qName);
      }
      encoder.finishElement();
    } catch (...) {
      encoder.isWriting_ = elements_.size() < depth;  // Otherwise it was refused.
      throw;
    }
    document.bindings.undo(document.openElements.back().declarations);
    document.openElements.pop_back();
    if (depth > 1) document.textElement = document.openElements.back().name;
  });
}

/// Checks a whole start tag, and finds its names in the tables.
void XMLWriter_X891::Encoder::prepareStartTag(const EventName& name, const Attributes& attributes) {
  if (!encodedValues_.empty()) encodedValues_.clear();
  newOctets_ = 0;
  newEntries_ = 0;
  classifyAttributes(attributes);
  if (!declarations_.empty()) declareByAttributes(attributes);
  elementIndex_ = findElementName(name);
  checkAttributes(attributes);
  for (const std::string& part : namespaces_) newOctets_ += part.size();
  checkTableOctets(newOctets_, newEntries_ + namespaces_.size());
}

void XMLWriter_X891::Encoder::encodeStartTag(const EventName& name, const Attributes& attributes) {
  prepareStartTag(name, attributes);
  document_.openElements.push_back({document_.declared.size(), kNoIndex});
  isWriting_ = true;
  if (!document_.childrenBegan) beginChildren(*header_);
  flushCharacters();
  flushTerminator(false);

  const bool hasAttributes = !attributes_.empty();
  if (out_) {
    unsigned flag = hasAttributes ? kElementAttributes : 0;
    if (!namespaces_.empty()) {
      put(kNamespacesFollow | flag);
      encodeNamespaces(namespaces_);
      flag = 0;  // It was in the octet before the declarations.
    }
    if (elementIndex_ != kNoIndex) {
      writeInteger(kElementIndex, flag, elementIndex_);
    } else {
      elementIndex_ = encodeUnlistedName(kLiteralElementName | flag, kElementNames, name.parts(),
                                         elementHash_, elementRecords_);
    }
    document_.openElements.back().name = document_.textElement = elementIndex_;
    if (hasAttributes) encodeAttributes(attributes);
  }
  namespaces_.clear();
  // The end of the attributes may share an octet with the end of the element.
  pendingTerminator = hasAttributes;
}

// --- Names ---

namespace {

/// The qualified name, which an event may omit where there is no prefix.
const std::string& spelling(const EventName& name) {
  return name.qName.empty() ? name.localName : name.qName;
}

}  // namespace

unsigned XMLWriter_X891::Encoder::findElementName(const EventName& name) {
  const auto& [uri, localName, qName] = name;
  document_.attributes.beginTag();
  if (const unsigned* const known = known_.elements.find(uri, localName, qName)) {
    checkKnownElementName(name, *known);
    return *known;
  }
  const NameView parts = name.parts();
  elementHash_ = {};
  const unsigned* const found = names(kElementNames).find(parts, elementHash_);
  const unsigned index = found ? *found : kNoIndex;
  checkElementName(name, parts, index);
  if (found) known_.elements.put(uri, localName, qName, index);
  return index;
}

/// Checks the parts of a name that is in no table.
void XMLWriter_X891::Encoder::checkNewName(const NameView& name) {
  const auto& [prefix, uri, localName] = name;
  const std::uint64_t parts = prefix.size() + uri.size() + localName.size();
  newOctets_ += kNameCopies * parts + kNameOctets + localName.size();
  ++newEntries_;  // The local name.
  checkNCName(localName);
  if (!prefix.empty()) checkNCName(prefix);
}

// A name that is in a table is checked again only where other declarations are in force.

void XMLWriter_X891::Encoder::checkKnownElementName(const EventName& name, unsigned index) {
  const xml::NamespaceBindings& bindings = document_.bindings;
  ElementRecord& record = elementRecords_.at(index);
  if (record.bindings == bindings.version()) return;
  xml::refuseIf(xml::whyNotElement(name.prefix(), &name.uri, spelling(name), bindings));
  if (record.bindings == 0) elementRecords_.use(index);
  record.bindings = bindings.version();
}

void XMLWriter_X891::Encoder::checkElementName(const EventName& name, const NameView& parts,
                                               unsigned index) {
  const std::string& qName = spelling(name);
  xml::refuseUnlessLocalName(parts.prefix, name.localName, qName);
  if (index != kNoIndex) return checkKnownElementName(name, index);
  checkNewName(parts);
  xml::refuseIf(xml::whyNotElement(parts.prefix, &name.uri, qName, document_.bindings));
}

void XMLWriter_X891::Encoder::checkAttributeName(const EventName& name, const NameView& parts,
                                                 unsigned index) {
  const xml::NamespaceBindings& bindings = document_.bindings;
  const std::string& qName = spelling(name);
  xml::refuseUnlessLocalName(parts.prefix, name.localName, qName);
  AttributeRecord fresh;
  AttributeRecord& record = index != kNoIndex ? attributeRecords_.at(index) : fresh;
  if (index == kNoIndex) checkNewName(parts);
  if (record.bindings != bindings.version()) {
    xml::refuseIf(xml::whyNotAttribute(parts.prefix, &name.uri, qName, bindings));
    if (index != kNoIndex && record.bindings == 0) attributeRecords_.use(index);
    record.bindings = bindings.version();
  }
  // Those that are new are compared later.
  const bool isLater = index == kNoIndex && name.uri.empty();
  if (!isLater && !isFirst(name, record)) throw SAXException(xml::givenTwice(qName));
}

/// Whether a name is the first with its namespace name and local name in the tag. Without a
/// namespace, it is the only one with these.
bool XMLWriter_X891::Encoder::isFirst(const EventName& name, AttributeRecord& record) {
  xml::UniqueAttributes& unique = document_.attributes;
  if (name.uri.empty()) return unique.isFirst(record.lastTag);
  if (record.number == xml::UniqueAttributes::kUnknown) {
    record.number = unique.number(name.uri, name.localName);
  }
  return unique.take(record.number);
}

/// Checks that no other new name without a namespace is the same as the last one. The few of most
/// tags are compared with each other, as a search would add each to a table first.
void XMLWriter_X891::Encoder::checkNewAttribute(const Attributes& attributes, std::size_t number,
                                                const std::string& localName) {
  constexpr std::size_t kFew = 16;
  const int position = attributes_[number].position;
  bool isGiven = false;
  if (attributes_.size() > kFew) {
    xml::UniqueAttributes& unique = document_.attributes;
    isGiven = !unique.take(unique.number({}, localName));
  } else if (number > 0) {
    // The references that a list returns may be valid only until its next call.
    localName_ = localName;
    isGiven = std::any_of(
        attributes_.begin(), attributes_.begin() + static_cast<std::ptrdiff_t>(number),
        [&](const CheckedAttribute& other) {
          return other.index == kNoIndex && attributes.getLocalName(other.position) == localName_ &&
                 attributes.getURI(other.position).empty();
        });
  }
  if (!isGiven) return;
  const std::string& qName = attributes.getQName(position);
  throw SAXException(xml::givenTwice(qName.empty() ? attributes.getLocalName(position) : qName));
}

// --- Attributes ---

/// Whether an attribute declares a namespace. The qualified name decides; the namespace counts only
/// where there is no qualified name. Otherwise a contradiction of the two would not be found.
static bool isDeclaration(const Attributes& attributes, int index) {
  const std::string& qName = attributes.getQName(index);
  return xml::isDeclarationName(qName) || (qName.empty() && isInXmlns(attributes, index));
}

/// Separates attributes from declarations, whose names are never known.
void XMLWriter_X891::Encoder::classifyAttributes(const Attributes& attributes) {
  attributes_.clear();
  declarations_.clear();
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const unsigned* const known = known_.attributes.find(
        attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
    if (known != nullptr) {
      attributes_.push_back({i, *known, kNoIndex, true});
    } else if (isDeclaration(attributes, i)) {
      declarations_.push_back(i);
    } else {
      attributes_.push_back({i, kNoIndex, kNoIndex, false});
    }
  }
}

/// Checks the name of an attribute, and finds it in the table.
void XMLWriter_X891::Encoder::prepareAttributeName(const Attributes& attributes,
                                                   std::size_t number) {
  auto& [i, index, valueIndex, isKnown, nameHash, valueHash] = attributes_[number];
  const EventName name = {attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i)};
  if (isKnown) {  // It has been checked, so that it has a record.
    AttributeRecord& record = attributeRecords_[index];
    if (record.bindings == document_.bindings.version() && isFirst(name, record)) return;
  }
  const NameView parts = name.parts();
  const unsigned* const found = isKnown ? &index : names(kAttributeNames).find(parts, nameHash);
  if (found != nullptr) index = *found;
  checkAttributeName(name, parts, index);
  if (found == nullptr) {
    if (name.uri.empty()) checkNewAttribute(attributes, number, name.localName);
  } else if (!isKnown) {
    known_.attributes.put(name.uri, name.localName, name.qName, index);
  }
}

/// Checks the attributes, and finds their names and values in the tables.
void XMLWriter_X891::Encoder::checkAttributes(const Attributes& attributes) {
  if (attributes_.empty()) return;
  const EncodingAlgorithmAttributes* const typed = findTypedForm(attributes, known_.untyped);
  for (std::size_t number = 0; number < attributes_.size(); ++number) {
    prepareAttributeName(attributes, number);
    auto& [i, index, valueIndex, isKnown, nameHash, valueHash] = attributes_[number];
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      checkTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
      continue;
    }
    const std::string& value = attributes.getValue(i);
    if (value.empty()) continue;  // It has a form of its own, without an index.
    const unsigned* const found = strings(kAttributeValues).find(value, valueHash);
    if (found != nullptr) valueIndex = *found;
    checkValue(value, valueIndex);
  }
}

void XMLWriter_X891::Encoder::encodeAttributes(const Attributes& attributes) {
  const EncodingAlgorithmAttributes* const typed = findTypedForm(attributes, known_.untyped);
  const unsigned positions = strings(kAttributeValues).positions();
  for (auto& [i, index, valueIndex, isKnown, nameHash, valueHash] : attributes_) {
    if (index != kNoIndex) {
      encodeIndex(0, index);
    } else {
      // None of the attributes before it has added it: it would be given twice.
      const EventName name = {attributes.getURI(i), attributes.getLocalName(i),
                              attributes.getQName(i)};
      index = encodeUnlistedName(kLiteralAttributeName, kAttributeNames, name.parts(), nameHash,
                                 attributeRecords_);
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      encodeTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
      continue;
    }
    ValueTally& tally = tallyOf(attributeRecords_, index);
    const auto refer = [&](unsigned tableIndex) {
      if (isAdaptive_) tally.count(true);
      encodeIndex(kStringIndex, tableIndex);
    };
    if (valueIndex != kNoIndex) {
      refer(valueIndex);
      continue;
    }
    const std::string& value = attributes.getValue(i);
    StringIndexMap& values = strings(kAttributeValues);
    // An attribute before it may have added it.
    const bool mayBeKnown = values.positions() != positions && !value.empty();
    if (const unsigned* const added = mayBeKnown ? values.find(value, valueHash) : nullptr) {
      refer(*added);
    } else {
      encodeNewString(kAttributeValues, !value.empty() && addsNew(kAttributeValues, value, tally),
                      value, valueHash);
    }
  }
}

/// Writes a name that has been checked and is not in its table, and adds it.
/// @return its index, or kNoIndex where the table is full
template <typename Record>
unsigned XMLWriter_X891::Encoder::encodeUnlistedName(unsigned bits, unsigned table,
                                                     const NameView& name, KeyHash hash,
                                                     NameRecords<Record>& records) {
  const unsigned index = names(table).positions();
  encodeNewName(bits, table, name, hash);
  if (names(table).positions() == index) return kNoIndex;
  records.at(index).bindings = document_.bindings.version();
  records.use(index);
  return index;
}

/// Whether a value or chunk that is not in its table is added. It is counted.
bool XMLWriter_X891::Encoder::addsNew(unsigned table, const std::string& text, ValueTally& tally) {
  if (!isIndexed(table, text)) return false;
  if (!isAdaptive_) return true;
  const bool adds = tally.adds();
  tally.count(false);
  return adds;
}

void XMLWriter_X891::Encoder::checkValue(const std::string& value, unsigned index) const {
  // Values that the document added to the table have been checked; those of an external vocabulary
  // have not.
  if (index != kNoIndex && index >= document_.loadedValues) return;
  if (!xml::isEasyText(value) || value.size() > kLongestString) {
    checkText(value, "an attribute value");
  }
}

}  // namespace Tavrin
