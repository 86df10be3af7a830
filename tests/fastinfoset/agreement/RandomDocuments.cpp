#include "RandomDocuments.h"

#include <Tavrin/Identifiers.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "RandomValues.h"

namespace agreement {

using namespace Tavrin;

namespace {

struct Name {
  std::string uri;
  std::string local;
  std::string qName;
};

class Generator {
 public:
  Generator(std::uint64_t seed, const Receiver& receiver, bool copyable)
      : random_(seed), to_(receiver), copyable_(copyable) {}

  void document() {
    to_.content.startDocument();
    outside();
    if (random_.oneIn(10)) documentType();
    outside();
    content();
    outside();
    to_.content.endDocument();
  }

 private:
  // --- What a document is made of ---

  /// Comments, instructions and nothings in front of the root or behind it.
  void outside() {
    while (random_.oneIn(4)) {
      switch (random_.below(3)) {
        case 0:
          comment();
          break;
        case 1:
          instruction();
          break;
        default:
          to_.content.ignorableWhitespace(" \n");
      }
    }
  }

  void documentType() {
    to_.lexical.startDTD("r", "p", "s");
    to_.dtd.notationDecl("n", "p", "s");
    to_.declarations.elementDecl("r", "ANY");
    outside();
    to_.lexical.endDTD();
  }

  /// The root and everything in it.
  void content() {
    startElement();
    const bool deep = random_.oneIn(40);
    std::size_t items = random_.oneIn(250) ? 200 : random_.oneIn(40) ? 60 : random_.below(10);
    bool behindText = false;  // Text would be added to it.
    while (items-- > 0) {
      const std::size_t kind = random_.below(deep ? 40 : 20);
      if (kind < 4) {
        if (!behindText) behindText = text();
      } else if (kind == 4) {
        leavesNoTrace();  // Not even a border between texts.
      } else if (kind == 5) {
        if (!behindText) section();
      } else {
        behindText = false;
        item(kind);
      }
    }
    while (!open_.empty()) endElement();
  }

  void item(std::size_t kind) {
    if (kind == 6) {
      comment();
    } else if (kind == 7) {
      instruction();
    } else if (kind < 10) {
      typedContent();
    } else if (kind == 10) {
      unknownContent();
    } else if (kind < 15 && open_.size() > 1) {
      endElement();
    } else {
      startElement();
      if (random_.oneIn(3)) endElement();
    }
  }

  // --- Names ---

  /// A name that may have been there before.
  std::string name(std::vector<std::string>& pool, const char* begin) {
    if (!pool.empty() && !random_.oneIn(4)) return random_.pick(pool);
    std::string made = begin + std::to_string(random_.below(500));
    if (random_.oneIn(30)) made.resize(random_.pick({63, 64, 65, 320, 321, 400}), 'x');
    pool.push_back(made);
    return made;
  }

  void declare() {
    const std::string prefix = random_.oneIn(3) ? "" : name(prefixPool_, "p");
    const std::string uri = random_.oneIn(8) ? "" : name(uriPool_, "urn:");
    to_.content.startPrefixMapping(prefix, uri);
    if (!prefix.empty()) prefixes_.push_back(prefix);
    if (!uri.empty()) uris_.push_back(uri);
    declared_.push_back(prefix);
  }

  /// A name whose parts were declared somewhere: a prefix never without a namespace.
  Name qualifiedName(bool prefixed) {
    const std::string local = name(localPool_, "n");
    if (random_.oneIn(20)) return {namespaces::xml, local, "xml:" + local};
    if (uris_.empty() || random_.oneIn(2)) return {"", local, local};
    const std::string& uri = random_.pick(uris_);
    if (prefixes_.empty() || (!prefixed && random_.oneIn(3))) return {uri, local, local};
    return {uri, local, random_.pick(prefixes_) + ":" + local};
  }

  // --- Elements ---

  void startElement() {
    declared_.clear();
    while (random_.oneIn(4)) declare();
    const Name element = qualifiedName(false);
    EncodingAlgorithmAttributesImpl attributes;
    const std::size_t count = random_.oneIn(2) ? 0 : random_.oneIn(300) ? 70 : random_.below(5);
    bool typed = false;
    for (std::size_t i = 0; i < count; ++i) typed = attribute(attributes) || typed;
    if (typed || random_.oneIn(2)) {
      to_.content.startElement(element.uri, element.local, element.qName, attributes);
    } else {
      AttributesImpl plain;
      plain.setAttributes(attributes);
      to_.content.startElement(element.uri, element.local, element.qName, plain);
    }
    open_.push_back({element, declared_});
  }

  /// @return whether its value is typed
  bool attribute(EncodingAlgorithmAttributesImpl& attributes) {
    if (random_.oneIn(20)) {
      attributes.addAttribute(namespaces::xmlns, "p", "xmlns:p", "CDATA", "urn:p");
      return false;
    }
    const Name attribute = qualifiedName(true);
    if (random_.oneIn(3)) {
      TypedValue value = randomValue(random_);
      attributes.addAttribute(attribute.uri, attribute.local, attribute.qName, "CDATA", "",
                              value.algorithm, std::move(value.data));
      return true;
    }
    attributes.addAttribute(attribute.uri, attribute.local, attribute.qName, "CDATA", string());
    return false;
  }

  void endElement() {
    const Open element = open_.back();
    open_.pop_back();
    to_.content.endElement(element.name.uri, element.name.local, element.name.qName);
    for (const std::string& prefix : element.prefixes) to_.content.endPrefixMapping(prefix);
  }

  // --- Content ---

  /// A value, a comment or the data of an instruction; it may have been there before.
  std::string string() {
    if (random_.oneIn(10)) return "";
    if (!stringPool_.empty() && random_.oneIn(3)) return random_.pick(stringPool_);
    stringPool_.push_back(randomText(random_, randomLength(random_)));
    return stringPool_.back();
  }

  void comment() { to_.lexical.comment(string()); }

  void instruction() {
    const std::string target = name(localPool_, "n");
    to_.content.processingInstruction(target, string());
  }

  /// A chunk of text, in one call or several.
  /// @return whether there was any
  bool text() {
    std::string all;
    if (!chunkPool_.empty() && random_.oneIn(3)) {
      all = random_.pick(chunkPool_);
    } else if (!random_.oneIn(20)) {
      all = randomText(random_, randomLength(random_));
    }
    // The writer counts the texts of fewer than seven octets; from the seventeenth on they must not
    // come again.
    for (auto found = chunks_.find(all); found != chunks_.end() && found->second >= 16;
         found = chunks_.find(all)) {
      all += 'x';
    }
    if (!all.empty() && all.size() < 7) chunks_.emplace(all, chunks_.size());
    if (!all.empty()) chunkPool_.push_back(all);
    sendText(all);
    return !all.empty();
  }

  void sendText(const std::string& all) {
    std::size_t sent = 0;
    while (sent < all.size()) {
      const std::size_t length =
          random_.oneIn(2) ? all.size() - sent : random_.below(all.size() - sent) + 1;
      to_.content.characters(all.substr(sent, length));
      sent += length;
      if (random_.oneIn(8)) leavesNoTrace();
    }
  }

  /// A CDATA section, with or without text in front that becomes a part of it.
  void section() {
    if (random_.oneIn(4)) sendText(randomText(random_, randomLength(random_)));
    to_.lexical.startCDATA();
    if (copyable_ || !random_.oneIn(6)) sendText(randomText(random_, randomLength(random_)));
    to_.lexical.endCDATA();
  }

  void leavesNoTrace() {
    to_.content.characters("");
    to_.content.ignorableWhitespace("\t");
    to_.lexical.startEntity("e");
    to_.lexical.endEntity("e");
    to_.content.skippedEntity("e");
  }

  void typedContent() {
    TypedValue value = randomValue(random_);
    while (copyable_ && (value.algorithm == algorithms::cdata || value.data->toString().empty())) {
      value = randomValue(random_);
    }
    // Octets of hexadecimal text and sections have no operation of their own.
    const bool own =
        value.algorithm != algorithms::hexadecimal && value.algorithm != algorithms::cdata;
    if (own && random_.oneIn(2)) {
      value.data->callContentHandler(to_.primitives);
    } else {
      to_.algorithms.object("", value.algorithm, *value.data);
    }
  }

  /// Octets of an algorithm that neither writer nor reader knows.
  void unknownContent() {
    const std::string data =
        randomText(random_, random_.oneIn(6) && !copyable_ ? 0 : randomLength(random_));
    const std::size_t field = random_.oneIn(4) ? 8 : 10 + random_.below(22);
    const std::size_t unread = random_.oneIn(4) && !copyable_ ? 0x40 : 0;
    to_.algorithms.octets(random_.oneIn(2) ? "" : "urn:x", static_cast<int>(field | unread), data);
  }

  struct Open {
    Name name;
    std::vector<std::string> prefixes;
  };

  Random random_;
  Receiver to_;
  bool copyable_;
  std::vector<Open> open_;
  std::vector<std::string> declared_;  // By the element that begins.
  std::vector<std::string> prefixes_;  // Declared anywhere.
  std::vector<std::string> uris_;
  std::map<std::string, std::size_t> chunks_;  // As the writer counts them.

  std::vector<std::string> prefixPool_;
  std::vector<std::string> uriPool_;
  std::vector<std::string> localPool_;
  std::vector<std::string> stringPool_;
  std::vector<std::string> chunkPool_;
};

}  // namespace

std::uint64_t firstSeed() {
  const char* const given = std::getenv("TAVRIN_SEED");
  return given ? std::stoull(given) : 1;
}

void sendRandomDocument(std::uint64_t seed, const Receiver& receiver, bool copyable) {
  Generator(seed, receiver, copyable).document();
}

}  // namespace agreement
