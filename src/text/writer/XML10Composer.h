#pragma once

#include <Tavrin/XMLWriter_XML10.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../xml/NamespaceBindings.h"
#include "../../io/EventOctets.h"
#include "XML10StartTag.h"

namespace Tavrin {

/// Composes the document: what the writer's events write, and what it keeps of a document.
class XMLWriter_XML10::Composer {
 public:
  explicit Composer(XMLWriter_XML10& writer);

  // --- Events, as the writer has them ---

  void startDocument();
  void endDocument();
  void startPrefixMapping(const std::string& prefix, const std::string& uri);
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes);
  void endElement(const std::string& uri, const std::string& localName, const std::string& qName);
  void characters(const std::string& text);
  void ignorableWhitespace(const std::string& text);
  void processingInstruction(const std::string& target, const std::string& data);
  void skippedEntity(const std::string& name);
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId);
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName);
  void elementDecl(const std::string& name, const std::string& model);
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value);
  void internalEntityDecl(const std::string& name, const std::string& value);
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId);
  void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId);
  void endDTD();
  void startEntity(const std::string& name);
  void endEntity(const std::string& name);
  void startCDATA();
  void endCDATA();
  void comment(const std::string& text);

  // --- As the writer has them ---

  bool* findFeature(const std::string& name);
  bool setProperty(const std::string& name, void* value);
  bool getProperty(const std::string& name, void*& value);
  void flush();
  void reset();

 private:
  /// What the writer keeps of a document.
  struct Document {
    bool isBroken = false;  // An event failed when some of it may have been written.

    // --- What is not written yet ---

    /// A line break that auto-indent wants, as long as no text forbids it.
    struct Break {
      std::size_t position;  // In what is composed.
      std::size_t depth;
    };

    std::vector<Break> breaks;  // In the order of their positions.
    bool hasBegun = false;      // Octets have been composed.

    // --- Open elements ---

    struct Open {
      std::size_t declarations;  // How many the start tag has.
      std::size_t firstBreak;    // The first line break that may come inside.
      bool isMixed;              // It has text, or an element around it has.
      bool preservesSpace;       // By xml:space.
    };

    std::vector<Open> open;  // The innermost is the last.
    xml::NamespaceBindings bindings;
    XML10StartTag startTag;

    /// How many brackets the text of the open CDATA section ends with.
    std::size_t brackets = 0;

    // --- Document type ---

    enum class EntityKind { Text, Markup, External, Unparsed, Passed };

    bool isStandalone = false;  // The document says so.
    bool hasExternalSubset = false;
    bool hasParameterReferences = false;
    /// A parameter entity was skipped: what is declared from there on counts for a reader that has
    /// read it, and not for the one that the events come from (section 5.1).
    bool passesDeclarations = false;
    /// Of entities that are open, how many there are from the first one on that is not a part of
    /// the internal subset.
    std::size_t entitiesOutside = 0;
    std::map<std::string, EntityKind> entities;  // Those declared in the internal subset.
    XML10StartTag::Defaults defaults;
  };

  /// What to return to when an event is refused.
  struct Mark {
    WriterState state;
    bool hasContent;
    bool isOutside;
    std::size_t elements;
    std::size_t octets;
    std::size_t breaks;
    std::size_t declarations;
    std::size_t open;
    std::size_t brackets;
  };

  /// What an external identifier belongs to.
  enum class Declared { DocumentType, Notation, Entity };

  template <typename Body>
  void perform(Body body);
  Mark mark() const;
  void restore(const Mark& mark);
  void requireSound() const;
  void breakOff() noexcept;
  template <typename Write>
  void writeOrBreakOff(Write write);
  void commit();
  void send();
  void writeOut();
  template <typename... Pieces>
  void write(const Pieces&... pieces);
  void startChild();
  void indent();
  bool isDirect() const;
  void writeDirectly(EventOctets& octets);
  void composeStartTag(EventOctets& octets, const std::string& uri, const std::string& localName,
                       const std::string& qName, const Attributes& attributes);
  void closeElement();
  void forbidIndentation();
  void writeSection(std::string_view text);
  void writeAttributeValue(std::string_view value);
  void writeSystemLiteral(std::string_view systemId);
  void writeExternalIdentifier(Declared declared, const std::string& publicId,
                               const std::string& systemId);
  void writeDefault(const std::string& mode, const std::string& value);
  bool isOutsideInternalSubset() const;
  void writeGeneralReference(const std::string& name);
  void writeParameterReference(const std::string& name);
  void rememberDefault(const std::string& eName, const std::string& aName, const std::string& mode,
                       const std::string& value);

  XMLWriter_XML10& writer_;
  std::ostream* const& out_;
  WriterState& state_;
  bool& hasContent_;
  std::deque<Element>& elements_;

  bool autoIndent_ = false;
  bool emptyTags_ = true;
  bool xmlDeclaration_ = true;
  std::string composed_;                 // Octets that are not written out yet.
  std::vector<std::string> namespaces_;  // What the next start tag declares: prefix, name, ...
  std::string version_ = "1.0";
  unsigned indentWidth_ = 2;
  std::uint64_t maximumDepth_ = UINT64_MAX;
  char quote_ = '\'';
  bool standalone_ = false;
  bool statesStandalone_ = false;
  Document document_;
};

/// Whether events stand in the external subset or an external parameter entity, to which the
/// document refers.
inline bool XMLWriter_XML10::Composer::isOutsideInternalSubset() const {
  return state_ == InDTD && document_.entitiesOutside > 0;
}

inline XMLWriter_XML10::Composer::Mark XMLWriter_XML10::Composer::mark() const {
  return {state_,
          hasContent_,
          isOutsideInternalSubset(),
          elements_.size(),
          composed_.size(),
          document_.breaks.size(),
          document_.bindings.count(),
          document_.open.size(),
          document_.brackets};
}

/// Composes pieces of the document.
template <typename... Pieces>
void XMLWriter_XML10::Composer::write(const Pieces&... pieces) {
  ((composed_ += pieces), ...);
}

/// Composes an event and writes it out, or leaves everything as it was. Where writing it fails,
/// nobody can tell what has been written, and nothing may follow.
template <typename Body>
void XMLWriter_XML10::Composer::perform(Body body) {
  requireSound();
  const Mark before = mark();
  try {
    body();
  } catch (...) {
    restore(before);
    throw;
  }
  // What is not written is not content.
  if (before.isOutside && state_ == InDTD) hasContent_ = before.hasContent;
  commit();
}

}  // namespace Tavrin
