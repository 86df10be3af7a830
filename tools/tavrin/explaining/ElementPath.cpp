#include "explaining/ElementPath.h"

namespace tool {

namespace {

constexpr std::size_t kLongestName = 100;
constexpr std::size_t kLongestPath = 1000;  // In elements.

Tavrin::ContentHandler nobody;

/// The beginning of a name; characters stay whole.
void appendName(std::string& path, const std::string& name) {
  std::size_t size = name.size();
  if (size > kLongestName) {
    size = kLongestName;
    while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80) --size;
  }
  path.append(1, '/').append(name, 0, size);
  if (size < name.size()) path += "...";
}

}  // namespace

ElementPath::ElementPath(Tavrin::XMLReader& reader)
    : reader_(reader), before_(reader.getContentHandler()), next_(before_ ? *before_ : nobody) {
  reader_.setContentHandler(this);
}

ElementPath::~ElementPath() { reader_.setContentHandler(before_); }

std::string ElementPath::text() const {
  return deeper_ == 0 ? path_
                      : path_ + "/... (" + std::to_string(ends_.size() + deeper_) + " deep)";
}

void ElementPath::startElement(const std::string& uri, const std::string& localName,
                               const std::string& qName, const Tavrin::Attributes& attributes) {
  if (ends_.size() < kLongestPath) {
    ends_.push_back(path_.size());
    appendName(path_, qName);
  } else {
    ++deeper_;
  }
  next_.startElement(uri, localName, qName, attributes);
}

void ElementPath::endElement(const std::string& uri, const std::string& localName,
                             const std::string& qName) {
  next_.endElement(uri, localName, qName);
  if (deeper_ > 0) {
    --deeper_;
  } else {
    path_.resize(ends_.back());
    ends_.pop_back();
  }
}

// --- What is only handed on ---

void ElementPath::setDocumentLocator(const Tavrin::Locator* locator) {
  next_.setDocumentLocator(locator);
}

void ElementPath::startDocument() { next_.startDocument(); }

void ElementPath::endDocument() { next_.endDocument(); }

void ElementPath::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  next_.startPrefixMapping(prefix, uri);
}

void ElementPath::endPrefixMapping(const std::string& prefix) { next_.endPrefixMapping(prefix); }

void ElementPath::characters(const std::string& text) { next_.characters(text); }

void ElementPath::ignorableWhitespace(const std::string& text) { next_.ignorableWhitespace(text); }

void ElementPath::processingInstruction(const std::string& target, const std::string& data) {
  next_.processingInstruction(target, data);
}

void ElementPath::skippedEntity(const std::string& name) { next_.skippedEntity(name); }

}  // namespace tool
