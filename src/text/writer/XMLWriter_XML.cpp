#include <Tavrin/XMLWriter_XML.h>

#include <cstddef>

#include "../../io/WriteOctets.h"
#include "../../xml/Escapes.h"
#include "../../xml/NamespaceBindings.h"
#include "Markup.h"

namespace Tavrin {

namespace {

constexpr std::size_t kIndentWidth = 2;

constexpr xml::Escapes kTextEscapes{{'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}};

// Values stand between apostrophes. A parser would read a line feed as a space.
constexpr xml::Escapes kValueEscapes{
    {'<', "&lt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'\n', "&#xA;"}};

/// Writes pieces into the stream at once. The buffer of the stream may be code of the application,
/// which may set another stream; where its put area is large enough, it is not called.
class Output : public text::Markup<Output> {
 public:
  explicit Output(std::ostream* const& out) : out_(out) {}

  template <typename... Pieces>
  void write(const Pieces&... pieces) {
    if (out_ == nullptr) return;
    if (isReady(*out_) && putIntoArea(*out_->rdbuf(), std::string_view(pieces)...)) return;
    const auto writeOne = [this](std::string_view piece) {
      if (out_ != nullptr && !piece.empty()) writeOctets(*out_, piece);
    };
    (writeOne(pieces), ...);
  }

  /// Completes what the innermost container leaves open before its first content.
  void startChild(XMLWriter::WriterState state, bool& hasContent) {
    const std::string_view opening = openingOf(state);
    if (out_ == nullptr || hasContent || opening.empty()) return;
    hasContent = true;
    write(opening);
  }

  /// Writes a text in runs between the escapes, and what follows it.
  void writeEscaped(const xml::Escapes& escapes, std::string_view text, std::string_view next) {
    std::size_t begin = 0;
    for (;;) {
      const std::size_t end = escapes.find(text, begin);
      if (end == text.size()) break;
      write(text.substr(begin, end - begin), escapes.reference(text[end]));
      begin = end + 1;
    }
    write(text.substr(begin), next);
  }

  /// Writes an external identifier (XML 1.0, production 75).
  ///
  /// After a public identifier, notations and unparsed entities repeat their name. Output
  /// compatibility: consumers expect it.
  void writeExternalIdentifier(const std::string& publicId, const std::string& systemId,
                               std::string_view repeatedName) {
    if (!publicId.empty()) {
      write(" PUBLIC \"", publicId, "\" \"", systemId, "\"", repeatedName);
    } else if (!systemId.empty()) {
      write(" SYSTEM \"", systemId, "\"");
    }
  }

 private:
  std::ostream* const& out_;
};

}  // namespace

const XMLWriterType XMLWriter_XML::type_("XML", &XMLWriter_XML::create);

std::unique_ptr<XMLWriter> XMLWriter_XML::create() { return std::make_unique<XMLWriter_XML>(); }

// --- Layout ---

void XMLWriter_XML::startChild() { Output(out_).startChild(state_, hasContent_); }

/// Breaks the line, if auto-indent is on. The line break is ignorable white space like any other:
/// it is checked, and it is content.
void XMLWriter_XML::indent() {
  if (!autoIndent_ || state_ == Initial || state_ == InCDATA || state_ == Ended) return;
  if (state_ == Prolog && !xmlDeclaration_) return;
  const std::size_t depth = state_ == InDTD ? 1 : elements_.size();
  ignorableWhitespace(std::string(1, '\n').append(kIndentWidth * depth, ' '));
}

// --- Document, elements and content ---

void XMLWriter_XML::startDocument() {
  XMLWriter::startDocument();
  if (xmlDeclaration_) Output(out_).write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

void XMLWriter_XML::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (out_ != nullptr) xml::addDeclaration(namespaces_, prefix, uri);
}

/// The start tag stays open: startChild or endElement completes it. When an attribute is requested
/// from the list, everything before it is in the stream.
void XMLWriter_XML::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Attributes& attributes) {
  startChild();
  indent();
  XMLWriter::startElement(uri, localName, qName, attributes);
  if (out_ != nullptr) {
    Output(out_).write("<", qName);
    for (std::size_t i = 0; i < namespaces_.size(); i += 2) {
      const std::string& prefix = namespaces_[i];
      Output(out_).write(" xmlns", prefix.empty() ? "" : ":", prefix, "='", namespaces_[i + 1],
                         "'");
    }
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) {
      Output(out_).write(" ");
      Output(out_).write(attributes.getQName(i), "='");
      Output(out_).writeEscaped(kValueEscapes, attributes.getValue(i), "'");
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
    Output(out_).write("</", qName, ">");
  } else if (emptyTags_) {
    Output(out_).write("/>");
  } else {
    // The element has ended in the base. After the root no start tag is completed any more, so an
    // empty root is written as `<r</r>`. Output compatibility: consumers expect it.
    hasContent_ = false;
    startChild();
    Output(out_).write("</", qName, ">");
  }
}

void XMLWriter_XML::characters(const std::string& text) {
  startChild();
  XMLWriter::characters(text);
  if (out_ == nullptr) return;
  if (state_ == InCDATA) {
    Output(out_).write(text);
  } else {
    Output(out_).writeEscaped(kTextEscapes, text, "");
  }
}

void XMLWriter_XML::ignorableWhitespace(const std::string& text) {
  startChild();
  XMLWriter::ignorableWhitespace(text);
  Output(out_).write(text);
}

void XMLWriter_XML::processingInstruction(const std::string& target, const std::string& data) {
  startChild();
  indent();
  XMLWriter::processingInstruction(target, data);
  Output(out_).writeInstruction(target, data);
}

// --- Features, flush and reset ---

void XMLWriter_XML::setFeature(const std::string& name, bool value) {
  if (bool* const feature = text::findTextFeature(name, autoIndent_, emptyTags_, xmlDeclaration_)) {
    *feature = value;
  } else {
    XMLWriter::setFeature(name, value);
  }
}

bool XMLWriter_XML::getFeature(const std::string& name) {
  const bool* const feature = text::findTextFeature(name, autoIndent_, emptyTags_, xmlDeclaration_);
  return feature != nullptr ? *feature : XMLWriter::getFeature(name);
}

void XMLWriter_XML::flush() { startChild(); }

void XMLWriter_XML::reset() {
  XMLWriter::reset();
  namespaces_.clear();
}

// --- Document type ---

void XMLWriter_XML::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  indent();
  XMLWriter::startDTD(name, publicId, systemId);
  Output(out_).beginDocumentType(name);
  Output(out_).writeExternalIdentifier(publicId, systemId, "");
}

void XMLWriter_XML::endDTD() {
  const bool hadContent = hasContent_;
  XMLWriter::endDTD();
  if (hadContent) {
    indent();
    Output(out_).write("]");
  }
  Output(out_).endDeclaration();
}

void XMLWriter_XML::notationDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  startChild();
  indent();
  XMLWriter::notationDecl(name, publicId, systemId);
  Output(out_).beginNotation(name);
  Output(out_).writeExternalIdentifier(publicId, systemId, name);
  Output(out_).endDeclaration();
}

void XMLWriter_XML::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId,
                                       const std::string& notationName) {
  startChild();
  indent();
  XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
  Output(out_).beginEntity(name);
  Output(out_).writeExternalIdentifier(publicId, systemId, name);
  Output(out_).endUnparsedEntity(notationName);
}

void XMLWriter_XML::externalEntityDecl(const std::string& name, const std::string& publicId,
                                       const std::string& systemId) {
  startChild();
  indent();
  XMLWriter::externalEntityDecl(name, publicId, systemId);
  Output(out_).beginEntity(name);
  Output(out_).writeExternalIdentifier(publicId, systemId, "");
  Output(out_).endDeclaration();
}

void XMLWriter_XML::internalEntityDecl(const std::string& name, const std::string& value) {
  startChild();
  indent();
  XMLWriter::internalEntityDecl(name, value);
  Output(out_).write("  <!ENTITY ", name, " \"", value, "\">");
}

void XMLWriter_XML::elementDecl(const std::string& name, const std::string& model) {
  startChild();
  indent();
  XMLWriter::elementDecl(name, model);
  Output(out_).writeElementDeclaration(name, model);
}

void XMLWriter_XML::attributeDecl(const std::string& eName, const std::string& aName,
                                  const std::string& type, const std::string& mode,
                                  const std::string& value) {
  startChild();
  indent();
  XMLWriter::attributeDecl(eName, aName, type, mode, value);
  Output(out_).write("  <!ATTLIST ", eName, " ", aName, " ", type, " ", mode, " \"", value, "\">");
}

// --- CDATA sections and comments ---

void XMLWriter_XML::startCDATA() {
  startChild();
  XMLWriter::startCDATA();
}

void XMLWriter_XML::endCDATA() {
  const bool hadContent = hasContent_;
  XMLWriter::endCDATA();
  if (hadContent) Output(out_).endSection();
}

void XMLWriter_XML::comment(const std::string& text) {
  startChild();
  indent();
  XMLWriter::comment(text);
  Output(out_).writeComment(text);
}

}  // namespace Tavrin
