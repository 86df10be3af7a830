#include <Tavrin/XMLWriter_XML.h>

#include <cstddef>

#include "../../xml/Escapes.h"
#include "../../xml/AddDeclaration.h"
#include "TextFeatures.h"
#include "../../io/WriteOctets.h"

namespace Tavrin {

namespace {

constexpr std::size_t kIndentWidth = 2;

constexpr xml::Escapes kTextEscapes{{'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}};

// Values stand between apostrophes. A line feed would be read back as a space.
constexpr xml::Escapes kValueEscapes{
    {'<', "&lt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'\n', "&#xA;"}};

std::string lineBreak(std::size_t depth) {
  return std::string(1, '\n').append(kIndentWidth * depth, ' ');
}

}  // namespace

const XMLWriterType XMLWriter_XML::type_("XML", &XMLWriter_XML::create);

XMLWriter_XML::~XMLWriter_XML() = default;

std::unique_ptr<XMLWriter> XMLWriter_XML::create() { return std::make_unique<XMLWriter_XML>(); }

// --- Writing ---

/// Writes pieces at once: there is nothing between the writer and the stream. The buffer of a
/// stream is code of others, which may set another stream; where there is room, it is not called.
template <typename... Pieces>
void XMLWriter_XML::write(const Pieces&... pieces) {
  if (out_ == nullptr) return;
  if (isReady(*out_) && putIntoArea(*out_->rdbuf(), std::string_view(pieces)...)) return;
  const auto writeOne = [this](std::string_view piece) {
    if (out_ != nullptr && !piece.empty()) writeOctets(*out_, piece);
  };
  (writeOne(pieces), ...);
}

/// Writes a text in runs between the escapes, and what stands behind it.
void XMLWriter_XML::writeEscaped(const xml::Escapes& escapes, std::string_view text,
                                 std::string_view behind) {
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = escapes.find(text, begin);
    if (end == text.size()) break;
    write(text.substr(begin, end - begin), escapes.reference(text[end]));
    begin = end + 1;
  }
  write(text.substr(begin), behind);
}

// --- Layout ---

void XMLWriter_XML::startChild() {
  if (out_ == nullptr || hasContent_) return;
  const char* text = nullptr;
  if (state_ == InElement) text = ">";
  if (state_ == InCDATA) text = "<![CDATA[";
  if (state_ == InDTD) text = " [";
  if (text == nullptr) return;
  hasContent_ = true;
  write(text);
}

/// Breaks the line, if so wanted. The break is ignorable white space like any other, so it is
/// checked, and it counts as content.
void XMLWriter_XML::indent() {
  if (!autoIndent_) return;
  switch (state_) {
    case Prolog:
      if (xmlDeclaration_) ignorableWhitespace(lineBreak(0));
      break;
    case InDTD:
      ignorableWhitespace(lineBreak(1));
      break;
    case AfterDTD:
    case AfterRoot:
      ignorableWhitespace(lineBreak(0));
      break;
    case InElement:
      ignorableWhitespace(lineBreak(elements_.size()));
      break;
    case Initial:
    case InCDATA:
    case Ended:
      break;
  }
}

// --- Document, elements and content ---

void XMLWriter_XML::startDocument() {
  XMLWriter::startDocument();
  if (xmlDeclaration_) write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

void XMLWriter_XML::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (out_ != nullptr) addDeclaration(namespaces_, prefix, uri);
}

/// The start tag stays open: startChild or endElement completes it. Where the attributes are asked,
/// all that stands in front of the answer is in the stream.
void XMLWriter_XML::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Attributes& attributes) {
  startChild();
  indent();
  XMLWriter::startElement(uri, localName, qName, attributes);
  if (out_ != nullptr) {
    write("<", qName);
    for (std::size_t i = 0; i < namespaces_.size(); i += 2) {
      const std::string& prefix = namespaces_[i];
      write(" xmlns", prefix.empty() ? "" : ":", prefix, "='", namespaces_[i + 1], "'");
    }
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) {
      write(" ");
      write(attributes.getQName(i), "='");
      writeEscaped(kValueEscapes, attributes.getValue(i), "'");
    }
  }
  namespaces_.clear();
}

void XMLWriter_XML::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qName) {
  const bool hadContent = hasContent_;
  XMLWriter::endElement(uri, localName, qName);
  if (hadContent) {
    indent();
    write("</", qName, ">");
  } else if (emptyTags_) {
    write("/>");
  } else {
    // By now the element is closed in the base. Behind the root no start tag is completed any more,
    // so an empty root comes out as `<r</r>`. Output compatibility: keep.
    hasContent_ = false;
    startChild();
    write("</", qName, ">");
  }
}

void XMLWriter_XML::characters(const std::string& text) {
  startChild();
  XMLWriter::characters(text);
  if (out_ == nullptr) return;
  if (state_ == InCDATA) {
    write(text);
  } else {
    writeEscaped(kTextEscapes, text, "");
  }
}

void XMLWriter_XML::ignorableWhitespace(const std::string& text) {
  startChild();
  XMLWriter::ignorableWhitespace(text);
  write(text);
}

void XMLWriter_XML::processingInstruction(const std::string& target, const std::string& data) {
  startChild();
  indent();
  XMLWriter::processingInstruction(target, data);
  write("<?", target, " ", data, "?>");
}

// --- Features, flush and reset ---

bool* XMLWriter_XML::findFeature(const std::string& name) {
  return findTextFeature(name, autoIndent_, emptyTags_, xmlDeclaration_);
}

void XMLWriter_XML::setFeature(const std::string& name, bool value) {
  if (bool* feature = findFeature(name)) {
    *feature = value;
  } else {
    XMLWriter::setFeature(name, value);
  }
}

bool XMLWriter_XML::getFeature(const std::string& name) {
  if (const bool* feature = findFeature(name)) return *feature;
  return XMLWriter::getFeature(name);
}

void XMLWriter_XML::flush() { startChild(); }

void XMLWriter_XML::reset() {
  XMLWriter::reset();
  namespaces_.clear();
}

// --- Document type ---

/// Writes an external identifier (XML 1.0, production 75).
///
/// Behind a public identifier, notations and unparsed entities repeat their name. That is part of
/// the output that consumers have come to expect. Output compatibility: keep.
void XMLWriter_XML::writeExternalIdentifier(const std::string& publicId,
                                            const std::string& systemId,
                                            std::string_view repeatedName) {
  if (!publicId.empty()) {
    write(" PUBLIC \"", publicId, "\" \"", systemId, "\"", repeatedName);
  } else if (!systemId.empty()) {
    write(" SYSTEM \"", systemId, "\"");
  }
}

void XMLWriter_XML::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  indent();
  XMLWriter::startDTD(name, publicId, systemId);
  write("<!DOCTYPE ", name);
  writeExternalIdentifier(publicId, systemId, "");
}

void XMLWriter_XML::endDTD() {
  const bool hadContent = hasContent_;
  XMLWriter::endDTD();
  if (hadContent) {
    indent();
    write("]");
  }
  write(">");
}

void XMLWriter_XML::notationDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  startChild();
  indent();
  XMLWriter::notationDecl(name, publicId, systemId);
  write("  <!NOTATION ", name);
  writeExternalIdentifier(publicId, systemId, name);
  write(">");
}

void XMLWriter_XML::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId,
                                       const std::string& notationName) {
  startChild();
  indent();
  XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
  write("  <!ENTITY ", name);
  writeExternalIdentifier(publicId, systemId, name);
  write(" NDATA ", notationName, ">");
}

void XMLWriter_XML::externalEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId) {
  startChild();
  indent();
  XMLWriter::externalEntityDecl(name, publicId, systemId);
  write("  <!ENTITY ", name);
  writeExternalIdentifier(publicId, systemId, "");
  write(">");
}

void XMLWriter_XML::internalEntityDecl(const std::string& name, const std::string& value) {
  startChild();
  indent();
  XMLWriter::internalEntityDecl(name, value);
  write("  <!ENTITY ", name, " \"", value, "\">");
}

void XMLWriter_XML::elementDecl(const std::string& name, const std::string& model) {
  startChild();
  indent();
  XMLWriter::elementDecl(name, model);
  write("  <!ELEMENT ", name, " ", model, ">");
}

void XMLWriter_XML::attributeDecl(const std::string& eName, const std::string& aName,
                                  const std::string& type, const std::string& mode,
                                  const std::string& value) {
  startChild();
  indent();
  XMLWriter::attributeDecl(eName, aName, type, mode, value);
  write("  <!ATTLIST ", eName, " ", aName, " ", type, " ", mode, " \"", value, "\">");
}

// --- CDATA sections and comments ---

void XMLWriter_XML::startCDATA() {
  startChild();
  XMLWriter::startCDATA();
}

void XMLWriter_XML::endCDATA() {
  const bool hadContent = hasContent_;
  XMLWriter::endCDATA();
  if (hadContent) write("]]>");
}

void XMLWriter_XML::comment(const std::string& text) {
  startChild();
  indent();
  XMLWriter::comment(text);
  write("<!--", text, "-->");
}

}  // namespace Tavrin
