#include <Tavrin/XMLReader_FI.h>

#include <algorithm>

#include "../Integers.h"
#include "../Octets.h"

// Octets, integers and strings (X.891, C.13, C.14 and C.21 to C.28).

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// A literal's string grows by at most this, or by as much as has arrived: what a document claims
/// never decides how much memory is taken.
constexpr std::uint64_t kFirstPiece = std::uint64_t{64} * 1024;

[[noreturn]] void throwEndOfDocument() { throw SAXException("Unexpected end of document"); }

}  // namespace

// --- Octets ---

unsigned XMLReader_FI::readOctet() {
  const int octet = stream_->get();
  if (octet == std::istream::traits_type::eof()) throwEndOfDocument();
  return static_cast<unsigned>(octet);
}

void XMLReader_FI::readOctets(std::uint64_t length, std::string& octets) {
  std::uint64_t begin = 0;
  while (begin < length) {
    const std::uint64_t piece = std::min(length - begin, std::max(begin, kFirstPiece));
    octets.resize(begin + piece);
    const auto wanted = static_cast<std::streamsize>(piece);
    if (stream_->rdbuf()->sgetn(octets.data() + begin, wanted) != wanted) throwEndOfDocument();
    begin += piece;
  }
  octets.resize(length);
}

// --- Integers ---

template <typename Encoding>
unsigned long XMLReader_FI::decodeInteger(const Encoding& encoding, int octet,
                                          const char* message) {
  const auto first = static_cast<unsigned>(octet);
  const IntegerForm* form = findForm(encoding, first);
  if (form == nullptr) throw SAXException(message);
  unsigned long field = firstField(*form, first);
  for (unsigned i = 0; i < form->octets; ++i) field = field << 8 | readOctet();
  return field + form->bias;  // In 64 bits: the sum may pass 32.
}

unsigned long XMLReader_FI::decodeIndex(int octet) {
  return decodeInteger(kIndex, octet, "Error when decoding index");
}

unsigned long XMLReader_FI::decodeElementIndex(int octet) {
  const unsigned long index =
      decodeInteger(kElementIndex, octet, "Error when decoding element name");
  const IntegerForm& longest = kElementIndex.forms.back();
  if (index < longest.bias) return index;
  return ((index - longest.bias) & kElementIndexLongestField) + longest.bias;
}

unsigned long XMLReader_FI::decodeCharactersIndex(int octet) {
  return decodeInteger(kCharactersIndex, octet, "Error when decoding character chunk");
}

unsigned long XMLReader_FI::decodeIdentifierLength(int octet) {
  return decodeInteger(kIdentifierLength, octet, "Error when parsing identifier");
}

unsigned long XMLReader_FI::decodeStringLength(int octet) {
  return decodeInteger(kStringLength, octet, "Error when decoding string length");
}

unsigned long XMLReader_FI::decodeCharactersLength(int octet) {
  return decodeInteger(kCharactersLength, octet, "Error when decoding character chunk");
}

unsigned long XMLReader_FI::decodeNumberOfItems() {
  const unsigned octet = readOctet();
  if (octet < kItemCountLong) return octet;
  unsigned long count = octet & kItemCountLongBits;
  for (int i = 0; i < 2; ++i) count = count << 8 | readOctet();
  return count;
}

// --- Strings ---

std::string XMLReader_FI::getString(unsigned long index, const std::vector<std::string>* table,
                                    const StringTable* external) const {
  static const char* const kInvalidIndex = "Error when decoding string - invalid index";
  if (external != nullptr) {
    if (index < external->definedCount) {
      const char* text = external->entries[index];
      return text ? text : std::string();
    }
    if (index < external->occupiedCount) throw SAXException(kInvalidIndex);
    index -= external->occupiedCount;
  }
  if (table == nullptr) throw SAXException("Error when decoding string");
  if (index >= table->size()) throw SAXException(kInvalidIndex);
  return (*table)[index];
}

void XMLReader_FI::decodeString(int octet, std::vector<std::string>* table,
                                const StringTable* external, std::string& out) {
  const auto first = static_cast<unsigned>(octet);
  if (first == kEmptyString) {
    out.clear();
    return;
  }
  if (first & kStringIndex) {
    out = getString(decodeIndex(octet), table, external);
    return;
  }
  switch (first & kStringEncoding) {
    case kStringUTF8:
      readOctets(decodeStringLength(octet), out);
      break;
    case kStringUTF16:
      decodeStringLength(octet);  // The string itself is taken for the next item.
      break;
    default:  // Restricted alphabets and algorithms: so is what follows of the string.
      break;
  }
  if ((first & kStringAddToTable) && table != nullptr) table->push_back(out);
}

void XMLReader_FI::decodeString(std::vector<std::string>* table, const StringTable* external,
                                std::string& out) {
  decodeString(static_cast<int>(readOctet()), table, external, out);
}

void XMLReader_FI::decodeIdentifier(std::vector<std::string>* table, std::string& out) {
  const auto octet = static_cast<int>(readOctet());
  if (static_cast<unsigned>(octet) & kStringIndex) {
    if (table == nullptr) throw SAXException("Error when parsing identifier");
    out = getString(decodeIndex(octet), table, nullptr);
    return;
  }
  readOctets(decodeIdentifierLength(octet), out);
  if (table != nullptr) table->push_back(out);
}

}  // namespace Tavrin
