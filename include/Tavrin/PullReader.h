/// @file
/// Reading a document by asking for one event after another.
#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Export.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Tavrin {

/// What a PullReader has come to: the operations of the handler interfaces. In brackets the
/// accessors of PullReader that tell more.
enum class PullEvent : std::uint8_t {
  none,                   ///< Nothing yet, or nothing more.
  startDocument,          ///< The document begins.
  endDocument,            ///< The document ended.
  startElement,           ///< A start tag (uri, localName, qName, attributes, mapping).
  endElement,             ///< An end tag (uri, localName, qName).
  characters,             ///< Character data, or a typed value (text, value, algorithmURI).
  ignorableWhitespace,    ///< White space that has no meaning in its place (text).
  octets,                 ///< Content of an unknown algorithm, encoded (octets, algorithmURI).
  processingInstruction,  ///< A processing instruction (target, data).
  skippedEntity,          ///< A reference to an entity that was not read (name).
  comment,                ///< A comment (text).
  startCDATA,             ///< A CDATA section begins.
  endCDATA,               ///< A CDATA section ended.
  startEntity,            ///< An entity begins (name).
  endEntity,              ///< An entity ended (name).
  startDTD,               ///< The document type declaration begins (name, publicId, systemId).
  endDTD,                 ///< The document type declaration ended.
  notationDecl,           ///< A notation (name, publicId, systemId).
  unparsedEntityDecl,     ///< An unparsed entity (name, publicId, systemId, notationName).
  externalEntityDecl,     ///< An external parsed entity (name, publicId, systemId).
  internalEntityDecl,     ///< An internal entity (name; its value is part 1).
  elementDecl,            ///< An element type (name; its content model is part 1).
  attributeDecl,          ///< An attribute (parts 0 to 4, as in DeclHandler::attributeDecl).
};

/// A namespace declaration of a start tag.
struct PullMapping {
  std::string_view prefix;  ///< Empty for the default namespace.
  std::string_view uri;     ///< The namespace name.
};

/// What a PullReader keeps of its current event. It is here so that accessors cost no call;
/// programs use the accessors.
struct TAVRIN_API PullState {
  virtual ~PullState();
  virtual bool next();  ///< As PullReader::next; there is none.

  PullEvent event = PullEvent::none;       ///< The event.
  bool needsBlock = false;                 ///< As PullReader::needsBlock.
  bool hasEnded = false;                   ///< As PullReader::hasEnded.
  int algorithmIndex = -1;                 ///< As PullReader::algorithmIndex.
  std::array<std::string_view, 5> parts;   ///< As PullReader::part.
  std::size_t partCount = 0;               ///< How many there are.
  const Attributes* attributes = nullptr;  ///< Those of a start tag.
  const EncodedData* value = nullptr;      ///< As PullReader::value.
  std::string_view algorithmURI;           ///< As PullReader::algorithmURI.
  const PullMapping* mappings = nullptr;   ///< Those of a start tag.
  std::size_t mappingCount = 0;            ///< How many there are.
  std::size_t open = 0;                    ///< Elements that are open after the event.
};

/// Reads a document, be it XML text or Fast Infoset, event by event, each when the program asks for
/// it. Where a handler has to remember where it is, a program that pulls events just is there.
///
/// @code
/// std::ifstream document("menu.xml", std::ios::binary);
/// PullReader reader(document);
/// while (reader.nextElement()) {
///   if (reader.localName() != "dish") continue;
///   std::cout << reader.attribute("price").value_or("?") << ' ' << reader.readText() << '\n';
/// }
/// @endcode
///
/// The events are those that the readers XMLReader_XML10 and XMLReader_X891 report, in the same
/// order, with these differences: declarations of namespaces are told with their start tag, their
/// ends are not told; and a typed value is an event `characters`, of which `value` is the value and
/// `text` its text. Adjacent events `characters` may belong to one run of text.
///
/// All views, references and pointers are valid until the next call of an operation that is not
/// const. An accessor for what the current event does not have returns something empty.
///
/// What next throws is what the reader's `parse` throws: SAXParseException for a document that
/// cannot be read, after all events that precede the failure. After it, next returns false.
///
/// An event is there as soon as the stream, or the block, has its last octet; no more of a stream
/// is waited for. Memory is that of the reader and of the item that is under way; of XML text also
/// the events of up to 8 KiB, with the entities that are referred to there. Of Fast Infoset no
/// octet after the document's last one is consumed.
///
/// Documents may also come in blocks, whose octets are not copied:
///
/// @code
/// std::ifstream document("menu.finf", std::ios::binary);
/// PullReader reader;
/// for (char block[1500]; !reader.hasEnded();) {
///   document.read(block, sizeof block);
///   reader.supply(block, static_cast<unsigned long>(document.gcount()), document.eof());
///   while (reader.next()) {
///     if (reader.event() == PullEvent::characters) std::cout << reader.text();
///   }
/// }
/// @endcode
class TAVRIN_API PullReader {
 public:
  /// Reads a document from a stream, which must outlive the reader. Which encoding it has is
  /// recognised as createReaderFor does, which may wait for the first octet.
  /// @throws whatever the stream's buffer throws, such as std::ios_base::failure for a directory
  explicit PullReader(std::istream& stream);
  /// Reads blocks, of which the first octets tell the encoding.
  PullReader();
  /// Reads blocks of one encoding, so that `reader` can be configured before the first one.
  /// @param type "XML10" or "X891"
  /// @throws SAXException `No pull reader of type "FI"`
  explicit PullReader(const std::string& type);
  ~PullReader();
  PullReader(const PullReader&) = delete;
  PullReader& operator=(const PullReader&) = delete;

  /// The reader that does the work, to set limits, features, properties, the error handler and the
  /// entity resolver before the first event. It is an XMLReader_XML10 or XMLReader_X891. Other
  /// handlers, and properties::reparseDeferral, are set by the pull reader. Its `parse`, `stop` and
  /// `pause`, and features::coalesceCharacters, for which there is readText, are refused. The error
  /// handler is called when the reader meets a failure or warning, which may be some events ahead.
  /// @throws SAXException before the encoding is known
  XMLReader& reader();

  /// @name Going on
  /// All return false where the document has ended, and where another block is needed.
  /// @{

  /// Goes on to the next event.
  bool next() { return state_->next(); }
  /// Goes on to the next start tag, wherever it is.
  bool nextElement();
  /// From a start tag, goes on to its end tag. Where another block is needed, the call is to be
  /// repeated after `supply`.
  /// @throws SAXException when the current event is no start tag
  bool skipElement();
  /// As skipElement, with the text of the element and of the elements in it.
  /// @param text receives it; what is there stays
  /// @throws SAXException likewise, and for octets of an unknown algorithm, which have no text
  bool readText(std::string& text);
  /// Likewise, of a document whose octets are all there.
  /// @throws SAXException where another block is needed
  std::string readText();
  /// @}

  /// @name Blocks
  /// @{

  /// Provides the next block. After a document, or a failure, it begins another one.
  /// @param data    the block, which must stay where it is until `needsBlock` or `hasEnded`
  /// @param size    its length in octets
  /// @param isFinal true on the last block
  /// @throws SAXException for a reader of a stream, and while the last block is being read
  void supply(const void* data, unsigned long size, bool isFinal);
  /// Whether next returned false because the block has no further event.
  bool needsBlock() const { return state_->needsBlock; }
  /// Whether the event endDocument has come.
  bool hasEnded() const { return state_->hasEnded; }
  /// After the end of a document in Fast Infoset: how many octets at the end of the last block come
  /// after the document. They can be supplied again: another document may begin with them.
  unsigned long unusedOctets() const;
  /// @}

  /// @name The current event
  /// @{

  PullEvent event() const { return state_->event; }  ///< Which it is.
  /// Namespace name of an element, or empty.
  std::string_view uri() const { return isElement() ? state_->parts[0] : std::string_view(); }
  /// Name of an element without prefix.
  std::string_view localName() const { return isElement() ? state_->parts[1] : std::string_view(); }
  /// Name of an element as written.
  std::string_view qName() const { return isElement() ? state_->parts[2] : std::string_view(); }
  /// How many elements are open, with the one whose start tag or end tag this is.
  std::size_t depth() const { return state_->open + (event() == PullEvent::endElement ? 1 : 0); }

  /// The attributes of a start tag; otherwise none. With Fast Infoset they are
  /// EncodingAlgorithmAttributes.
  const Attributes& attributes() const {
    return event() == PullEvent::startElement ? *state_->attributes : noAttributes();
  }
  /// The value of an attribute, if the start tag has one of this name.
  std::optional<std::string_view> attribute(const std::string& qName) const;
  std::optional<std::string_view> attribute(const std::string& uri,
                                            const std::string& localName) const;  ///< Likewise.
  /// How many namespaces a start tag declares.
  std::size_t mappingCount() const {
    return event() == PullEvent::startElement ? state_->mappingCount : 0;
  }
  /// One of them, from 0. There must be so many.
  PullMapping mapping(std::size_t index) const { return state_->mappings[index]; }

  /// Text of characters, ignorable white space or a comment. That of a typed value is made when it
  /// is asked for, by each call.
  /// @throws SAXParseException for a typed value whose text is longer than the limits allow
  std::string_view text() const {
    if (state_->value) return textOfValue();
    return isText() ? state_->parts[0] : std::string_view();
  }
  /// The typed value of characters, or null.
  const EncodedData* value() const { return state_->value; }
  /// The typed value, where it is of this kind, or null:
  /// `const auto* numbers = reader.value<std::vector<float>>()`.
  template <typename T>
  const T* value() const {
    const auto* const holder = dynamic_cast<const EncodedDataTemplate<T>*>(value());
    return holder ? &holder->data_ : nullptr;
  }
  /// The octets of content whose algorithm is unknown.
  std::string_view octets() const { return partOf(PullEvent::octets, 0); }
  /// The URI of the algorithm of a typed value or of octets, where an application defines it.
  std::string_view algorithmURI() const { return state_->algorithmURI; }
  /// The number of the algorithm (see Tavrin::algorithms), or -1.
  int algorithmIndex() const { return state_->algorithmIndex; }

  /// The target of a processing instruction.
  std::string_view target() const { return partOf(PullEvent::processingInstruction, 0); }
  /// The data of a processing instruction.
  std::string_view data() const { return partOf(PullEvent::processingInstruction, 1); }
  /// The name of an entity, a notation, a declared element type, or the document type.
  std::string_view name() const { return hasName() ? state_->parts[0] : std::string_view(); }
  std::string_view publicId() const {
    return hasIds() ? state_->parts[1] : std::string_view();
  }  ///< Or empty.
  std::string_view systemId() const {
    return hasIds() ? state_->parts[2] : std::string_view();
  }  ///< Or empty.
  /// The notation of an unparsed entity.
  std::string_view notationName() const { return partOf(PullEvent::unparsedEntityDecl, 3); }
  /// What the handler's operation for the event gets as its argument of this position, from 0 to 4,
  /// where that is a string.
  std::string_view part(std::size_t index) const {
    return index < state_->partCount ? state_->parts[index] : std::string_view();
  }
  /// @}

  /// @name Position
  /// As Locator and OctetLocator have it for a handler of the event; -1, or 0 octets, where that is
  /// not known.
  /// @{

  /// Switches the positions in XML text on, which are off at first because each takes time to find.
  /// It is to be called before the first event.
  void trackPositions();
  std::int32_t line() const;          ///< Line, from 1.
  std::int32_t column() const;        ///< Column, from 1.
  std::uint64_t octetOffset() const;  ///< Offset in octets.
                                      /// @}

 private:
  bool isElement() const;
  bool isText() const;
  bool hasName() const;
  bool hasIds() const;
  std::string_view partOf(PullEvent event, std::size_t index) const;
  std::string_view textOfValue() const;
  static const Attributes& noAttributes();
  std::unique_ptr<PullState> state_;
};

inline bool PullReader::isElement() const {
  return event() == PullEvent::startElement || event() == PullEvent::endElement;
}

inline bool PullReader::isText() const {
  return event() == PullEvent::characters || event() == PullEvent::ignorableWhitespace ||
         event() == PullEvent::comment;
}

inline bool PullReader::hasIds() const {
  return event() == PullEvent::startDTD || event() == PullEvent::notationDecl ||
         event() == PullEvent::unparsedEntityDecl || event() == PullEvent::externalEntityDecl;
}

inline bool PullReader::hasName() const {
  return hasIds() || event() == PullEvent::skippedEntity || event() == PullEvent::startEntity ||
         event() == PullEvent::endEntity || event() == PullEvent::internalEntityDecl ||
         event() == PullEvent::elementDecl;
}

inline std::string_view PullReader::partOf(PullEvent event, std::size_t index) const {
  return state_->event == event ? state_->parts[index] : std::string_view();
}

}  // namespace Tavrin
