#pragma once

#include <Tavrin/XMLWriter_XML10.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "../xml/NamespaceBindings.h"
#include "XML10StartTag.h"

namespace Tavrin {

/// What the writer keeps of a document.
struct XMLWriter_XML10::Document {
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
  /// Of entities that are open, how many there are from the first one on that is not a part of the
  /// internal subset.
  std::size_t entitiesOutside = 0;
  std::map<std::string, EntityKind> entities;  // Those declared in the internal subset.
  XML10StartTag::Defaults defaults;
};

/// What to return to when an event is refused.
struct XMLWriter_XML10::Mark {
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

/// Whether events stand in the external subset or an external parameter entity, to which the
/// document refers.
inline bool XMLWriter_XML10::isOutsideInternalSubset() const {
  return state_ == InDTD && document_->entitiesOutside > 0;
}

inline XMLWriter_XML10::Mark XMLWriter_XML10::mark() const {
  return {state_,
          hasContent_,
          isOutsideInternalSubset(),
          elements_.size(),
          composed_.size(),
          document_->breaks.size(),
          document_->bindings.count(),
          document_->open.size(),
          document_->brackets};
}

/// Composes pieces of the document.
template <typename... Pieces>
void XMLWriter_XML10::write(const Pieces&... pieces) {
  ((composed_ += pieces), ...);
}

/// Composes an event and writes it out, or leaves everything as it was. Where writing it fails,
/// nobody can tell what has been written, and nothing may follow.
template <typename Body>
void XMLWriter_XML10::perform(Body body) {
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
