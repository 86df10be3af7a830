#include <Tavrin/XMLWriter_X891.h>

#include "../format/Octets.h"
#include "X891Encoder.h"

// How a start tag is looked at and written. What may be in it is in Elements.cpp.

namespace Tavrin {

using namespace fastinfoset;

void XMLWriter_X891::Encoder::encodeStartTag(const EventName& name, const Attributes& attributes) {
  recogniseAttributes(attributes);
  if (!declarations_.empty()) takeDeclarations(attributes, declarations_);
  const unsigned index = takeElementName(name);
  takeAttributes(attributes);
  beginTag();
  flushCharacters();
  flushTerminator(false);

  const bool hasAttributes = !attributes_.empty();
  if (out_) {
    unsigned flag = hasAttributes ? kElementAttributes : 0;
    if (!namespaces_.empty()) {
      put(kNamespacesFollow | flag);
      encodeNamespaces(namespaces_);
      flag = 0;  // The octet in front of the declarations carried it.
    }
    if (index != kNoIndex) {
      putInteger(kElementIndex, flag, index);
    } else {
      writeQualifiedName(static_cast<int>(kLiteralElementName | flag), vocabulary_.elementNames,
                         elementName_);
    }
    if (hasAttributes) encodeTakenAttributes(attributes);
  }
  namespaces_.clear();
  // The end of the attributes is owed; it may share an octet with the end of the element.
  pendingTerminator_ = hasAttributes;
}

// --- Names and attributes ---

unsigned XMLWriter_X891::Encoder::takeElementName(const EventName& name) {
  const auto& [uri, localName, qName] = name;
  if (const unsigned* const known = known_.elements.find(uri, localName, qName)) {
    checkElementName(name, *known, true);
    return *known;
  }
  assignName(elementName_, name);
  const unsigned* const found = vocabulary_.elementNames.find(elementName_);
  const unsigned index = found ? *found : kNoIndex;
  checkElementName(name, index, false);
  if (found) known_.elements.put(uri, localName, qName, index);
  return index;
}

const EncodingAlgorithmAttributes* XMLWriter_X891::Encoder::typedForm(
    const Attributes& attributes) {
  return findTypedForm(attributes, known_.untyped);
}

/// Tells attributes from declarations. A name that is known is that of no declaration.
void XMLWriter_X891::Encoder::recogniseAttributes(const Attributes& attributes) {
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

/// Looks at attributes before anything of the tag is written: refuses what cannot be, and looks up
/// their names.
void XMLWriter_X891::Encoder::takeAttributes(const Attributes& attributes) {
  if (attributes_.empty()) return;
  const EncodingAlgorithmAttributes* const typed = typedForm(attributes);
  for (auto& [i, index, valueIndex, isKnown] : attributes_) {
    const EventName name = {attributes.getURI(i), attributes.getLocalName(i),
                            attributes.getQName(i)};
    if (!isKnown) {
      assignName(name_, name);
      if (const unsigned* const found = vocabulary_.attributeNames.find(name_)) index = *found;
    }
    checkAttributeName(name, index, isKnown);
    if (!isKnown && index != kNoIndex) {
      known_.attributes.put(name.uri, name.localName, name.qName, index);
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      checkTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
      continue;
    }
    const std::string& value = attributes.getValue(i);
    if (value.empty()) continue;  // It is written as itself.
    if (const unsigned* const found = vocabulary_.attributeValues.find(value)) valueIndex = *found;
    checkValue(value, valueIndex);
  }
}

void XMLWriter_X891::Encoder::encodeTakenAttributes(const Attributes& attributes) {
  const EncodingAlgorithmAttributes* const typed = typedForm(attributes);
  StringIndexMap& values = vocabulary_.attributeValues;
  const unsigned lookedUp = values.positions();
  for (const auto& [i, index, valueIndex, isKnown] : attributes_) {
    if (index != kNoIndex) {
      encodeIndex(0, index);
    } else {
      encodeNewAttributeName(
          {attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i)});
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      encodeTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
    } else if (valueIndex != kNoIndex) {
      encodeIndex(kStringIndex, valueIndex);
    } else {
      const std::string& value = attributes.getValue(i);
      const bool add = isIndexed(values, value);
      if (values.positions() == lookedUp) {
        writeNewString(add ? &values : nullptr, value);
      } else {
        writeString(&values, add, value);  // It may have come since, in this very tag.
      }
    }
  }
  pendingTerminator_ = true;
}

/// Writes a name that was in no table when the tag began. The same one may have come since.
void XMLWriter_X891::Encoder::encodeNewAttributeName(const EventName& name) {
  assignName(name_, name);
  if (const unsigned* const index = vocabulary_.attributeNames.find(name_)) {
    encodeIndex(0, *index);
  } else {
    writeQualifiedName(kLiteralAttributeName, vocabulary_.attributeNames, name_);
  }
}

}  // namespace Tavrin
