#include "WellFormedChecker.h"

namespace x891_test {

namespace {

constexpr char32_t kNone = 0xFFFFFFFF;

/// The characters of a UTF-8 text; kNone where it is none.
std::vector<char32_t> charactersOf(const std::string& text) {
  std::vector<char32_t> all;
  for (std::size_t i = 0; i < text.size();) {
    const auto first = static_cast<unsigned char>(text[i++]);
    int more = first < 0x80 ? 0 : first < 0xC0 ? -1 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    if (more < 0 || first > 0xF7) return {kNone};
    const int length = more + 1;
    char32_t c = length == 1 ? first : first & (0x7FU >> length);
    for (; more > 0; --more) {
      if (i == text.size()) return {kNone};
      const auto next = static_cast<unsigned char>(text[i++]);
      if (next < 0x80 || next > 0xBF) return {kNone};
      c = c << 6 | (next & 0x3FU);
    }
    const char32_t least[] = {0, 0x80, 0x800, 0x10000};
    if (c < least[length - 1] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return {kNone};
    all.push_back(c);
  }
  return all;
}

/// XML 1.0, production 2.
bool isChar(char32_t c) {
  return c == 9 || c == 10 || c == 13 || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// Production 4, without the colon.
bool isNameStart(char32_t c) {
  return (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z') || (c >= 0xC0 && c <= 0xD6) ||
         (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) || (c >= 0x370 && c <= 0x37D) ||
         (c >= 0x37F && c <= 0x1FFF) || c == 0x200C || c == 0x200D ||
         (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
         (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
         (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

bool isNCName(const std::string& name) {
  bool isFirst = true;
  for (const char32_t c : charactersOf(name)) {
    const bool isRest = c == '-' || c == '.' || (c >= '0' && c <= '9') || c == 0xB7 ||
                        (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
    if (!isNameStart(c) && (isFirst || !isRest)) return false;
    isFirst = false;
  }
  return !isFirst;
}

bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

}  // namespace

void Checker::expect(bool holds, const char* otherwise) {
  if (!holds && mistake.empty()) mistake = otherwise;
}

/// Each event but the first and last.
void Checker::begin() {
  ++events;
  expect(place_ == kInside, "event outside the document");
}

void Checker::checkText(const std::string& text) {
  for (const char32_t c : charactersOf(text)) expect(isChar(c), "character");
}

void Checker::checkName(const std::string& name) { expect(isNCName(name), "name"); }

void Checker::checkIds(const std::string& publicId, const std::string& systemId) {
  checkText(systemId);
  expect(!has(systemId, "'") || !has(systemId, "\""), "system identifier");
  const std::string allowed =
      " \r\n-'()+,./:=?;!*#@$_%abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  expect(publicId.find_first_not_of(allowed) == std::string::npos, "public identifier");
}

std::string Checker::boundTo(const std::string& prefix) const {
  if (prefix == "xml") return "http://www.w3.org/XML/1998/namespace";
  for (std::size_t i = mappings_.size(); i-- > 0;) {
    if (mappings_[i].first == prefix) return mappings_[i].second;
  }
  return "";
}

void Checker::checkQName(const std::string& uri, const std::string& localName,
                         const std::string& qName, bool isAttribute) {
  checkName(localName);
  const std::size_t colon = qName.find(':');
  if (colon == std::string::npos) {
    expect(qName == localName, "qualified name");
    expect(uri == (isAttribute ? "" : boundTo("")), "namespace of a name without a prefix");
    expect(!isAttribute || qName != "xmlns", "attribute that declares a namespace");
    return;
  }
  const std::string prefix = qName.substr(0, colon);
  checkName(prefix);
  expect(qName.substr(colon + 1) == localName, "qualified name");
  expect(!uri.empty() && uri == boundTo(prefix), "namespace of a prefix");
}

void Checker::startDocument() {
  expect(place_ == kBefore, "second start");
  place_ = kInside;
}

void Checker::endDocument() {
  expect(place_ == kInside && open_.empty() && rootSeen_ && ended_.empty() && mappings_.empty() &&
             pending_ == 0 && !inDTD_ && !inCDATA_,
         "end in the middle");
  place_ = kBehind;
}

void Checker::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  begin();
  expect(ended_.empty() && !inDTD_ && !inCDATA_, "mapping in the wrong place");
  if (!prefix.empty()) checkName(prefix);
  checkText(uri);
  const std::string xml = "http://www.w3.org/XML/1998/namespace";
  expect((prefix == "xml") == (uri == xml) && prefix != "xmlns" &&
             uri != "http://www.w3.org/2000/xmlns/",
         "reserved prefix or namespace");
  for (std::size_t i = mappings_.size() - pending_; i < mappings_.size(); ++i) {
    expect(mappings_[i].first != prefix, "prefix declared twice");
  }
  mappings_.emplace_back(prefix, uri);
  ++pending_;
}

void Checker::endPrefixMapping(const std::string& prefix) {
  begin();
  const bool isNext = !ended_.empty() && ended_.back() == prefix;
  expect(isNext, "end of no mapping");
  if (isNext) ended_.pop_back();
}

void Checker::startElement(const std::string& uri, const std::string& localName,
                           const std::string& qName, const Tavrin::Attributes& attributes) {
  begin();
  expect(ended_.empty() && !inDTD_ && !inCDATA_, "element in the wrong place");
  expect(!open_.empty() || !rootSeen_, "second root");
  if (!rootSeen_ && dtdSeen_) expect(rootName_ == qName, "name of the document type");
  rootSeen_ = true;
  checkQName(uri, localName, qName, false);
  std::set<std::string> qNames;
  std::set<std::pair<std::string, std::string>> names;
  for (int i = 0; i < attributes.getLength(); ++i) {
    checkQName(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i), true);
    checkText(attributes.getValue(i));
    expect(qNames.insert(attributes.getQName(i)).second, "attribute twice");
    expect(names.emplace(attributes.getURI(i), attributes.getLocalName(i)).second,
           "attribute twice");
  }
  open_.push_back({uri, localName, qName, mappings_.size() - pending_});
  pending_ = 0;
}

void Checker::endElement(const std::string& uri, const std::string& localName,
                         const std::string& qName) {
  begin();
  expect(!open_.empty() && pending_ == 0 && ended_.empty() && !inCDATA_, "end of no element");
  if (open_.empty()) return;
  const Element& last = open_.back();
  expect(last.uri == uri && last.localName == localName && last.qName == qName,
         "end of another element");
  for (std::size_t i = last.mappings; i < mappings_.size(); ++i) {
    ended_.push_back(mappings_[i].first);
  }
  mappings_.resize(last.mappings);
  open_.pop_back();
}

void Checker::characters(const std::string& text) {
  begin();
  expect(!open_.empty() && pending_ == 0 && ended_.empty(), "text in the wrong place");
  expect(!text.empty(), "no text");
  checkText(text);
}

void Checker::processingInstruction(const std::string& target, const std::string& data) {
  begin();
  expect(pending_ == 0 && ended_.empty() && !inCDATA_, "instruction in the wrong place");
  checkName(target);
  const bool isReserved = target.size() == 3 && (target[0] == 'x' || target[0] == 'X') &&
                          (target[1] == 'm' || target[1] == 'M') &&
                          (target[2] == 'l' || target[2] == 'L');
  expect(!isReserved, "reserved target");
  checkText(data);
  expect(!has(data, "?>") && data.find_first_of(" \t\r\n") != 0, "data of an instruction");
}

void Checker::skippedEntity(const std::string& name) {
  begin();
  expect(!open_.empty() && pending_ == 0 && ended_.empty() && !inCDATA_, "entity");
  checkName(name);
}

void Checker::startDTD(const std::string& name, const std::string& publicId,
                       const std::string& systemId) {
  begin();
  expect(!dtdSeen_ && !rootSeen_ && pending_ == 0, "document type in the wrong place");
  dtdSeen_ = inDTD_ = true;
  rootName_ = name;
  checkIds(publicId, systemId);  // The public one may stand alone.
}

void Checker::endDTD() {
  begin();
  expect(inDTD_, "end of no document type");
  inDTD_ = false;
}

void Checker::startCDATA() {
  begin();
  expect(!open_.empty() && pending_ == 0 && ended_.empty() && !inCDATA_, "section");
  inCDATA_ = true;
}

void Checker::endCDATA() {
  begin();
  expect(inCDATA_, "end of no section");
  inCDATA_ = false;
}

void Checker::comment(const std::string& text) {
  begin();
  expect(pending_ == 0 && ended_.empty() && !inCDATA_, "comment in the wrong place");
  checkText(text);
  expect(!has(text + "-", "--"), "comment with hyphens");
}

void Checker::notationDecl(const std::string& name, const std::string& publicId,
                           const std::string& systemId) {
  begin();
  expect(inDTD_, "notation outside the document type");
  checkName(name);
  checkIds(publicId, systemId);
  expect(!publicId.empty() || !systemId.empty(), "notation without identifiers");
}

void Checker::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId, const std::string& notation) {
  begin();
  expect(inDTD_, "entity outside the document type");
  checkName(name);
  checkName(notation);
  checkIds(publicId, systemId);
}

void Checker::octets(const std::string& uri, int index, const std::string&) {
  begin();
  expect(!open_.empty() && pending_ == 0 && ended_.empty() && !inCDATA_ && index >= 31,
         "octets in the wrong place");
  checkText(uri);
}

void Checker::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  begin();
  expect(
      !open_.empty() && pending_ == 0 && ended_.empty() && !inCDATA_ && (index <= 8 || index >= 31),
      "value in the wrong place");
  checkText(uri);
  if (index <= 8) checkText(data.toString());
}

}  // namespace x891_test
