#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The octets of Fast Infoset and the bits within them (X.891, clause 12 and annex C), each once
/// for all of this room. Bit 1 of the standard is 0x80.
namespace tool::octets::format {

// --- What a document begins with (12.3 to 12.7) ---

inline constexpr std::string_view kHeader("\xE0\0\0\1", 4);
inline constexpr std::array<std::string_view, 9> kDeclarations = {
    "<?xml encoding='finf'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
};

// --- Document (C.2) ---

inline constexpr unsigned kAdditionalData = 0x40;
inline constexpr unsigned kInitialVocabulary = 0x20;
inline constexpr unsigned kNotations = 0x10;
inline constexpr unsigned kUnparsedEntities = 0x08;
inline constexpr unsigned kCharacterEncodingScheme = 0x04;
inline constexpr unsigned kStandalone = 0x02;
inline constexpr unsigned kVersion = 0x01;
inline constexpr unsigned kComponentsPadding = 0x80;

/// The two octets that begin an initial vocabulary (C.2.5): the bit of the external vocabulary;
/// those of the tables follow it, from the highest to the lowest.
inline constexpr unsigned kVocabularyPadding = 0xE000;
inline constexpr unsigned kExternalVocabulary = 0x1000;

// --- Items, by their first octet (C.2.11, C.3.7) ---

inline constexpr unsigned kFirstNonElement = 0x80;
inline constexpr unsigned kFirstChunk = 0x80;
inline constexpr unsigned kLastChunk = 0xBF;
inline constexpr unsigned kIdentifiersMask = 0xFC;  ///< The other bits tell which follow.
inline constexpr unsigned kNotation = 0xC0;
inline constexpr unsigned kDocumentType = 0xC4;
inline constexpr unsigned kEntityReference = 0xC8;
inline constexpr unsigned kSystemIdentifier = 0x02;
inline constexpr unsigned kPublicIdentifier = 0x01;
inline constexpr unsigned kUnparsedEntity = 0xD0;
inline constexpr unsigned kUnparsedEntityMask = 0xFE;
inline constexpr unsigned kInstruction = 0xE1;
inline constexpr unsigned kComment = 0xE2;
inline constexpr unsigned kTerminator = 0xF0;
inline constexpr unsigned kDoubleTerminator = 0xFF;

// --- Elements and names (C.3, C.12, C.16 to C.18) ---

inline constexpr unsigned kElementAttributes = 0x40;
inline constexpr unsigned kElementNameBits = 0x3F;
inline constexpr unsigned kNamespacesFollow = 0x38;  ///< Of the name bits.
inline constexpr unsigned kNamespace = 0xCC;
inline constexpr unsigned kNamespaceMask = 0xFC;
inline constexpr unsigned kPrefixPresent = 0x02;
inline constexpr unsigned kNamespacePresent = 0x01;
inline constexpr unsigned kPartBits = kPrefixPresent | kNamespacePresent;
inline constexpr unsigned kLiteralElementName = 0x3C;  ///< Of the name bits.
inline constexpr unsigned kLiteralAttributeName = 0x78;
inline constexpr unsigned kFirstNonAttributeIndex = 0x70;

// --- Strings (C.13 to C.15, C.19, C.20) ---

inline constexpr unsigned kIndex = 0x80;  ///< Of strings; a chunk has kChunkIndex.
inline constexpr unsigned kEmptyString = 0xFF;
inline constexpr unsigned kStringAdds = 0x40;
inline constexpr unsigned kChunkIndex = 0x20;
inline constexpr unsigned kChunkAdds = 0x10;
/// The formats, in the order of the two bits that tell them.
enum class Encoding : unsigned { UTF8, UTF16, Alphabet, Algorithm };

// --- Numbers of algorithms and alphabets, counted from 1 (7.2.19, 7.2.20) ---

inline constexpr unsigned kFirstOwnAlphabet = 16;
inline constexpr unsigned kLastBuiltInAlphabet = 2;
inline constexpr unsigned kFirstOwnAlgorithm = 32;
inline constexpr unsigned kLastBuiltInAlgorithm = 10;

// --- Integers (C.21 to C.28) ---

/// One form of an integer. Its first octet has the marker in front of `fieldBits` bits of the
/// field, and `more` octets follow it; the value is the field plus `least`.
struct Form {
  std::uint8_t marker;
  std::uint8_t fieldBits;
  std::uint8_t more;
  std::uint32_t least;
};

struct Integer {
  const char* clause;
  std::uint8_t mask;  ///< The bits of the first octet that belong to the integer.
  /// The bits of the octets that follow, in the longest form; the others are padding.
  std::uint32_t longestField;
  std::array<Form, 4> forms;
  std::size_t count;  ///< Of the forms.
};

inline constexpr std::uint32_t kWhole = 0xFFFFFFFF;
inline constexpr std::uint32_t kMaximumEntries = 1 << 20;

inline constexpr Integer kCount = {
    "C.21", 0xFF, 0x0FFFFF, {{{0x00, 7, 0, 1}, {0x80, 4, 2, 129}}}, 2};
inline constexpr Integer kOctetsLength = {
    "C.22", 0x7F, kWhole, {{{0x00, 6, 0, 1}, {0x40, 0, 1, 65}, {0x60, 0, 4, 321}}}, 3};
inline constexpr Integer kStringLength = {
    "C.23", 0x0F, kWhole, {{{0x00, 3, 0, 1}, {0x08, 0, 1, 9}, {0x0C, 0, 4, 265}}}, 3};
inline constexpr Integer kChunkLength = {
    "C.24", 0x03, kWhole, {{{0x00, 1, 0, 1}, {0x02, 0, 1, 3}, {0x03, 0, 4, 259}}}, 3};
inline constexpr Integer kNumber = {
    "C.25", 0x7F, kWhole, {{{0x00, 6, 0, 1}, {0x40, 5, 1, 65}, {0x60, 4, 2, 8257}}}, 3};
/// C.26 is the same but for the octet of the empty string.
inline constexpr Integer kNumberOrZero = {"C.26", kNumber.mask, kWhole, kNumber.forms, 3};
inline constexpr Integer kElementNumber = {
    "C.27",
    0x3F,
    0x0FFFFF,
    {{{0x00, 5, 0, 1}, {0x20, 3, 1, 33}, {0x28, 3, 2, 2081}, {0x30, 0, 3, 526369}}},
    4};
inline constexpr Integer kChunkNumber = {
    "C.28",
    0x1F,
    0x0FFFFF,
    {{{0x00, 4, 0, 1}, {0x10, 2, 1, 17}, {0x14, 2, 2, 1041}, {0x18, 0, 3, 263185}}},
    4};

/// The form whose marker an octet has, or null.
constexpr const Form* findForm(const Integer& integer, unsigned octet) {
  for (std::size_t i = 0; i < integer.count; ++i) {
    const Form& form = integer.forms[i];
    if ((octet & integer.mask) >> form.fieldBits == unsigned{form.marker} >> form.fieldBits) {
      return &form;
    }
  }
  return nullptr;
}

}  // namespace tool::octets::format
