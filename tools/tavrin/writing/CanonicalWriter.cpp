#include "writing/CanonicalWriter.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <numeric>
#include <tuple>

namespace tool {

namespace {

constexpr std::size_t kEnoughToSend = std::size_t{64} << 10U;

/// What is written in place of some characters.
class Escapes {
 public:
  constexpr Escapes(std::initializer_list<std::pair<char, std::string_view>> escapes) {
    for (const auto& [character, reference] : escapes) at(character) = reference;
  }

  void append(std::string& out, std::string_view text) const {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const std::string_view reference = at(text[i]);
      if (reference.empty()) continue;
      out.append(text, begin, i - begin).append(reference);
      begin = i + 1;
    }
    out.append(text, begin);
  }

 private:
  constexpr std::string_view& at(char c) { return references_[static_cast<unsigned char>(c)]; }
  constexpr const std::string_view& at(char c) const {
    return references_[static_cast<unsigned char>(c)];
  }

  std::array<std::string_view, 256> references_{};
};

constexpr Escapes kTextEscapes{{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'\r', "&#xD;"}};
constexpr Escapes kValueEscapes{{'&', "&amp;"},  {'<', "&lt;"},   {'"', "&quot;"},
                                {'\t', "&#x9;"}, {'\n', "&#xA;"}, {'\r', "&#xD;"}};
constexpr Escapes kOtherEscapes{{'\r', "&#xD;"}};

std::string prefixOf(const std::string& qName) {
  const std::size_t colon = qName.find(':');
  return colon == std::string::npos ? std::string() : qName.substr(0, colon);
}

/// Whether a URI has a scheme (RFC 3986, section 3.1).
bool isAbsolute(std::string_view uri) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto isOther = [](char c) {
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
  };
  const std::string_view scheme = uri.substr(0, std::min(uri.find(':'), uri.size()));
  return scheme.size() < uri.size() && !scheme.empty() && isLetter(scheme[0]) &&
         std::all_of(scheme.begin(), scheme.end(),
                     [&](char c) { return isLetter(c) || isOther(c); });
}

}  // namespace

// --- Document ---

void CanonicalWriter::startDocument() { check_.startDocument(); }

void CanonicalWriter::endDocument() {
  check_.endDocument();
  send(0);
}

/// Writes what is composed once there is enough of it.
void CanonicalWriter::send(std::size_t enough) {
  if (composed_.size() < enough) return;
  if (out_) out_->write(composed_.data(), static_cast<std::streamsize>(composed_.size()));
  composed_.clear();
}

void CanonicalWriter::startDTD(const std::string&, const std::string&, const std::string&) {
  inDTD_ = true;
}

void CanonicalWriter::endDTD() { inDTD_ = false; }

void CanonicalWriter::skippedEntity(const std::string& name) {
  if (!inDTD_) {
    throw Tavrin::SAXException("The entity \"" + name +
                               "\" was not read, and a reference to it has no canonical form");
  }
  lacksDeclarations_ = true;
}

// --- Elements ---

void CanonicalWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  check_.startPrefixMapping(prefix, uri);
  declare(prefix, uri);
}

void CanonicalWriter::declare(const std::string& prefix, const std::string& uri) {
  if (prefix == "xml") return;
  if (!uri.empty() && !isAbsolute(uri)) {
    throw Tavrin::SAXException("The namespace name \"" + uri +
                               "\" is relative, for which there is no canonical form");
  }
  declared_.emplace_back(prefix, uri);
}

/// The start tag shows a declaration, unless it is superfluous.
void CanonicalWriter::showDeclaration(const std::string& prefix, const std::string& uri) {
  PrefixScopes& shown = form_.isExclusive ? shown_ : inScope_;
  if (shown.find(prefix) == uri) return;
  shown.bind(prefix, uri, depth_);
  shownHere_.emplace_back(prefix, uri);
}

/// A name in the start tag has a prefix, or that of the element has none.
void CanonicalWriter::use(const std::string& qName) {
  const std::string prefix = prefixOf(qName);
  if (prefix != "xml") showDeclaration(prefix, inScope_.find(prefix));
}

void CanonicalWriter::findDeclarations(const std::string& qName,
                                       const Tavrin::Attributes& attributes) {
  shownHere_.clear();
  if (form_.isExclusive) {
    for (const auto& [prefix, uri] : declared_) inScope_.bind(prefix, uri, depth_);
    const auto& inclusive = form_.inclusivePrefixes;
    for (const auto& [prefix, uri] : declared_) {
      const bool isInclusive = std::ranges::find(inclusive, prefix) != inclusive.end();
      if (isInclusive) showDeclaration(prefix, uri);
    }
    use(qName);
    for (const int i : order_) {
      if (!attributes.getURI(i).empty()) use(attributes.getQName(i));
    }
  } else {
    for (const auto& [prefix, uri] : declared_) showDeclaration(prefix, uri);
  }
  declared_.clear();
}

void CanonicalWriter::writeDeclarations() {
  std::ranges::sort(shownHere_);
  for (const auto& [prefix, uri] : shownHere_) {
    composed_ += prefix.empty() ? " xmlns" : " xmlns:";
    composed_ += prefix;
    composed_ += "=\"";
    kValueEscapes.append(composed_, uri);
    composed_ += '"';
  }
}

void CanonicalWriter::writeAttributes(const Tavrin::Attributes& attributes) {
  std::ranges::sort(order_, [&](int a, int b) {
    return std::tie(attributes.getURI(a), attributes.getLocalName(a)) <
           std::tie(attributes.getURI(b), attributes.getLocalName(b));
  });
  for (const int i : order_) {
    composed_ += ' ';
    composed_ += attributes.getQName(i);
    composed_ += "=\"";
    kValueEscapes.append(composed_, attributes.getValue(i));
    composed_ += '"';
  }
}

void CanonicalWriter::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Tavrin::Attributes& attributes) {
  check_.startElement(uri, localName, qName, attributes);
  ++depth_;
  hadRoot_ = true;
  order_.resize(static_cast<std::size_t>(attributes.getLength()));
  std::iota(order_.begin(), order_.end(), 0);
  findDeclarations(qName, attributes);
  composed_ += '<';
  composed_ += qName;
  writeDeclarations();
  writeAttributes(attributes);
  composed_ += '>';
  send(kEnoughToSend);
}

void CanonicalWriter::endElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName) {
  check_.endElement(uri, localName, qName);
  inScope_.leave(depth_);
  shown_.leave(depth_);
  --depth_;
  composed_ += "</";
  composed_ += qName;
  composed_ += '>';
}

// --- Content ---

void CanonicalWriter::characters(const std::string& text) {
  check_.characters(text);
  kTextEscapes.append(composed_, text);
  send(kEnoughToSend);
}

void CanonicalWriter::ignorableWhitespace(const std::string& text) {
  if (depth_ > 0) characters(text);
}

/// Writes a comment or an instruction. Outside of the root element it has a line of its own.
template <typename Write>
void CanonicalWriter::writeItem(Write write) {
  if (depth_ == 0 && hadRoot_) composed_ += '\n';
  write();
  if (depth_ == 0 && !hadRoot_) composed_ += '\n';
  send(kEnoughToSend);
}

void CanonicalWriter::processingInstruction(const std::string& target, const std::string& data) {
  if (inDTD_) return;
  check_.processingInstruction(target, data);
  writeItem([&] {
    composed_ += "<?";
    composed_ += target;
    if (!data.empty()) composed_ += ' ';
    kOtherEscapes.append(composed_, data);
    composed_ += "?>";
  });
}

void CanonicalWriter::comment(const std::string& text) {
  if (inDTD_) return;
  check_.comment(text);
  if (!form_.hasComments) return;
  writeItem([&] {
    composed_ += "<!--";
    kOtherEscapes.append(composed_, text);
    composed_ += "-->";
  });
}

}  // namespace tool
