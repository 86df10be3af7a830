// What one writes by hand where no library is at hand: pieces straight to the stream, and a loop
// that writes runs of plain characters at once.

#include <array>
#include <string_view>
#include <utility>

#include "peers.h"

namespace peers {

namespace {

using Escapes = std::array<const char*, 256>;  // Null where a character stands for itself.

constexpr Escapes kTextEscapes = [] {
  Escapes escapes{};
  escapes['<'] = "&lt;";
  escapes['>'] = "&gt;";
  escapes['&'] = "&amp;";
  escapes['\r'] = "&#xD;";
  return escapes;
}();

constexpr Escapes kValueEscapes = [] {
  Escapes escapes{};
  escapes['<'] = "&lt;";
  escapes['&'] = "&amp;";
  escapes['\''] = "&apos;";
  escapes['\t'] = "&#x9;";
  escapes['\n'] = "&#xA;";
  escapes['\r'] = "&#xD;";
  return escapes;
}();

class EscapeLoop : public Tavrin::ContentHandler {
 public:
  explicit EscapeLoop(std::ostream& out) : out_(out) {}

  void startDocument() override { put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"); }

  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    mappings_.emplace_back(prefix, uri);
  }

  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    closeTag();
    put("<");
    put(qName);
    for (const auto& [prefix, uri] : mappings_) {
      put(prefix.empty() ? " xmlns" : " xmlns:");
      put(prefix);
      putValue(uri);
    }
    mappings_.clear();
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) {
      put(" ");
      put(attributes.getQName(i));
      putValue(attributes.getValue(i));
    }
    tagIsOpen_ = true;
  }

  void endElement(const std::string&, const std::string&, const std::string& qName) override {
    if (tagIsOpen_) {
      put("/>");
      tagIsOpen_ = false;
      return;
    }
    put("</");
    put(qName);
    put(">");
  }

  void characters(const std::string& text) override {
    closeTag();
    putEscaped(text, kTextEscapes);
  }

  void ignorableWhitespace(const std::string& text) override {
    closeTag();
    put(text);
  }

  void processingInstruction(const std::string& target, const std::string& data) override {
    closeTag();
    put("<?");
    put(target);
    put(" ");
    put(data);
    put("?>");
  }

 private:
  void put(std::string_view text) {
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  }

  void putEscaped(std::string_view text, const Escapes& escapes) {
    std::size_t written = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char* const escape = escapes[static_cast<unsigned char>(text[i])];
      if (!escape) continue;
      if (i != written) put(text.substr(written, i - written));
      put(escape);
      written = i + 1;
    }
    if (written != text.size()) put(text.substr(written));
  }

  void putValue(std::string_view value) {
    put("='");
    putEscaped(value, kValueEscapes);
    put("'");
  }

  void closeTag() {
    if (tagIsOpen_) put(">");
    tagIsOpen_ = false;
  }

  std::ostream& out_;
  std::vector<std::pair<std::string, std::string>> mappings_;  // Of the next start tag.
  bool tagIsOpen_ = false;
};

}  // namespace

std::unique_ptr<Tavrin::ContentHandler> createEscapeLoop(std::ostream& out) {
  return std::make_unique<EscapeLoop>(out);
}

}  // namespace peers
