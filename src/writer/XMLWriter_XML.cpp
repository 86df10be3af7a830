#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <cstddef>

namespace Tavrin {

namespace {

constexpr std::size_t kIndentWidth = 2;

std::string_view textEscape(char c) {
  switch (c) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    default:
      return {};
  }
}

// Values stand between apostrophes. A line feed would be read back as a space.
std::string_view attributeEscape(char c) {
  switch (c) {
    case '<':
      return "&lt;";
    case '&':
      return "&amp;";
    case '\'':
      return "&apos;";
    case '\n':
      return "&#xA;";
    default:
      return {};
  }
}

std::string lineBreak(std::size_t depth) {
  return std::string(1, '\n').append(kIndentWidth * depth, ' ');
}

void writeTo(std::ostream& out, std::string_view text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

/// Writes text in runs between the characters for which there is an escape.
template <typename Escape>
void writeEscaped(std::ostream& out, std::string_view text, Escape escapeOf) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view escape = escapeOf(text[i]);
    if (escape.empty()) continue;
    if (i > begin) writeTo(out, text.substr(begin, i - begin));
    writeTo(out, escape);
    begin = i + 1;
  }
  if (begin < text.size()) writeTo(out, text.substr(begin));
}

}  // namespace

const XMLWriterType XMLWriter_XML::type_("XML", &XMLWriter_XML::create);

XMLWriter_XML::~XMLWriter_XML() = default;

std::unique_ptr<XMLWriter> XMLWriter_XML::create() { return std::make_unique<XMLWriter_XML>(); }

// --- Layout ---

/// Completes what the innermost container still leaves open before its first content.
void XMLWriter_XML::startChild() {
  if (!isWriting() || hasContent_) return;
  switch (state_) {
    case InElement:
      write(">");
      break;
    case InCDATA:
      write("<![CDATA[");
      break;
    case InDTD:
      write(" [");
      break;
    default:
      return;
  }
  hasContent_ = true;
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

bool XMLWriter_XML::isWriting() const { return out_ != nullptr; }

void XMLWriter_XML::write(std::string_view text) {
  if (out_) writeTo(*out_, text);
}

template <typename... Pieces>
void XMLWriter_XML::writeAll(const Pieces&... pieces) {
  (write(pieces), ...);
}

// --- Document, elements and content ---

void XMLWriter_XML::startDocument() {
  XMLWriter::startDocument();
  if (!xmlDeclaration_) return;
  write("<?xml version=\"1.0\" encoding=\"UTF-8\"");
  writeStandaloneDeclaration();
  write("?>");
}

void XMLWriter_XML::writeStandaloneDeclaration() {}

void XMLWriter_XML::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (!out_) return;
  namespaces_.push_back(prefix);
  namespaces_.push_back(uri);
}

void XMLWriter_XML::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Attributes& attributes) {
  startChild();
  indent();
  XMLWriter::startElement(uri, localName, qName, attributes);
  if (isWriting()) writeStartTag(uri, localName, qName, attributes);
  namespaces_.clear();
}

/// Writes a start tag without its ">", which startChild or endElement adds.
void XMLWriter_XML::writeStartTag(const std::string& /*uri*/, const std::string& /*localName*/,
                                  const std::string& qName, const Attributes& attributes) {
  writeAll("<", qName);
  for (std::size_t i = 0; i < namespaces_.size(); i += 2) {
    const std::string& prefix = namespaces_[i];
    writeAll(" xmlns", prefix.empty() ? "" : ":", prefix, "='", namespaces_[i + 1], "'");
  }
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    writeAll(" ", attributes.getQName(i), "='");
    writeEscaped(*out_, attributes.getValue(i), attributeEscape);
    write("'");
  }
}

void XMLWriter_XML::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qName) {
  const bool hadContent = hasContent_;
  XMLWriter::endElement(uri, localName, qName);
  if (hadContent) {
    indent();
    writeAll("</", qName, ">");
  } else if (emptyTags_) {
    write("/>");
  } else {
    completeEmptyStartTag();
    writeAll("</", qName, ">");
  }
}

/// By now the element is closed in the base. Behind the root no start tag is completed any more, so
/// an empty root comes out as `<r</r>`. Output compatibility: keep.
void XMLWriter_XML::completeEmptyStartTag() {
  hasContent_ = false;
  startChild();
}

void XMLWriter_XML::characters(const std::string& text) {
  startChild();
  XMLWriter::characters(text);
  if (!out_) return;
  if (state_ == InCDATA) {
    write(text);
  } else {
    writeEscaped(*out_, text, textEscape);
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
  writeAll("<?", target, " ", data, "?>");
}

// --- Features, flush and reset ---

bool* XMLWriter_XML::findFeature(const std::string& name) {
  if (name == features::autoIndent) return &autoIndent_;
  if (name == features::emptyTags) return &emptyTags_;
  if (name == features::xmlDeclaration) return &xmlDeclaration_;
  return nullptr;
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
void XMLWriter_XML::writeExternalIdentifier(Declared declared, const std::string& name,
                                            const std::string& publicId,
                                            const std::string& systemId) {
  const bool repeatsName = declared == Declared::Notation || declared == Declared::UnparsedEntity;
  if (!publicId.empty()) {
    writeAll(" PUBLIC \"", publicId, "\" \"", systemId, "\"");
    if (repeatsName) write(name);
  } else if (!systemId.empty()) {
    writeAll(" SYSTEM \"", systemId, "\"");
  }
}

void XMLWriter_XML::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  indent();
  XMLWriter::startDTD(name, publicId, systemId);
  writeAll("<!DOCTYPE ", name);
  writeExternalIdentifier(Declared::DocumentType, name, publicId, systemId);
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
  writeAll("  <!NOTATION ", name);
  writeExternalIdentifier(Declared::Notation, name, publicId, systemId);
  write(">");
}

void XMLWriter_XML::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId,
                                       const std::string& notationName) {
  startChild();
  indent();
  XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
  writeAll("  <!ENTITY ", name);
  writeExternalIdentifier(Declared::UnparsedEntity, name, publicId, systemId);
  writeAll(" NDATA ", notationName, ">");
}

void XMLWriter_XML::externalEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId) {
  startChild();
  indent();
  XMLWriter::externalEntityDecl(name, publicId, systemId);
  writeAll("  <!ENTITY ", name);
  writeExternalIdentifier(Declared::ParsedEntity, name, publicId, systemId);
  write(">");
}

void XMLWriter_XML::internalEntityDecl(const std::string& name, const std::string& value) {
  startChild();
  indent();
  XMLWriter::internalEntityDecl(name, value);
  writeAll("  <!ENTITY ", name, " \"", value, "\">");
}

void XMLWriter_XML::elementDecl(const std::string& name, const std::string& model) {
  startChild();
  indent();
  XMLWriter::elementDecl(name, model);
  writeAll("  <!ELEMENT ", name, " ", model, ">");
}

void XMLWriter_XML::attributeDecl(const std::string& eName, const std::string& aName,
                                  const std::string& type, const std::string& mode,
                                  const std::string& value) {
  startChild();
  indent();
  XMLWriter::attributeDecl(eName, aName, type, mode, value);
  writeAll("  <!ATTLIST ", eName, " ", aName, " ", type, " ");
  writeDefault(mode, value);
  write(">");
}

void XMLWriter_XML::writeDefault(const std::string& mode, const std::string& value) {
  writeAll(mode, " \"", value, "\"");
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
  writeAll("<!--", text, "-->");
}

}  // namespace Tavrin
