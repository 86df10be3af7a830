#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <cstddef>

#include "../xml/Escapes.h"
#include "WriteOctets.h"

namespace Tavrin {

namespace {

constexpr std::size_t kIndentWidth = 2;

constexpr xml::Escapes kTextEscapes{{'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}};

// Values stand between apostrophes. A line feed would be read back as a space.
constexpr xml::Escapes kValueEscapes{
    {'<', "&lt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'\n', "&#xA;"}};

// What one large event took is not kept for all the small ones.
constexpr std::size_t kKeptOctets = 1U << 20U;

std::string lineBreak(std::size_t depth) {
  return std::string(1, '\n').append(kIndentWidth * depth, ' ');
}

/// Hands over a text in runs between the escapes.
template <typename Write>
void escape(const xml::Escapes& escapes, std::string_view text, Write write) {
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = escapes.find(text, begin);
    if (end > begin) write(text.substr(begin, end - begin));
    if (end == text.size()) return;
    write(escapes.reference(text[end]));
    begin = end + 1;
  }
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

// Without a stream it goes nowhere: see send.
void XMLWriter_XML::write(std::string_view text) { composed_ += text; }

template <typename... Pieces>
void XMLWriter_XML::writeAll(const Pieces&... pieces) {
  (write(pieces), ...);
}

/// Composes an event and writes it in one piece: looking after a stream takes longer than
/// composing. Also where the event is refused: what stands in front of it was written.
template <typename Body>
void XMLWriter_XML::perform(Body body) {
  try {
    body();
  } catch (...) {
    send();
    throw;
  }
  send();
}

void XMLWriter_XML::send() {
  if (composed_.empty()) return;
  // Gone even when the stream throws.
  struct Clear {
    std::string& octets;
    ~Clear() {
      octets.clear();
      if (octets.capacity() > kKeptOctets) octets.shrink_to_fit();
    }
  } const clear{composed_};
  if (out_) writeOctets(*out_, composed_);
}

// --- Document, elements and content ---

void XMLWriter_XML::startDocument() {
  perform([&] {
    XMLWriter::startDocument();
    if (!xmlDeclaration_) return;
    write("<?xml version=\"1.0\" encoding=\"UTF-8\"");
    writeStandaloneDeclaration();
    write("?>");
  });
}

void XMLWriter_XML::writeStandaloneDeclaration() {}

void XMLWriter_XML::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (!out_) return;
  namespaces_.push_back(prefix);
  namespaces_.push_back(uri);
}

void XMLWriter_XML::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Attributes& attributes) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::startElement(uri, localName, qName, attributes);
    if (isWriting()) writeStartTag(uri, localName, qName, attributes);
    namespaces_.clear();
  });
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
    escape(kValueEscapes, attributes.getValue(i), [this](std::string_view run) { write(run); });
    write("'");
  }
}

void XMLWriter_XML::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qName) {
  perform([&] {
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
  });
}

/// By now the element is closed in the base. Behind the root no start tag is completed any more, so
/// an empty root comes out as `<r</r>`. Output compatibility: keep.
void XMLWriter_XML::completeEmptyStartTag() {
  hasContent_ = false;
  startChild();
}

void XMLWriter_XML::characters(const std::string& text) {
  perform([&] {
    startChild();
    XMLWriter::characters(text);
    if (!out_) return;
    if (state_ == InCDATA) {
      write(text);
    } else {
      writeText(text);
    }
  });
}

/// Text goes out in runs, without being copied.
void XMLWriter_XML::writeText(std::string_view text) {
  constexpr std::size_t kShort = 256;
  if (text.size() <= kShort && kTextEscapes.find(text, 0) == text.size()) return write(text);
  send();
  escape(kTextEscapes, text, [this](std::string_view run) { writeOctets(*out_, run); });
}

void XMLWriter_XML::ignorableWhitespace(const std::string& text) {
  perform([&] {
    startChild();
    XMLWriter::ignorableWhitespace(text);
    write(text);
  });
}

void XMLWriter_XML::processingInstruction(const std::string& target, const std::string& data) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::processingInstruction(target, data);
    writeAll("<?", target, " ", data, "?>");
  });
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

void XMLWriter_XML::flush() {
  perform([&] { startChild(); });
}

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
  perform([&] {
    indent();
    XMLWriter::startDTD(name, publicId, systemId);
    writeAll("<!DOCTYPE ", name);
    writeExternalIdentifier(Declared::DocumentType, name, publicId, systemId);
  });
}

void XMLWriter_XML::endDTD() {
  perform([&] {
    const bool hadContent = hasContent_;
    XMLWriter::endDTD();
    if (hadContent) {
      indent();
      write("]");
    }
    write(">");
  });
}

void XMLWriter_XML::notationDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::notationDecl(name, publicId, systemId);
    writeAll("  <!NOTATION ", name);
    writeExternalIdentifier(Declared::Notation, name, publicId, systemId);
    write(">");
  });
}

void XMLWriter_XML::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId,
                                       const std::string& notationName) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    writeAll("  <!ENTITY ", name);
    writeExternalIdentifier(Declared::UnparsedEntity, name, publicId, systemId);
    writeAll(" NDATA ", notationName, ">");
  });
}

void XMLWriter_XML::externalEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::externalEntityDecl(name, publicId, systemId);
    writeAll("  <!ENTITY ", name);
    writeExternalIdentifier(Declared::ParsedEntity, name, publicId, systemId);
    write(">");
  });
}

void XMLWriter_XML::internalEntityDecl(const std::string& name, const std::string& value) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::internalEntityDecl(name, value);
    writeAll("  <!ENTITY ", name, " \"", value, "\">");
  });
}

void XMLWriter_XML::elementDecl(const std::string& name, const std::string& model) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::elementDecl(name, model);
    writeAll("  <!ELEMENT ", name, " ", model, ">");
  });
}

void XMLWriter_XML::attributeDecl(const std::string& eName, const std::string& aName,
                                  const std::string& type, const std::string& mode,
                                  const std::string& value) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::attributeDecl(eName, aName, type, mode, value);
    writeAll("  <!ATTLIST ", eName, " ", aName, " ", type, " ");
    writeDefault(mode, value);
    write(">");
  });
}

void XMLWriter_XML::writeDefault(const std::string& mode, const std::string& value) {
  writeAll(mode, " \"", value, "\"");
}

// --- CDATA sections and comments ---

void XMLWriter_XML::startCDATA() {
  perform([&] {
    startChild();
    XMLWriter::startCDATA();
  });
}

void XMLWriter_XML::endCDATA() {
  perform([&] {
    const bool hadContent = hasContent_;
    XMLWriter::endCDATA();
    if (hadContent) write("]]>");
  });
}

void XMLWriter_XML::comment(const std::string& text) {
  perform([&] {
    startChild();
    indent();
    XMLWriter::comment(text);
    writeAll("<!--", text, "-->");
  });
}

}  // namespace Tavrin
