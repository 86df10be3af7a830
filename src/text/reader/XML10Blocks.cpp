#include <algorithm>
#include <new>
#include <sstream>
#include <typeinfo>

#include "CharacterEncodings.h"
#include "XML10Driver.h"

// The octets of documents and entities, as they come from streams and in blocks, on their way to
// expat or to the scanner.

namespace Tavrin::text {

namespace {

/// How many octets a stream's buffer has, and no more than `most`; 0 at its end. Where it has none,
/// it waits for one.
std::streamsize countArrived(std::streambuf* source, std::streamsize most) {
  if (source == nullptr || source->sgetc() == std::streambuf::traits_type::eof()) return 0;
  return std::clamp<std::streamsize>(source->in_avail(), 1, most);
}

/// Whether a stream's buffer has no more octets, as far as it can be told without waiting.
bool isKnownToEnd(std::streambuf& source) {
  if (source.in_avail() < 0) return true;
  const bool neverWaits = typeid(source) == typeid(std::stringbuf);  // A derived class may.
  return neverWaits && source.sgetc() == std::streambuf::traits_type::eof();
}

bool showsEncoding(std::string_view start) {
  return encodingOfEntity(start.substr(0, kLongestDeclaration)).has_value();
}

}  // namespace

XML_Status XML10Driver::parseEntity(std::istream& stream, bool isFirst) {
  gate_.settle();  // The stream may throw.
  // The stream's buffer is read, so that the stream's state has no influence.
  std::streamsize arrived = countArrived(stream.rdbuf(), kMostRead);
  for (; arrived > 0; isFirst = false) {
    // Room for no more than that: to allocate it takes longer than to read a small document.
    const auto size = std::max<std::streamsize>(arrived, kLongestDeclaration);
    char* const block = roomFor(static_cast<int>(size));
    if (block == nullptr) return XML_STATUS_ERROR;
    std::string_view octets;
    do {
      char* const free = block + octets.size();
      const std::streamsize count = stream.rdbuf()->sgetn(free, arrived);
      octets = {block, octets.size() + static_cast<std::size_t>(count)};
      const bool needsMore = isFirst && !showsEncoding(octets);
      arrived = needsMore ? countArrived(stream.rdbuf(), block + size - octets.end()) : 0;
    } while (arrived > 0);
    const bool wasScanned = isScanned();
    if (isFirst) chooseEncoding(octets);
    // After a block that is not the last one, expat counts its lines. Measured: small documents are
    // read in a tenth less time where the last one is known.
    const bool isLast = isKnownToEnd(*stream.rdbuf());
    const XML_Status status = wasScanned ? parseScanned(octets, isLast) : parseRoom(octets, isLast);
    if (status != XML_STATUS_OK || isLast) return status;
    if (isPaused() && !document_->isInExternalEntity()) return XML_STATUS_SUSPENDED;
    gate_.settle();
    nameOpenElements();
    arrived = countArrived(stream.rdbuf(), kMostRead);
  }
  if (isScanned()) return scan(document_->waiting.all(), true);
  if (isInProlog()) return parseProlog({}, true);
  const OpenEntity& entity = document_->current();
  return entity.recoder ? parseRecoded(entity.parser, *entity.recoder, {}, true)
                        : XML_Parse(entity.parser, "", 0, XML_TRUE);
}

/// Room for the next octets of the current entity, or null.
char* XML10Driver::roomFor(int size) {
  if (isScanned() || isInProlog()) {
    return document_->waiting.roomFor(static_cast<std::size_t>(size));
  }
  return static_cast<char*>(XML_GetBuffer(document_->current().parser, size));
}

/// Parses what has been written there.
XML_Status XML10Driver::parseRoom(std::string_view octets, bool areLast) {
  if (isInProlog()) {
    document_->waiting.add(octets.size());
    const XML_Status status = parseProlog(octets, areLast);
    if (!isScanned()) document_->waiting = {};
    return status;
  }
  const OpenEntity& entity = document_->current();
  return entity.recoder ? parseRecoded(entity.parser, *entity.recoder, octets, areLast)
                        : XML_ParseBuffer(entity.parser, static_cast<int>(octets.size()), areLast);
}

/// Likewise, if it was to be scanned.
XML_Status XML10Driver::parseScanned(std::string_view octets, bool areLast) {
  if (!isScanned()) return parseBlock(octets.data(), octets.size(), areLast);
  document_->waiting.add(octets.size());
  return scan(document_->waiting.all(), areLast);
}

XML_Status XML10Driver::parseRecoded(XML_Parser parser, Recoder& recoder, std::string_view octets,
                                     bool areLast) {
  const std::string_view text = recoder.convert(octets, areLast);
  // Where the octets were not valid, expat fails here and now.
  const bool isLast = areLast || recoder.hasFailed();
  return XML_Parse(parser, text.data(), static_cast<int>(text.size()),
                   isLast ? XML_TRUE : XML_FALSE);
}

void XML10Driver::chooseEncoding(std::string_view start) {
  const std::string_view first = start.substr(0, kLongestDeclaration);
  const EntityEncoding encoding = encodingOfEntity(first).value_or(EntityEncoding{});
  if (isScanned() && encoding.way != EntityEncoding::Way::Expat) createParser();
  if (encoding.way == EntityEncoding::Way::Recoded) {
    document_->current().recoder = std::make_unique<Recoder>(encoding.name);
  }
  if (encoding.way != EntityEncoding::Way::Expat) {
    XML_Parser parser = document_->current().parser;
    if (XML_SetEncoding(parser, "UTF-8") != XML_STATUS_OK) throw std::bad_alloc();
    return;
  }
  const auto isAt = [start](std::size_t i, char octet) {
    return i < start.size() && start[i] == octet;
  };
  // UTF-16, with a byte order mark or without.
  const bool isUTF16 = isAt(0, '\xFE') || isAt(0, '\xFF') || isAt(0, '\0') || isAt(1, '\0');
  if (isUTF16) document_->checksNames = true;
}

XML_Status XML10Driver::parseFirstBlocks(const char* block, unsigned long size, bool isFinal) {
  // Most often the first block is enough to find the encoding. Then it is not copied.
  std::string& start = *document_->start;
  const std::string_view front(block, std::min<std::size_t>(size, kLongestDeclaration));
  const bool isFirst = start.empty();
  if (!isFirst) start += front;
  const std::string_view known = isFirst ? front : std::string_view(start);
  if (!isFinal && !showsEncoding(known)) {
    if (isFirst) start = front;
    return XML_STATUS_OK;
  }
  chooseEncoding(known);
  const std::string kept = std::move(start);
  document_->start.reset();
  if (isFirst) return parseBlock(block, size, isFinal);
  if (isScanned()) {
    document_->waiting.append(kept.data(), kept.size() - front.size());
    return scanBlock(block, size, isFinal);
  }
  const bool isAll = front.size() == size;
  const XML_Status status = parseBlock(kept.data(), kept.size(), isFinal && isAll);
  if (isAll) return status;
  if (status == XML_STATUS_SUSPENDED) {
    document_->rest.append(block + front.size(), size - front.size());
  }
  if (status != XML_STATUS_OK) return status;
  return parseBlock(block + front.size(), size - front.size(), isFinal);
}

XML_Status XML10Driver::parseBlock(const char* block, unsigned long size, bool isFinal) {
  if (isScanned()) return scanBlock(block, size, isFinal);
  if (isInProlog()) return parseProlog({block, size}, isFinal);
  return parseByExpat(block, size, isFinal);
}

XML_Status XML10Driver::parseByExpat(const char* block, unsigned long size, bool isFinal) {
  Recoder* const recoder = document_->current().recoder.get();
  for (; recoder && size > kMostRead; size -= kMostRead, block += kMostRead) {
    const XML_Status status = parseRecoded(parser_.get(), *recoder, {block, kMostRead}, false);
    if (status == XML_STATUS_SUSPENDED) {
      document_->rest.assign(block + kMostRead, size - kMostRead);
    }
    if (status != XML_STATUS_OK) return status;
    nameOpenElements();
  }
  // To expat, the size is an int.
  constexpr unsigned long kMost = 1UL << 30;
  for (; size > kMost; size -= kMost, block += kMost) {
    const XML_Status status = XML_Parse(parser_.get(), block, static_cast<int>(kMost), XML_FALSE);
    if (status == XML_STATUS_SUSPENDED) document_->rest.assign(block + kMost, size - kMost);
    if (status != XML_STATUS_OK) return status;
    nameOpenElements();
  }
  const XML_Status status = recoder
                                ? parseRecoded(parser_.get(), *recoder, {block, size}, isFinal)
                                : XML_Parse(parser_.get(), block, static_cast<int>(size), isFinal);
  if (status == XML_STATUS_OK && !isFinal) nameOpenElements();
  return status;
}

XML_Status XML10Driver::continueParse() {
  XML_Status status = XML_STATUS_OK;
  const bool isStream = document_->stream != nullptr;
  if (document_->scanner) {
    const bool areLast = !isStream && document_->isFinal && document_->rest.empty();
    status = scan(document_->waiting.all(), areLast);
    if (status != XML_STATUS_OK) return status;
  } else {
    XML_ParsingStatus parsing = {};
    XML_GetParsingStatus(parser_.get(), &parsing);
    // Where what was read has ended in an entity, expat was not suspended.
    if (parsing.parsing == XML_SUSPENDED) status = XML_ResumeParser(parser_.get());
    if (status != XML_STATUS_OK) return status;
    XML_GetParsingStatus(parser_.get(), &parsing);
    if (parsing.parsing == XML_FINISHED) return status;
    nameOpenElements();
  }
  const std::string rest = std::exchange(document_->rest, {});
  const bool isFinal = !isStream && document_->isFinal;
  if (!rest.empty()) status = parseBlock(rest.data(), rest.size(), isFinal);
  return isStream && status == XML_STATUS_OK ? parseEntity(*document_->stream, false) : status;
}

}  // namespace Tavrin::text
