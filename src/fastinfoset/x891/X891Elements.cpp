#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include "../../sax/AtLimit.h"
#include "../../xml/AddDeclaration.h"
#include "../../xml/simd/EasyText.h"
#include "../format/Octets.h"
#include "Checks.h"
#include "WrittenVocabulary.h"
#include "X891Encoder.h"

// Elements and namespace declarations. A start tag is checked as a whole before any of it is
// written.

namespace Tavrin {

using namespace fastinfoset;

// --- Namespace declarations ---

void XMLWriter_X891::Encoder::startPrefixMapping(const std::string& prefix,
                                                 const std::string& uri) {
  attempt([&] {
    if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
      throw SAXException("You cannot start a prefix mapping at this point");
    }
    declare(prefix, uri);
  });
}

void XMLWriter_X891::Encoder::declare(const std::string& prefix, const std::string& uri) {
  Document& document = document_;
  const std::string reason =
      xml::whyNotDeclarable(prefix, uri, xmlVersion_ && *xmlVersion_ == "1.1");
  if (!reason.empty()) throw SAXException(reason);
  if (!prefix.empty()) checkNCName(prefix);
  checkText(uri, "a namespace name");
  if (document.declared.contains(prefix)) {
    throw SAXException("The prefix \"" + prefix + "\" is declared twice");
  }
  const std::size_t written = namespaces_.size();
  const std::size_t bound = document.bindings.count();
  const auto declared = document.declared.insert(prefix).first;
  try {
    document.bindings.declare(prefix, uri);
    // The built-in declaration is never written (X.891, 7.2.21 and 7.2.22).
    if (prefix != "xml") addDeclaration(namespaces_, prefix, uri);
  } catch (...) {
    namespaces_.resize(written);
    document.bindings.undo(document.bindings.count() - bound);
    document.declared.erase(declared);
    throw;
  }
}

/// The qualified name tells, and the namespace only where there is none: otherwise it would be
/// passed over that the two do not fit.
bool XMLWriter_X891::Encoder::isDeclaration(const Attributes& attributes, int index) {
  const std::string& qName = attributes.getQName(index);
  return xml::isDeclarationName(qName) || (qName.empty() && isInXmlns(attributes, index));
}

/// Takes attributes for declarations of which startPrefixMapping did not tell.
void XMLWriter_X891::Encoder::takeDeclarations(const Attributes& attributes,
                                               const std::vector<int>& declarations) {
  const Document& document = document_;
  for (const int i : declarations) {
    const std::string& qName = attributes.getQName(i);
    const bool hasName = xml::isDeclarationName(qName);
    std::string prefix(hasName ? xml::declaredPrefix(qName) : attributes.getLocalName(i));
    if (!hasName && prefix == "xmlns") prefix.clear();
    const std::string& uri = attributes.getValue(i);
    const bool isTold = document.declared.contains(prefix) && document.bindings.find(prefix) == uri;
    if (isTold) continue;
    std::vector<std::string>& taken = taken_;
    taken.push_back(std::move(prefix));
    try {
      declare(taken.back(), uri);
    } catch (...) {
      taken.pop_back();
      throw;
    }
  }
}

// --- Elements ---

void XMLWriter_X891::Encoder::startElement(const std::string& uri, const std::string& localName,
                                           const std::string& qName, const Attributes& attributes) {
  attempt([&] {
    Document& document = document_;
    const std::size_t depth = elements_.size();
    if (depth >= maximumDepth_) throw SAXException(tooDeep(maximumDepth_));
    const std::size_t told = namespaces_.size();
    if (!encodedValues_.empty()) encodedValues_.clear();
    taken_.clear();
    newOctets_ = 0;
    newEntries_ = 0;
    try {
      const bool mayBegin = state_ == Prolog || state_ == AfterDTD;
      if (mayBegin && !document.childrenBegan) headerVocabulary_ = prepareVocabulary();
      writer_.XMLWriter::startElement(uri, localName, qName, attributes);
      perform([&] { encodeStartTag({uri, localName, qName}, attributes); });
    } catch (...) {
      while (elements_.size() > depth) elements_.pop_back();
      if (namespaces_.size() > told) namespaces_.resize(told);
      for (const std::string& prefix : taken_) document.declared.erase(prefix);
      document.bindings.undo(taken_.size());
      throw;
    }
    if (!document.declared.empty()) document.declared.clear();
  });
}

/// All of the tag was looked at. The first one brings the header.
void XMLWriter_X891::Encoder::beginTag() {
  Document& document = document_;
  for (const std::string& part : namespaces_) newOctets_ += part.size();
  checkRoom(newOctets_, newEntries_ + namespaces_.size());
  document.declaredCount.push_back(document.declared.size());
  isWriting_ = true;
  if (!document.childrenBegan) beginChildren(headerVocabulary_);
}

void XMLWriter_X891::Encoder::endElement(const std::string& uri, const std::string& localName,
                                         const std::string& qName) {
  attempt([&] {
    Document& document = document_;
    if (state_ == InElement && !document.declared.empty()) {
      throw SAXException("A prefix mapping needs an element");
    }
    const std::size_t depth = elements_.size();
    try {
      writer_.XMLWriter::endElement(uri, localName, qName);
      finishElement();
    } catch (...) {
      isWriting_ = elements_.size() < depth;  // Else, it was refused.
      throw;
    }
    document.bindings.undo(document.declaredCount.back());
    document.declaredCount.pop_back();
  });
}

// --- Names ---

namespace {

/// Whether a qualified name is that of these parts.
bool isSpelling(const std::string& qName, std::string_view prefix, const std::string& localName) {
  if (prefix.empty()) return qName == localName || qName.empty();
  return qName.size() == prefix.size() + 1 + localName.size() && qName.ends_with(localName);
}

/// The record of a position in a table.
template <typename Record>
Record& recordAt(std::vector<Record>& records, std::size_t position) {
  if (position >= records.size()) records.resize(position + position / 2 + 1);
  return records[position];
}

}  // namespace

void XMLWriter_X891::Encoder::checkPrefix(std::string_view prefix, const std::string& uri) const {
  const std::string& bound = document_.bindings.find(prefix);
  if (bound == uri && !(bound.empty() && !prefix.empty())) return;
  if (bound.empty() && !prefix.empty()) missingNamePart(std::string(prefix), "prefix");
  if (bound.empty()) missingNamePart(uri, "namespace");
  if (prefix.empty()) {
    throw SAXException("The default namespace is \"" + bound + "\", not \"" + uri + "\"");
  }
  throw SAXException("The prefix \"" + std::string(prefix) + "\" is bound to \"" + bound +
                     "\", not to \"" + uri + "\"");
}

/// Looks at the parts of a name that is in no table.
void XMLWriter_X891::Encoder::takeNewName(const EventName& name) {
  const std::string_view prefix = name.prefix();
  const std::uint64_t parts = prefix.size() + name.uri.size() + name.localName.size();
  newOctets_ += kNameCopies * parts + kNameOctets + name.localName.size();
  ++newEntries_;  // The local name.
  checkNCName(name.localName);
  if (!prefix.empty()) checkNCName(prefix);
}

// A name that is in a table is looked at again only where other declarations are in force.

void XMLWriter_X891::Encoder::checkElementName(const EventName& name, unsigned index,
                                               bool isKnown) {
  Document& document = document_;
  document.attributes.beginTag();
  if (!isKnown && !isSpelling(name.qName, name.prefix(), name.localName)) refuseSpelling(name);
  if (index == kNoIndex) {
    takeNewName(name);
    checkPrefix(name.prefix(), name.uri);
    return;
  }
  std::uint64_t& bindings = recordAt(document.elementBindings, index);
  if (bindings == document.bindings.version()) return;
  checkPrefix(name.prefix(), name.uri);
  bindings = document.bindings.version();
}

void XMLWriter_X891::Encoder::checkAttributeName(const EventName& name, unsigned index,
                                                 bool isKnown) {
  Document& document = document_;
  if (isKnown) {  // It was looked at, and has a record.
    const AttributeRecord& record = document.attributeRecords[index];
    if (record.bindings == document.bindings.version() && document.attributes.take(record.number)) {
      return;
    }
  }
  if (!isKnown && !isSpelling(name.qName, name.prefix(), name.localName)) refuseSpelling(name);
  if (!isKnown && name.localName == "xmlns" && name.prefix().empty()) {
    throw SAXException("An attribute with the name \"xmlns\" is a namespace declaration");
  }
  AttributeRecord fresh;
  AttributeRecord& record = index != kNoIndex ? recordAt(document.attributeRecords, index) : fresh;
  if (index == kNoIndex) takeNewName(name);
  if (record.bindings != document.bindings.version()) {
    const std::string_view prefix = name.prefix();
    if (!prefix.empty()) {
      checkPrefix(prefix, name.uri);
    } else if (!name.uri.empty()) {
      throw SAXException("The attribute \"" + name.localName + "\" has the namespace \"" +
                         name.uri + "\", but no prefix");
    }
    record.bindings = document.bindings.version();
  }
  if (record.number == xml::UniqueAttributes::kUnknown) {
    record.number = document.attributes.number(name.uri, name.localName);
  }
  if (!document.attributes.take(record.number)) {
    throw SAXException("The attribute \"" + name.localName + "\" stands twice in a start tag");
  }
}

void XMLWriter_X891::Encoder::refuseSpelling(const EventName& name) {
  checkNCName(name.localName);
  throw SAXException("The qualified name \"" + name.qName +
                     "\" does not belong to the local name \"" + name.localName + "\"");
}

// --- Values ---

void XMLWriter_X891::Encoder::checkValue(const std::string& value, unsigned index) const {
  // What the document itself brought into the table was looked at then; an external vocabulary may
  // hold anything.
  if (index != kNoIndex && index >= document_.loadedValues) return;
  if (!xml::isEasyText(value) || value.size() > kLongestString) {
    checkText(value, "an attribute value");
  }
}

void XMLWriter_X891::Encoder::checkTypedValue(const std::string& uri, int index,
                                              const EncodedData& data) {
  EncodingAlgorithm& algorithm = algorithmFor(uri, index);
  if (!isBuiltIn(uri, index)) {
    // It may give any text, and whoever reads the attribute may ask for it.
    checkText(data.toString(), "an attribute value");
    encodedValues_.push_back(encodedBy(algorithm, uri, false, data));
    return;
  }
  if (index == algorithms::cdata) {
    throw SAXException("The cdata algorithm cannot encode an attribute value");
  }
  checkBuiltIn(index, data);
}

void XMLWriter_X891::Encoder::encodeTypedValue(const std::string& uri, int index,
                                               const EncodedData& data) {
  if (isBuiltIn(uri, index)) {
    if (checkBuiltIn(index, data) == 0) {
      put(kEmptyString);
    } else {
      sendOctets();
      algorithmFor(uri, index).encodeToOutputStream(false, data, *out_);
    }
    return;
  }
  const std::string octets = std::move(encodedValues_.front());
  encodedValues_.pop_front();
  if (octets.empty()) {
    put(kEmptyString);
  } else {
    putAlgorithm(false, fieldOf(uri, index), octets.size());
    putOctets(octets);
  }
}

}  // namespace Tavrin
