#pragma once

#include <array>
#include <cstdint>

/// The identification octets of the stream and the bits within them (X.891, clause 12 and annex C),
/// each once, for reader, writer and tests. The integers that begin within such octets are in
/// Integers.h.
namespace Tavrin::fastinfoset {

/// How every document begins: identification and version number (12.6, 12.7).
inline constexpr std::array<std::uint8_t, 4> kHeader = {0xE0, 0x00, 0x00, 0x01};

// --- Document (C.2) ---

/// The octet after the header: which optional components follow, in this order.
enum OptionalComponent : unsigned {
  kAdditionalData = 0x40,
  kInitialVocabulary = 0x20,
  kNotations = 0x10,
  kUnparsedEntities = 0x08,
  kCharacterEncodingScheme = 0x04,
  kStandalone = 0x02,
  kVersion = 0x01,
};

/// The bit of that octet that is padding.
inline constexpr unsigned kComponentsPadding = 0x80;

// --- Children, distinguished by their first octet (C.2.11, C.3.7) ---

inline constexpr unsigned kFirstNonElement = 0x80;        ///< Below: an element.
inline constexpr unsigned kFirstCharacterChunk = 0x80;    ///< In an element.
inline constexpr unsigned kLastCharacterChunk = 0xC7;     ///< In an element.
inline constexpr unsigned kDocumentType = 0xC4;           ///< Plus the bits of the identifiers.
inline constexpr unsigned kLastDocumentTypeOctet = 0xC7;  ///< At document level.
inline constexpr unsigned kFirstEntityReference = 0xC8;   ///< In an element.
inline constexpr unsigned kLastEntityReference = 0xCB;    ///< In an element.
inline constexpr unsigned kProcessingInstruction = 0xE1;
inline constexpr unsigned kComment = 0xE2;
inline constexpr unsigned kTerminator = 0xF0;        ///< One end, padded to the octet.
inline constexpr unsigned kDoubleTerminator = 0xFF;  ///< Two ends in a row.

/// A document type declaration, an entity reference or a notation: which identifiers follow (C.9,
/// C.6, C.11).
inline constexpr unsigned kSystemIdentifier = 0x02;
inline constexpr unsigned kPublicIdentifier = 0x01;

/// Notations (C.2.6) and unparsed entities (C.2.7): the bits that identify them, and their value.
inline constexpr unsigned kNotationMask = 0xFC;
inline constexpr unsigned kNotation = 0xC0;
inline constexpr unsigned kUnparsedEntityMask = 0xFE;
inline constexpr unsigned kUnparsedEntity = 0xD0;

// --- Elements (C.3) and names (C.17, C.18) ---

inline constexpr unsigned kElementAttributes = 0x40;  ///< Attributes follow the name.
inline constexpr unsigned kElementNameBits = 0x3F;    ///< Where the name begins: the third bit.

inline constexpr unsigned kNamespacesFollow = 0x38;  ///< In place of the name.
inline constexpr unsigned kNamespacesFollowMask = 0xBF;
inline constexpr unsigned kNamespaceDeclaration = 0xCC;  ///< Plus the bits of the parts (C.12).
inline constexpr unsigned kNamespaceDeclarationMask = 0xFC;

/// A name, or a namespace declaration: which parts come before the local name.
inline constexpr unsigned kPrefixPresent = 0x02;
inline constexpr unsigned kNamespacePresent = 0x01;

inline constexpr unsigned kLiteralElementName = 0x3C;    ///< Plus the bits of the parts.
inline constexpr unsigned kLastElementIndex = 0x37;      ///< Of the name bits: above, no index.
inline constexpr unsigned kLiteralAttributeName = 0x78;  ///< Plus the bits of the parts.
inline constexpr unsigned kLiteralAttributeNameMask = 0xFC;
inline constexpr unsigned kFirstNonAttributeIndex = 0x70;  ///< Below: an index.

/// The index 0 of a prefix or namespace name is the built-in entry, `xml` and its namespace name
/// (7.2.21, 7.2.22); the entries of the document follow it. Dialect::builtInNamesInDeclarations has
/// the one exception.
inline constexpr std::uint32_t kBuiltInNameIndex = 0;
inline constexpr std::uint32_t kBuiltInNames = 1;

// --- Strings ---

/// An identifying or non-identifying string: an index, not a literal (C.13, C.14).
inline constexpr unsigned kStringIndex = 0x80;

/// Non-identifying strings (C.14, with C.19).
inline constexpr unsigned kStringAddToTable = 0x40;
inline constexpr unsigned kStringEncoding = 0x30;  ///< The bits of the encoding format.
inline constexpr unsigned kStringUTF8 = 0x00;
inline constexpr unsigned kStringUTF16 = 0x10;
inline constexpr unsigned kStringRestrictedAlphabet = 0x20;
inline constexpr unsigned kStringAlgorithm = 0x30;
inline constexpr unsigned kEmptyString = 0xFF;  ///< The index that means the empty string (C.26).
/// Together with the bit that distinguishes an index from a literal.
inline constexpr unsigned kStringAlgorithmMask = kStringIndex | kStringEncoding;

/// Character chunks (C.15, with C.20).
inline constexpr unsigned kChunk = 0x80;
inline constexpr unsigned kChunkIndex = 0xA0;  ///< From here on, an index.
inline constexpr unsigned kChunkAddToTable = 0x10;
inline constexpr unsigned kChunkEncoding = 0x0C;  ///< The bits of the encoding format.
/// These bits are those of kChunk in a chunk in UTF-8 that enters no table.
inline constexpr unsigned kPlainChunkMask = 0xFC;
inline constexpr unsigned kChunkUTF8 = 0x00;
inline constexpr unsigned kChunkUTF16 = 0x04;
inline constexpr unsigned kChunkRestrictedAlphabet = 0x08;
inline constexpr unsigned kChunkAlgorithm = 0x0C;

/// The "FI" writer adds shorter values and chunks to the tables, and never longer ones.
inline constexpr std::size_t kIndexedLength = 7;

// --- Encoding algorithms ---

/// The number of an algorithm is a field of eight bits, the standard's index minus 1. It begins in
/// the octet of the encoding format and ends in the next one (C.29).
inline constexpr unsigned kLastAlgorithmField = 255;

/// The numbers of restricted alphabets, likewise: the two that are built in, and the first of the
/// document's own. Those between are reserved (X.891, 7.2.19).
inline constexpr unsigned kNumericAlphabet = 0;
inline constexpr unsigned kDateAndTimeAlphabet = 1;
inline constexpr unsigned kFirstOwnAlphabet = 15;

/// How many bits of the field the second octet begins with; the length follows them. The first
/// octet ends with the other bits.
inline constexpr unsigned kStringFieldLowBits = 4;
inline constexpr unsigned kChunkFieldLowBits = 6;

}  // namespace Tavrin::fastinfoset
