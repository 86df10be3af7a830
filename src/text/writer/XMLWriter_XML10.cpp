#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML10.h>

#include "../../io/EventRoom.h"
#include "../../sax/AtLimit.h"
#include "../../sax/Properties.h"
#include "../../xml/Escapes.h"
#include "../../xml/Rules.h"
#include "XML10Composer.h"

// The writer, and its events except those of the document type.

namespace Tavrin {

using namespace std::string_view_literals;

const XMLWriterType XMLWriter_XML10::type_("XML10", &XMLWriter_XML10::create);

XMLWriter_XML10::XMLWriter_XML10() : composer_(std::make_unique<Composer>(*this)) {}

XMLWriter_XML10::~XMLWriter_XML10() = default;

std::unique_ptr<XMLWriter> XMLWriter_XML10::create() { return std::make_unique<XMLWriter_XML10>(); }

// --- Features and properties ---

void XMLWriter_XML10::setFeature(const std::string& name, bool value) {
  Composer& composer = *composer_;
  if (bool* const feature = text::findTextFeature(name, composer.autoIndent_, composer.emptyTags_,
                                                  composer.xmlDeclaration_)) {
    *feature = value;
  } else {
    XMLWriter::setFeature(name, value);
  }
}

bool XMLWriter_XML10::getFeature(const std::string& name) {
  Composer& composer = *composer_;
  const bool* const feature = text::findTextFeature(name, composer.autoIndent_, composer.emptyTags_,
                                                    composer.xmlDeclaration_);
  return feature != nullptr ? *feature : XMLWriter::getFeature(name);
}

template <typename Access>
bool XMLWriter_XML10::Composer::accessProperty(Access access) {
  return access(properties::documentXMLVersion, version_, std::string("1.0")) ||
         access(properties::standalone, standalone_) ||
         access(properties::indentWidth, indentWidth_, 2U) ||
         access(properties::maximumDepth, maximumDepth_, std::uint64_t{UINT64_MAX}) ||
         access(properties::quoteCharacter, quote_, '\'');
}

void XMLWriter_XML10::setProperty(const std::string& name, void* value) {
  if (name == properties::documentXMLVersion && value != nullptr) {
    xml::refuseIf(xml::whyNotVersion(*static_cast<const std::string*>(value)));
  }
  if (name == properties::quoteCharacter && value != nullptr) {
    const char quote = *static_cast<const char*>(value);
    if (quote != '\'' && quote != '"') {
      throw SAXException("Attribute values can stand in apostrophes or quotation marks only");
    }
  }
  const bool isKnown = composer_->accessProperty(PropertySetter{name, value});
  if (!isKnown) XMLWriter::setProperty(name, value);
}

void* XMLWriter_XML10::getProperty(const std::string& name) {
  void* value = nullptr;
  const bool isKnown = composer_->accessProperty(PropertyGetter{name, value});
  return isKnown ? value : XMLWriter::getProperty(name);
}

void XMLWriter_XML10::flush() {
  composer_->perform([](Composer& composer) {
    composer.startChild();
    for (Composer::Document::Open& element : composer.document_.open) element.isMixed = true;
    composer.document_.breaks.clear();
  });
}

void XMLWriter_XML10::reset() {
  XMLWriter::reset();
  composer_->namespaces_.clear();
  composer_->composed_.clear();
  composer_->document_ = {};
}

// --- Document and elements ---

void XMLWriter_XML10::startDocument() {
  composer_->perform([this](Composer& composer) {
    XMLWriter::startDocument();
    if (!composer.xmlDeclaration_) return;
    composer.write("<?xml version=\"1.0\" encoding=\"UTF-8\"");
    if (const std::optional<bool> standalone = composer.standalone_) {
      composer.write(" standalone=", *standalone ? "\"yes\"" : "\"no\"");
      composer.document_.isStandalone = *standalone;
    }
    composer.write("?>");
  });
}

void XMLWriter_XML10::endDocument() {
  composer_->perform([this](Composer&) {
    const bool hasElement = state_ != Prolog && state_ != AfterDTD;
    XMLWriter::endDocument();
    if (!hasElement) throw SAXException("You cannot end a document without an element");
  });
}

void XMLWriter_XML10::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  composer_->requireSound();
  if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
    throw SAXException("You cannot declare a namespace at this point");
  }
  xml::refuseIf(xml::whyNotDeclaration(prefix, uri));
  xml::addDeclaration(composer_->namespaces_, prefix, uri);
}

void XMLWriter_XML10::Composer::openElement(std::size_t declarations,
                                            text::XML10StartTag::Space space) {
  using Space = text::XML10StartTag::Space;
  bool isMixed = false;
  bool preservesSpace = space == Space::Preserve;
  if (!document_.open.empty()) {
    const Document::Open& parent = document_.open.back();
    isMixed = parent.isMixed;
    if (space == Space::Inherited) preservesSpace = parent.preservesSpace;
  }
  document_.open.push_back({declarations, document_.breaks.size(), isMixed, preservesSpace});
}

void XMLWriter_XML10::Composer::composeStartTag(const text::XML10StartTag::Element& tag) {
  Document& document = document_;
  const std::size_t declared = document.bindings.count();
  EventOctets octets(nullptr, composed_);
  const text::XML10StartTag::Space space =
      document.startTag.write(octets, tag, quote_, document.defaults, document.bindings);
  octets.write();
  openElement(document.bindings.count() - declared, space);
}

/// Writes a start tag of the most common kind while isDirect.
/// @return false for any other one: then nothing has changed
bool XMLWriter_XML10::Composer::startKnown(const text::XML10StartTag::Element& tag) {
  using Space = text::XML10StartTag::Space;
  Document& document = document_;
  const EventRoom room(writer_.out_);
  const bool isCommon = namespaces_.empty() && document.defaults.empty() && room.size() > 0;
  if (!isCommon || document.open.size() >= maximumDepth_) return false;
  char* end = room.begin();
  if (!writer_.hasContent_) *end++ = '>';
  Space space = Space::Inherited;
  end = document.startTag.copyKnown(end, room.end(), tag, quote_, document.bindings, space);
  if (end == nullptr) return false;
  openElement(0, space);
  try {
    stack_.push(writer_.elements_, tag.uri, tag.localName, tag.qName);
  } catch (...) {
    document.open.pop_back();
    throw;
  }
  writer_.hasContent_ = false;
  room.put(end);
  return true;
}

void XMLWriter_XML10::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Attributes& attributes) {
  const text::XML10StartTag::Element tag = {uri, localName, qName, attributes,
                                            composer_->namespaces_};
  if (composer_->isDirect() && composer_->startKnown(tag)) return;
  composer_->perform([&](Composer& composer) {
    const std::uint64_t maximumDepth = composer.maximumDepth_;
    if (elements_.size() >= maximumDepth) throw SAXException(tooDeep(maximumDepth));
    composer.startItem();
    XMLWriter::startElement(uri, localName, qName, attributes);
    composer.composeStartTag(tag);
    composer.namespaces_.clear();
  });
}

void XMLWriter_XML10::Composer::closeElement() {
  document_.bindings.undo(document_.open.back().declarations);
  document_.open.pop_back();
}

/// Writes an end tag while isDirect.
/// @return false where there is no room or the names are wrong: then nothing has changed
bool XMLWriter_XML10::Composer::endDirectly(const std::string& uri, const std::string& localName,
                                            const std::string& qName) {
  if (!xml::ElementStack::hasLast(writer_.elements_, uri, localName, qName)) return false;
  const EventRoom room(writer_.out_);
  const bool isEmpty = !writer_.hasContent_ && emptyTags_;
  const std::string_view name = qName;
  const std::string_view opening = writer_.hasContent_ ? "</"sv : "></"sv;
  char* const end = isEmpty ? copyPieces(room.begin(), room.end(), '/', '>')
                            : copyPieces(room.begin(), room.end(), opening, name, '>');
  if (end == nullptr) return false;
  // As XMLWriter::endElement does.
  writer_.hasContent_ = true;
  stack_.pop(writer_.elements_);
  if (writer_.elements_.empty()) writer_.state_ = AfterRoot;
  closeElement();
  room.put(end);
  return true;
}

void XMLWriter_XML10::endElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName) {
  if (composer_->isDirect() && composer_->endDirectly(uri, localName, qName)) return;
  composer_->perform([&](Composer& composer) {
    if (hasContent_) composer.indent(elements_.size() - 1);
    if (!hasContent_ && composer.emptyTags_) {
      composer.write("/>");
    } else {
      composer.write(hasContent_ ? "</" : "></", qName, ">");
    }
    XMLWriter::endElement(uri, localName, qName);
    composer.closeElement();
  });
}

// --- Content ---

void XMLWriter_XML10::Composer::writeText(std::string_view text) {
  const EventRoom room(writer_.out_);
  if (text.size() >= room.size()) return writeLongText(text);
  char* end = room.begin();
  if (!writer_.hasContent_) *end++ = '>';
  end = xml::kTextEscapes.copy(text, end, room.end());
  if (end == nullptr) return writeLongText(text);
  writer_.hasContent_ = true;
  room.put(end);
  forbidIndentation();
}

/// Likewise, if the stream's buffer may have no room for it.
void XMLWriter_XML10::Composer::writeLongText(std::string_view text) {
  // Text of at most this length is composed together with the ">" of the start tag before it.
  constexpr std::size_t kShort = 256;
  const bool isFirst = !writer_.hasContent_;
  const bool isWrittenAlone = !isFirst || text.size() > kShort;
  if (isWrittenAlone && xml::kTextEscapes.isVerbatim(text)) {
    writer_.hasContent_ = true;
    writeOrBreakOff([&] {
      if (writer_.out_ && isFirst) writeOctets(*writer_.out_, ">");
      if (writer_.out_) writeOctets(*writer_.out_, text);
    });
  } else {
    EventOctets octets(writer_.out_, composed_);
    if (isFirst) octets.append('>');
    text::appendEscaped(octets, text, xml::kTextEscapes, "character data");
    writer_.hasContent_ = true;
    octets.write();
    commit();
  }
  forbidIndentation();
}

/// Writes into the CDATA section. hasContent_ states whether the section is open in the output.
void XMLWriter_XML10::Composer::writeSection(std::string_view text) {
  std::size_t begin = 0;
  const auto writeUpTo = [&](std::size_t end) {
    if (end == begin) return;
    startChild();
    write(text.substr(begin, end - begin));
    begin = end;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '>' && document_.brackets >= 2) {
      writeUpTo(i);
      write("]]><![CDATA[");
    } else if (c == '\r') {
      writeUpTo(i);
      if (writer_.hasContent_) endSection();
      write("&#xD;");
      writer_.hasContent_ = false;
      begin = i + 1;
    }
    document_.brackets = c == ']' ? document_.brackets + 1 : 0;
  }
  writeUpTo(text.size());
}

void XMLWriter_XML10::characters(const std::string& text) {
  if (composer_->isDirect()) return composer_->writeText(text);
  composer_->perform([&](Composer& composer) {
    if (state_ == InCDATA) {
      xml::refuseIf(xml::whyNotText(text, "a CDATA section"));
      composer.writeSection(text);
    } else {
      composer.startChild();
      XMLWriter::characters({});  // Checks the order.
      xml::appendText(composer.composed_, text, xml::kTextEscapes, "character data");
    }
    composer.forbidIndentation();
  });
}

void XMLWriter_XML10::ignorableWhitespace(const std::string& text) {
  composer_->perform([&](Composer& composer) {
    const bool inSection = state_ == InCDATA;
    const bool isOutside = composer.isOutsideInternalSubset();
    if (!inSection && !isOutside) composer.startChild();
    const bool hadContent = hasContent_;
    XMLWriter::ignorableWhitespace(text);
    if (inSection) {
      hasContent_ = hadContent;
      composer.writeSection(text);
    } else if (state_ == InElement) {
      xml::kTextEscapes.append(composer.composed_, text);
    } else if (!isOutside) {
      composer.write(text);
    }
    composer.forbidIndentation();
  });
}

void XMLWriter_XML10::startCDATA() {
  composer_->perform([this](Composer& composer) {
    composer.startChild();
    XMLWriter::startCDATA();
    composer.document_.brackets = 0;
    composer.forbidIndentation();
  });
}

void XMLWriter_XML10::endCDATA() {
  composer_->perform([this](Composer& composer) {
    const bool hadContent = hasContent_;
    XMLWriter::endCDATA();
    if (hadContent) composer.endSection();
  });
}

void XMLWriter_XML10::processingInstruction(const std::string& target, const std::string& data) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::processingInstruction(target, data);
    if (!isWritten) return;
    composer.writeInstruction(target, data);
    xml::refuseIf(xml::whyNotTarget(target));
    xml::refuseIf(xml::whyNotText(data, "a processing instruction"));
    xml::refuseIf(xml::whyNotInstructionData(data));
  });
}

void XMLWriter_XML10::comment(const std::string& text) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::comment(text);
    if (!isWritten) return;
    composer.writeComment(text);
    xml::refuseIf(xml::whyNotText(text, "a comment"));
    xml::refuseIf(xml::whyNotComment(text));
  });
}

}  // namespace Tavrin
