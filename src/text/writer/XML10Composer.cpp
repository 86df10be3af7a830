#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <algorithm>
#include <utility>

#include "../../sax/AtLimit.h"
#include "../../xml/Characters.h"
#include "../../xml/Escapes.h"
#include "../../xml/Requirements.h"
#include "../../xml/AddDeclaration.h"
#include "../../io/EventOctets.h"
#include "TextFeatures.h"
#include "../../io/WriteOctets.h"
#include "XML10Composer.h"

namespace Tavrin {

using namespace std::string_view_literals;

namespace {

constexpr std::size_t kDeepestIndentation = 100;

const std::string kNoText;

// Text of so few octets is copied together with what completes the start tag in front of it.
constexpr std::size_t kShort = 256;

// What one large event took is not kept for all the small ones.
constexpr std::size_t kKeptOctets = 1U << 20U;

}  // namespace

XMLWriter_XML10::Composer::Composer(XMLWriter_XML10& writer)
    : writer_(writer),
      out_(writer.out_),
      state_(writer.state_),
      hasContent_(writer.hasContent_),
      elements_(writer.elements_) {}

// --- Composing and writing out ---

void XMLWriter_XML10::Composer::restore(const Mark& mark) {
  state_ = mark.state;
  hasContent_ = mark.hasContent;
  // An element that is gone does not come back: its end was composed in vain.
  if (elements_.size() < mark.elements) return breakOff();
  while (elements_.size() > mark.elements) elements_.pop_back();
  while (document_.open.size() > mark.open) document_.open.pop_back();
  composed_.resize(mark.octets);
  document_.breaks.resize(mark.breaks);
  document_.bindings.undo(document_.bindings.count() - mark.declarations);
  document_.brackets = mark.brackets;
}

void XMLWriter_XML10::Composer::requireSound() const {
  if (!document_.isBroken) return;
  throw SAXException("The document cannot go on after a failure: the writer must be reset");
}

/// What is composed is not written any more.
void XMLWriter_XML10::Composer::breakOff() noexcept {
  document_.isBroken = true;
  state_ = Ended;
  composed_.clear();
  document_.breaks.clear();
}

/// Runs what writes.
template <typename Write>
void XMLWriter_XML10::Composer::writeOrBreakOff(Write write) {
  try {
    write();
  } catch (...) {
    breakOff();
    throw;
  }
}

/// Writes out what is composed.
void XMLWriter_XML10::Composer::send() {
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

/// Writes what is composed, unless a line break in it may yet be forbidden.
void XMLWriter_XML10::Composer::commit() {
  if (composed_.empty()) return;
  document_.hasBegun = true;
  if (document_.breaks.empty() || elements_.empty()) writeOrBreakOff([this] { writeOut(); });
}

/// Whether nothing waits to be written and no line is to be broken: most events come like that, and
/// what they compose goes out by itself. Measured: writing takes a quarter less time than the
/// other way.
bool XMLWriter_XML10::Composer::isDirect() const {
  return state_ == InElement && !autoIndent_ && composed_.empty() && document_.breaks.empty();
}

void XMLWriter_XML10::Composer::writeDirectly(EventOctets& octets) {
  octets.write();
  if (!composed_.empty()) writeOrBreakOff([this] { send(); });
}

void XMLWriter_XML10::Composer::writeOut() {
  // Without auto-indent there are no breaks, and each event comes here.
  if (document_.breaks.empty()) return send();
  const std::string text = std::exchange(composed_, {});
  const std::vector<Document::Break> breaks = std::exchange(document_.breaks, {});
  if (out_ == nullptr) return;
  const std::string_view octets = text;
  std::size_t begin = 0;
  std::string line = "\n";
  for (const auto& [position, depth] : breaks) {
    writeOctets(*out_, octets.substr(begin, position - begin));
    line.resize(1 + indentWidth_ * std::min(depth, kDeepestIndentation), ' ');
    writeOctets(*out_, line);
    begin = position;
  }
  writeOctets(*out_, octets.substr(begin));
}

// --- Layout ---

/// Completes what the innermost container leaves open before its first content.
void XMLWriter_XML10::Composer::startChild() {
  if (hasContent_) return;
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

void XMLWriter_XML10::Composer::indent() {
  if (!autoIndent_) return;
  if (!document_.open.empty()) {
    const Document::Open& element = document_.open.back();
    if (element.isMixed || element.preservesSpace) return;
    document_.breaks.push_back({composed_.size(), elements_.size()});
  } else if (state_ == InDTD) {
    write("\n");
    composed_.append(indentWidth_, ' ');
  } else if (document_.hasBegun) {
    write("\n");
  }
}

/// There is text in the innermost element: no line break that stands in it, or comes, may be
/// written. Comes last in an event: it cannot be undone.
void XMLWriter_XML10::Composer::forbidIndentation() {
  if (document_.open.empty()) return;
  Document::Open& element = document_.open.back();
  if (element.isMixed) return;
  element.isMixed = true;
  if (document_.breaks.size() > element.firstBreak) document_.breaks.resize(element.firstBreak);
}

// --- Document and elements ---

void XMLWriter_XML10::Composer::startDocument() {
  perform([this] {
    writer_.XMLWriter::startDocument();
    if (xmlDeclaration_) {
      write("<?xml version=\"1.0\" encoding=\"UTF-8\"");
      if (statesStandalone_) write(" standalone=", standalone_ ? "\"yes\"" : "\"no\"");
      write("?>");
    }
    document_.isStandalone = xmlDeclaration_ && statesStandalone_ && standalone_;
  });
}

void XMLWriter_XML10::Composer::endDocument() {
  perform([this] {
    const bool hasElement = state_ != Prolog && state_ != AfterDTD;
    writer_.XMLWriter::endDocument();
    if (!hasElement) throw SAXException("You cannot end a document without an element");
  });
}

void XMLWriter_XML10::Composer::startPrefixMapping(const std::string& prefix,
                                                   const std::string& uri) {
  requireSound();
  if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
    throw SAXException("You cannot declare a namespace at this point");
  }
  xml::requireDeclarable(prefix, uri);
  addDeclaration(namespaces_, prefix, uri);
}

void XMLWriter_XML10::Composer::startElement(const std::string& uri, const std::string& localName,
                                             const std::string& qName,
                                             const Attributes& attributes) {
  if (elements_.size() >= maximumDepth_) throw SAXException(tooDeep(maximumDepth_));
  if (!isDirect()) {
    return perform([&] {
      startChild();
      indent();
      writer_.XMLWriter::startElement(uri, localName, qName, attributes);
      EventOctets octets(nullptr, composed_);
      composeStartTag(octets, uri, localName, qName, attributes);
      octets.keep();
      namespaces_.clear();
    });
  }
  const Mark before = mark();
  EventOctets octets(out_, composed_);
  if (!hasContent_) octets.append('>');
  try {
    composeStartTag(octets, uri, localName, qName, attributes);
    writer_.XMLWriter::startElement(uri, localName, qName, attributes);
  } catch (...) {
    restore(before);
    throw;
  }
  namespaces_.clear();
  writeDirectly(octets);
}

void XMLWriter_XML10::Composer::composeStartTag(EventOctets& octets, const std::string& uri,
                                                const std::string& localName,
                                                const std::string& qName,
                                                const Attributes& attributes) {
  using Space = XML10StartTag::Space;
  Document& document = document_;
  const std::size_t declared = document.bindings.count();
  const Space space =
      document.startTag.write(octets, {uri, localName, qName, attributes, namespaces_}, quote_,
                              document.defaults, document.bindings);
  Document::Open element{document.bindings.count() - declared, document.breaks.size(), false,
                         space == Space::Preserve};
  if (!document.open.empty()) {
    const Document::Open& parent = document.open.back();
    element.isMixed = parent.isMixed;
    if (space == Space::Inherited) element.preservesSpace = parent.preservesSpace;
  }
  document.open.push_back(element);
}

void XMLWriter_XML10::Composer::endElement(const std::string& uri, const std::string& localName,
                                           const std::string& qName) {
  if (!isDirect()) {
    return perform([&] {
      const bool hadContent = hasContent_;
      writer_.XMLWriter::endElement(uri, localName, qName);
      if (hadContent) indent();
      if (!hadContent && emptyTags_) {
        write("/>");
      } else {
        write(hadContent ? "</" : "></", qName, ">");
      }
      closeElement();
    });
  }
  const bool hadContent = hasContent_;
  EventOctets octets(out_, composed_);
  if (!hadContent && emptyTags_) {
    octets.append('/', '>');
  } else {
    octets.append(hadContent ? "</"sv : "></"sv, std::string_view(qName), '>');
  }
  try {
    writer_.XMLWriter::endElement(uri, localName, qName);
  } catch (...) {
    hasContent_ = hadContent;
    throw;
  }
  closeElement();
  writeDirectly(octets);
}

void XMLWriter_XML10::Composer::closeElement() {
  document_.bindings.undo(document_.open.back().declarations);
  document_.open.pop_back();
}

// --- Content ---

void XMLWriter_XML10::Composer::characters(const std::string& text) {
  if (isDirect()) {
    const bool isFirst = !hasContent_;
    const bool mayBeWhole = !isFirst || text.size() > kShort;
    if (mayBeWhole && xml::kTextEscapes.isVerbatim(text)) {
      hasContent_ = true;
      writeOrBreakOff([&] {
        if (out_ && isFirst) writeOctets(*out_, ">");
        if (out_) writeOctets(*out_, text);
      });
    } else {
      EventOctets octets(out_, composed_);
      if (isFirst) octets.append('>');
      xml::appendText(octets, text, xml::kTextEscapes, "character data");
      hasContent_ = true;
      writeDirectly(octets);
    }
    return forbidIndentation();
  }
  perform([&] {
    const bool inSection = state_ == InCDATA;
    if (!inSection) startChild();
    const bool hadContent = hasContent_;
    writer_.XMLWriter::characters(kNoText);  // Of the base, the order alone is wanted.
    if (inSection) {
      hasContent_ = hadContent;
      xml::requireText(text, "a CDATA section");
      writeSection(text);
    } else {
      xml::appendText(composed_, text, xml::kTextEscapes, "character data");
    }
    forbidIndentation();
  });
}

/// Writes into the CDATA section. While it is open in the output, it has content.
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
      if (hasContent_) write("]]>");
      write("&#xD;");
      hasContent_ = false;
      begin = i + 1;
    }
    document_.brackets = c == ']' ? document_.brackets + 1 : 0;
  }
  writeUpTo(text.size());
}

void XMLWriter_XML10::Composer::ignorableWhitespace(const std::string& text) {
  perform([&] {
    const bool inSection = state_ == InCDATA;
    if (!inSection && !isOutsideInternalSubset()) startChild();
    const bool hadContent = hasContent_;
    writer_.XMLWriter::ignorableWhitespace(text);
    if (inSection) {
      hasContent_ = hadContent;
      writeSection(text);
    } else if (state_ == InElement) {
      xml::kTextEscapes.append(composed_, text);
    } else if (!isOutsideInternalSubset()) {
      write(text);
    }
    forbidIndentation();
  });
}

void XMLWriter_XML10::Composer::startCDATA() {
  perform([this] {
    startChild();
    writer_.XMLWriter::startCDATA();
    document_.brackets = 0;
    forbidIndentation();
  });
}

void XMLWriter_XML10::Composer::endCDATA() {
  perform([this] {
    const bool hadContent = hasContent_;
    writer_.XMLWriter::endCDATA();
    if (hadContent) write("]]>");
  });
}

void XMLWriter_XML10::Composer::processingInstruction(const std::string& target,
                                                      const std::string& data) {
  perform([&] {
    if (isOutsideInternalSubset()) return writer_.XMLWriter::processingInstruction(target, data);
    startChild();
    indent();
    writer_.XMLWriter::processingInstruction(target, data);
    write("<?", target, " ", data, "?>");
    xml::requireTarget(target);
    xml::requireText(data, "a processing instruction");
    if (data.find("?>") != std::string::npos) {
      throw SAXException("You cannot put \"?>\" into a processing instruction");
    }
  });
}

void XMLWriter_XML10::Composer::comment(const std::string& text) {
  perform([&] {
    if (isOutsideInternalSubset()) return writer_.XMLWriter::comment(text);
    startChild();
    indent();
    writer_.XMLWriter::comment(text);
    write("<!--", text, "-->");
    xml::requireText(text, "a comment");
    if (text.find("--") != std::string::npos) {
      throw SAXException("You cannot put \"--\" into a comment");
    }
    if (text.ends_with('-')) throw SAXException("You cannot end a comment with \"-\"");
  });
}

// --- Features, properties, flush and reset ---

bool* XMLWriter_XML10::Composer::findFeature(const std::string& name) {
  return findTextFeature(name, autoIndent_, emptyTags_, xmlDeclaration_);
}

bool XMLWriter_XML10::Composer::setProperty(const std::string& name, void* value) {
  if (name == properties::documentXMLVersion) {
    const std::string version = value == nullptr ? "1.0" : *static_cast<std::string*>(value);
    if (!xml::isVersion(version)) {
      throw SAXException("\"" + version + "\" is not a version of XML");
    }
    version_ = version;
  } else if (name == properties::standalone) {
    statesStandalone_ = value != nullptr;
    standalone_ = statesStandalone_ && *static_cast<bool*>(value);
  } else if (name == properties::indentWidth) {
    indentWidth_ = value == nullptr ? 2 : *static_cast<unsigned*>(value);
  } else if (name == properties::maximumDepth) {
    maximumDepth_ = value == nullptr ? UINT64_MAX : *static_cast<std::uint64_t*>(value);
  } else if (name == properties::quoteCharacter) {
    const char quote = value == nullptr ? '\'' : *static_cast<char*>(value);
    if (quote != '\'' && quote != '"') {
      throw SAXException("Attribute values can stand in apostrophes or quotation marks only");
    }
    quote_ = quote;
  } else {
    return false;
  }
  return true;
}

bool XMLWriter_XML10::Composer::getProperty(const std::string& name, void*& value) {
  if (name == properties::documentXMLVersion) {
    value = &version_;
  } else if (name == properties::standalone) {
    value = statesStandalone_ ? &standalone_ : nullptr;
  } else if (name == properties::indentWidth) {
    value = &indentWidth_;
  } else if (name == properties::maximumDepth) {
    value = &maximumDepth_;
  } else if (name == properties::quoteCharacter) {
    value = &quote_;
  } else {
    return false;
  }
  return true;
}

void XMLWriter_XML10::Composer::flush() {
  perform([this] {
    startChild();
    for (Document::Open& element : document_.open) element.isMixed = true;
    document_.breaks.clear();
  });
}

void XMLWriter_XML10::Composer::reset() {
  writer_.XMLWriter::reset();
  namespaces_.clear();
  composed_.clear();
  document_ = Document();
}

}  // namespace Tavrin
