#include "FIDecoder.h"

#include <Tavrin/Exceptions.h>

#include <iostream>
#include <limits>
#include <utility>

#include "../../io/OctetStream.h"
#include "../../typed/EncodedLength.h"
#include "../format/Octets.h"

// Reports to handlers, and the formats that this dialect decodes otherwise. A handler may remove
// itself during any event.

namespace Tavrin::fastinfoset {

namespace {

/// Where the document fails or a handler throws, the declarations of the elements that were opened
/// meanwhile are gone.
class DeclarationsOpened {
 public:
  explicit DeclarationsOpened(std::deque<std::vector<std::string>>& declarations)
      : declarations_(declarations), before_(declarations.size()) {}
  ~DeclarationsOpened() {
    while (declarations_.size() > before_) declarations_.pop_back();
  }
  DeclarationsOpened(const DeclarationsOpened&) = delete;
  DeclarationsOpened& operator=(const DeclarationsOpened&) = delete;

 private:
  std::deque<std::vector<std::string>>& declarations_;
  const std::size_t before_;
};

}  // namespace

FIDecoder::FIDecoder(const Handlers& handlers) : Decoder(kDialectFI, handlers) {}

void FIDecoder::throwFailure(const std::string& message) const { throw SAXException(message); }

void FIDecoder::beginDocument() {
  Decoder::beginDocument();
  declarations_.clear();
}

void FIDecoder::parse(std::istream& stream) {
  const DeclarationsOpened opened(declarations_);
  Decoder::parse(stream);
}

// --- Document ---

void FIDecoder::decodeHeader() {
  if (!isFastInfosetDocument()) fail("Not a Fast Infoset document");
}

/// For derived readers, which may call it again after a failure: the list begins anew.
void FIDecoder::decodeAdditionalData() {
  progress_.itemsLeft.reset();
  Decoder::decodeAdditionalData();
}

void FIDecoder::reportStartDocument() {
  if (contentHandler_) contentHandler_->startDocument();
}

void FIDecoder::reportEndDocument() {
  if (contentHandler_) contentHandler_->endDocument();
}

// What SAX2 has no event for is printed, a line each, which is flushed before the reader goes on.
void FIDecoder::reportUnused(const std::string& line) { std::cout << line << std::endl; }

void FIDecoder::reportVersion(const std::string& version) {
  reportUnused("decodeVersion - \"" + version + '"');
}

void FIDecoder::reportStandalone(unsigned) {}

void FIDecoder::reportNotation(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
}

void FIDecoder::reportUnparsedEntity(const std::string& name, const std::string& publicId,
                                     const std::string& systemId, const std::string& notation) {
  if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notation);
}

void FIDecoder::reportStartDTD(const std::string& publicId, const std::string& systemId) {
  if (lexicalHandler_) lexicalHandler_->startDTD(std::string(), publicId, systemId);
}

void FIDecoder::reportEndDTD() {
  if (lexicalHandler_) lexicalHandler_->endDTD();
}

// --- Elements ---

void FIDecoder::decodeNamespaces(std::vector<std::string>& declarations) {
  unsigned octet = readOctet();
  for (; (octet & kNamespaceDeclarationMask) == kNamespaceDeclaration; octet = readOctet()) {
    std::string prefix;
    std::string namespaceName;
    decodeDeclaration(octet, prefix, namespaceName);
    declarations.push_back(std::move(prefix));
    declarations.push_back(std::move(namespaceName));
  }
  if (octet != kTerminator) fail("Error while parsing namespaces");
}

/// For derived readers, which may decode an element of another document in between.
bool FIDecoder::decodeElement(unsigned octet) {
  const DeclarationsOpened opened(declarations_);
  return Decoder::decodeElement(octet);
}

void FIDecoder::decodeDeclarations(std::uint32_t& count) {
  std::vector<std::string> declarations;
  decodeNamespaces(declarations);
  for (std::size_t i = 0; i < declarations.size() && contentHandler_; i += 2) {
    contentHandler_->startPrefixMapping(declarations[i], declarations[i + 1]);
  }
  if (declarations.empty()) return;
  count = static_cast<std::uint32_t>(declarations.size() / 2);
  declarations_.push_back(std::move(declarations));
}

void FIDecoder::reportEndElement(const Name& name, std::uint32_t declarations) {
  if (contentHandler_)
    contentHandler_->endElement(name.namespaceName(), name.localName(), name.qName());
  if (declarations == 0) return;
  const std::vector<std::string> ended = std::move(declarations_.back());
  declarations_.pop_back();
  for (std::size_t i = 0; i < ended.size() && contentHandler_; i += 2) {
    contentHandler_->endPrefixMapping(ended[i]);
  }
}

// --- Content ---

void FIDecoder::reportCharacters(const std::string& text) {
  if (contentHandler_) contentHandler_->characters(text);
}

void FIDecoder::reportValue(unsigned field, const std::string& uri, const EncodedData& value) {
  if (contentHandler_ && field == algorithms::cdata) {
    if (lexicalHandler_) lexicalHandler_->startCDATA();
    if (contentHandler_) contentHandler_->characters(value.toString());
    if (lexicalHandler_) lexicalHandler_->endCDATA();
  } else if (primitiveTypeContentHandler_ && field < dialect_.firstApplicationAlgorithm) {
    value.callContentHandler(*primitiveTypeContentHandler_);
  } else if (encodingAlgorithmContentHandler_) {
    encodingAlgorithmContentHandler_->object(uri, static_cast<int>(field), value);
  } else if (contentHandler_) {
    contentHandler_->characters(value.toString());
  }
}

void FIDecoder::reportOctets(bool, unsigned field, const std::string& uri,
                             const std::string& octets) {
  if (!encodingAlgorithmContentHandler_) return;
  encodingAlgorithmContentHandler_->octets(uri, static_cast<int>(field), octets);
}

void FIDecoder::reportComment(const std::string& text) {
  if (lexicalHandler_) lexicalHandler_->comment(text);
}

void FIDecoder::reportProcessingInstruction(const std::string& target, const std::string& data) {
  if (contentHandler_) contentHandler_->processingInstruction(target, data);
}

void FIDecoder::reportEntityReference(const std::string& name, const std::string& publicId,
                                      const std::string& systemId) {
  reportUnused("unexpanded entity reference - name = \"" + name + "\", systemID = \"" + systemId +
               "\", publicID = \"" + publicId + '"');
}

// --- Formats that this dialect does not decode ---

void FIDecoder::decodeOtherString(unsigned octet, std::string&) {
  // Of UTF-16 the string itself is taken for the next item; of restricted alphabets and algorithms
  // so is all behind this octet.
  if ((octet & kStringEncoding) == kStringUTF16) decodeStringLength(octet);
}

void FIDecoder::decodeOtherChunk(unsigned octet, std::string&) {
  if ((octet & kChunkEncoding) == kChunkUTF16) {
    decodeCharactersLength(octet);  // The text is taken for the next item.
  } else {
    readOctet();  // The rest is taken for the next item.
  }
}

// --- Encoding algorithms ---

namespace {

bool isString(unsigned field) {
  return field == algorithms::hexadecimal || field == algorithms::base64 ||
         field == algorithms::cdata;
}

}  // namespace

/// Lets an algorithm decode its data from the stream. Algorithms do not notice its end.
EncodedData& FIDecoder::decodeData(EncodingAlgorithm& algorithm, Field data) {
  const auto [field, length] = data;
  const bool isBuiltIn = &algorithm == builtIn_.find(static_cast<int>(field));
  if (isBuiltIn) checkEncodedLength(static_cast<int>(field), length);
  // So many octets cannot be asked for, nor do they come.
  if (length > std::numeric_limits<std::uint32_t>::max()) failAtEnd();
  // A built-in algorithm takes the memory for a value before its octets.
  if (isBuiltIn && !input_.hasArrived(length)) return decodeLarge(algorithm, data);
  std::istream& stream = input_.stream();
  EncodedData& value = algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), stream);
  if (stream.fail()) failAtEnd();
  return value;
}

/// Waits for the octets of a value, and lets a built-in algorithm decode them. They are read with
/// the operation of the stream with which the algorithm would read them.
EncodedData& FIDecoder::decodeLarge(EncodingAlgorithm& algorithm, Field data) {
  const auto field = data.number;
  const auto length = data.length;
  const bool isBoolean = field == algorithms::boolean;
  const int first = isBoolean ? input_.singleOctets().get() : 0;
  if (first == OctetInput::kEnd) failAtEnd();
  const std::uint64_t taken =
      isBoolean ? octetsOfBooleans(countBooleans(static_cast<unsigned>(first), length)) : length;
  std::size_t pending = isBoolean ? 1 : 0;  // The octet that has been read already.
  std::string octets;
  const auto readPiece = [&](char* piece, std::streamsize wanted) -> std::streamsize {
    if (isString(field)) {
      input_.stream().read(piece, wanted);
      return input_.stream().gcount();
    }
    if (pending > 0) *piece = static_cast<char>(first);
    const std::size_t begin = std::exchange(pending, 0);
    return static_cast<std::streamsize>(
        begin +
        input_.singleOctets().copy(piece + begin, static_cast<std::size_t>(wanted) - begin));
  };
  if (!input_.readPieces(taken, octets, readPiece)) failAtEnd();
  OctetStream stream;
  return algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), stream.over(octets));
}

std::string FIDecoder::describeUnknown(const std::string& uri) const {
  return "Unknown encoding algorithm - " + uri;
}

std::string FIDecoder::describeUnknownVocabulary(const std::string& uri) const {
  return "Unknown external vocabulary - " + uri;
}

}  // namespace Tavrin::fastinfoset
