#include <algorithm>

#include "octets/Scanner.h"

// Documents and their items: header, optional components but the initial vocabulary, children,
// and what is neither an element nor characters (X.891, clause 12, C.2, C.5, C.6 and C.8 to C.11).

namespace tool::octets {

namespace {

constexpr char kAnyDocument[] =
    "a Fast Infoset document: the octets e0 00 00 01 (12.6), or before them an XML declaration of "
    "the encoding finf (12.3)";
constexpr char kAnyChild[] =
    "an element, a processing instruction, a comment, a document type declaration or the end of "
    "the document (C.2.11)";

std::string listOf(const char* separator, std::initializer_list<std::pair<bool, const char*>> all) {
  std::string list;
  for (const auto& [isThere, what] : all) {
    if (!isThere) continue;
    list += list.empty() ? "" : separator;
    list += what;
  }
  return list;
}

const std::string kNoPath;

}  // namespace

void Scanner::scanDocument() {
  tables_ = {};
  alphabets_.clear();
  for (unsigned number = 1; number <= format::kLastBuiltInAlphabet; ++number) {
    alphabets_.emplace(number, Alphabet(tables_.strings(kAlphabets).find(number)->text));
  }
  hasRoot_ = false;
  hasDocumentType_ = false;
  if (++documents_ > 1) {
    note_.clear();
    form_.comment(0, note_.add("document ", documents_));
  }
  scanHeader();
  scanComponents();
  for (bool ended = false; !ended;) {
    const bool isInside = open_.count() > 0;
    ended = isInside ? scanContentItem() : scanChild();
  }
}

void Scanner::scanHeader() {
  std::string_view octets = cursor_.view(format::kDeclarations[4].size());
  if (octets.starts_with('<')) {
    const auto found = std::ranges::find_if(
        format::kDeclarations, [&](const auto& each) { return octets.starts_with(each); });
    if (found == format::kDeclarations.end()) {
      const auto length = [&](std::string_view each) -> std::size_t {
        return static_cast<std::size_t>(std::ranges::mismatch(each, octets).in1 - each.begin());
      };
      std::size_t longest = 0;
      for (const auto each : format::kDeclarations) longest = std::max(longest, length(each));
      fail(kAnyDocument, longest);
    }
    note_.begin("XML declaration", "12.3");
    extraLevels_ = 0;
    std::string_view rest = *found;
    for (const char* clause = "12.3"; !rest.empty(); clause = nullptr) {
      const std::size_t size = std::min(rest.size(), TextForm::kMostOctets);
      if (clause != nullptr) {
        note_.begin("XML declaration", clause).add(": ");
      } else {
        note_.clear();
      }
      note_.quote({std::string(rest.substr(0, size))});
      writeAt(0, size);
      rest.remove_prefix(size);
    }
  }
  octets = cursor_.view(format::kHeader.size());
  for (std::size_t i = 0; i < format::kHeader.size(); ++i) {
    if (octets.size() <= i || octets[i] != format::kHeader[i]) fail(kAnyDocument, i);
  }
  note_.begin("Fast Infoset", "12.6, 12.7").add(", version 1 of the standard");
  writeAt(0, format::kHeader.size());
}

// --- Optional components (C.2.4 to C.2.10) ---

void Scanner::scanComponents() {
  const unsigned octet = octetAhead(0, "the optional components (C.2)");
  if ((octet & format::kComponentsPadding) != 0) fail("a padding bit of zero (12.8)");
  const auto has = [octet](unsigned bit) { return (octet & bit) != 0; };
  const std::string list =
      listOf(", ", {{has(format::kAdditionalData), "additional data"},
                    {has(format::kInitialVocabulary), "initial vocabulary"},
                    {has(format::kNotations), "notations"},
                    {has(format::kUnparsedEntities), "unparsed entities"},
                    {has(format::kCharacterEncodingScheme), "character encoding scheme"},
                    {has(format::kStandalone), "standalone"},
                    {has(format::kVersion), "version"}});
  note_.begin("document", "C.2").add(list.empty() ? "" : ": ").add(list);
  writeAt(0, 1);
  if (has(format::kAdditionalData)) scanAdditionalData();
  if (has(format::kInitialVocabulary)) scanVocabulary();
  if (has(format::kNotations)) scanNotations();
  if (has(format::kUnparsedEntities)) scanUnparsedEntities();
  if (has(format::kCharacterEncodingScheme)) {
    scanIdentifier("character encoding scheme", kNoTable);
  }
  if (has(format::kStandalone)) scanStandalone();
  if (has(format::kVersion)) scanString("version", "C.2.10, C.14", kOtherStrings, kNoPath);
}

void Scanner::scanAdditionalData() {
  const std::uint64_t count = scanCount("additional data", ~std::uint64_t{0});
  ++extraLevels_;
  for (std::uint64_t i = 0; i < count; ++i) {
    scanIdentifier("identifier", kNoTable);
    scanIdentifier("data", kNoTable);
  }
  --extraLevels_;
}

void Scanner::scanNotations() {
  constexpr char kExpected[] = "a notation or the end of the notations (C.2.6)";
  for (unsigned octet = octetAhead(0, kExpected);
       (octet & format::kIdentifiersMask) == format::kNotation; octet = octetAhead(0, kExpected)) {
    note_.begin("notation", "C.2.6, C.11");
    write(1);
    ++extraLevels_;
    scanIdentifier("name", kOtherNCNames);
    scanIdentifiers(octet);
    --extraLevels_;
  }
  if (octetAhead(0, kExpected) != format::kTerminator) fail(kExpected);
  note_.begin("end of the notations", "C.2.6");
  write(1);
}

void Scanner::scanUnparsedEntities() {
  constexpr char kExpected[] = "an unparsed entity or the end of the unparsed entities (C.2.7)";
  for (unsigned octet = octetAhead(0, kExpected);
       (octet & format::kUnparsedEntityMask) == format::kUnparsedEntity;
       octet = octetAhead(0, kExpected)) {
    note_.begin("unparsed entity", "C.2.7, C.10");
    write(1);
    ++extraLevels_;
    scanIdentifier("name", kOtherNCNames);
    scanIdentifiers(format::kSystemIdentifier | (octet & format::kPublicIdentifier));
    scanIdentifier("notation name", kOtherNCNames);
    --extraLevels_;
  }
  if (octetAhead(0, kExpected) != format::kTerminator) fail(kExpected);
  note_.begin("end of the unparsed entities", "C.2.7");
  write(1);
}

void Scanner::scanStandalone() {
  const unsigned octet = octetAhead(0, "standalone (C.2.9)");
  if (octet > 1) fail("standalone (C.2.9): 00 or 01");
  note_.begin("standalone", "C.2.9").add(": ").value(octet == 1 ? "yes" : "no");
  write(1);
}

// --- Children (C.2.11) ---

/// @return true when it was the end of the document
bool Scanner::scanChild() {
  const unsigned octet = octetAhead(0, hasRoot_ ? kAnyChild : "an element (C.2.11)");
  if (octet < format::kFirstNonElement) {
    if (hasRoot_) fail("no second element in the document (C.2.11)");
    hasRoot_ = true;
    scanElement(octet);
    return false;
  }
  switch (octet) {
    case format::kInstruction:
      scanInstruction();
      return false;
    case format::kComment:
      scanComment();
      return false;
    case format::kTerminator:
    case format::kDoubleTerminator:
      if (!hasRoot_) fail("an element before the end of the document (C.2.11)");
      endDocument();
      return true;
    default:
      if ((octet & format::kIdentifiersMask) != format::kDocumentType) fail(kAnyChild);
      return scanDocumentType(octet);
  }
}

void Scanner::endDocument() {
  note_.begin("end of the document", "C.2.12");
  writeAt(0, 1);
}

/// @return true when the document has ended with it
bool Scanner::scanDocumentType(unsigned octet) {
  if (hasRoot_) fail("a document type declaration before the element only (C.2.11)");
  if (hasDocumentType_) fail("no second document type declaration (C.2.11)");
  hasDocumentType_ = true;
  note_.begin("document type declaration", "C.9");
  write(1);
  ++extraLevels_;
  scanIdentifiers(octet);
  constexpr char kExpected[] =
      "a processing instruction or the end of the document type declaration (C.9)";
  unsigned next = octetAhead(0, kExpected);
  for (; next == format::kInstruction; next = octetAhead(0, kExpected)) scanInstruction();
  --extraLevels_;
  // A double terminator ends the document as well, which has no element yet.
  if (next == format::kDoubleTerminator) fail("an element before the end of the document (C.2.11)");
  if (next != format::kTerminator) fail(kExpected);
  note_.begin("end of the document type declaration", "C.9");
  write(1);
  return false;
}

// --- Items ---

void Scanner::scanInstruction() {
  note_.begin("processing instruction", "C.5").path(open_.path());
  write(1);
  ++extraLevels_;
  scanIdentifier("target", kOtherNCNames);
  scanString("content", "C.14", kOtherStrings, kNoPath);
  --extraLevels_;
}

void Scanner::scanComment() {
  note_.begin("comment", "C.8").path(open_.path());
  write(1);
  ++extraLevels_;
  scanString("content", "C.14", kOtherStrings, kNoPath);
  --extraLevels_;
}

void Scanner::scanEntityReference(unsigned octet) {
  note_.begin("unexpanded entity reference", "C.6").path(open_.path());
  write(1);
  ++extraLevels_;
  scanIdentifier("name", kOtherNCNames);
  scanIdentifiers(octet);
  --extraLevels_;
}

/// Those that the low bits of an octet announce.
void Scanner::scanIdentifiers(unsigned octet) {
  if ((octet & format::kSystemIdentifier) != 0) scanIdentifier("system identifier", kOtherURIs);
  if ((octet & format::kPublicIdentifier) != 0) scanIdentifier("public identifier", kOtherURIs);
}

}  // namespace tool::octets
