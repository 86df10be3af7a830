#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "../../xml/Characters.h"
#include "ExpatNames.h"
#include "MarkupOctets.h"
#include "XML10Driver.h"

// What a failure is about: expat tells the kind of a failure and its place, but no names. They are
// found when it has happened, in the markup that expat still has, so that documents without
// failures pay next to nothing.

namespace Tavrin::text {

namespace {

/// How much of a token without an end is looked at.
constexpr std::size_t kMostOfToken = 1024;

/// A name as a message has it: a document may have very long ones.
std::string shortened(std::string_view name) {
  constexpr std::size_t kMostCharacters = 100;
  std::size_t characters = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!isContinuation(name[i]) && characters++ == kMostCharacters) {
      return std::string(name.substr(0, i)) + "...";
    }
  }
  return std::string(name);
}

/// A name behind a message; nothing for what is no name, as text that was decoded wrongly.
std::string namedAs(std::string_view name) {
  return xml::isName(name) ? ": \"" + shortened(name) + '"' : std::string();
}

/// Which characters end markup that begins with this one: a reference, tag, literal or name.
std::string_view endsOf(char first) {
  switch (first) {
    case '&':
    case '%':
      return ";";
    case '<':
      return ">";
    case '"':
      return "\"";
    case '\'':
      return "'";
    default:
      return " \t\r\n=";
  }
}

/// The beginning of markup without an end, as much as is looked at.
std::string_view cut(std::string_view octets) {
  if (octets.size() <= kMostOfToken) return octets;
  std::size_t length = kMostOfToken;
  while (!isWide(octets) && length > 0 && isContinuation(octets[length])) --length;
  return octets.substr(0, length);
}

/// The octets of the markup that octets begin with.
std::string_view markupAtStart(std::string_view octets) {
  const Characters characters(octets);
  const bool isTag = characters.at(0) == '<';
  const std::string_view ends = endsOf(characters.at(0));
  char quote = '\0';
  for (std::size_t i = characters.width(); i < octets.size(); i += characters.width()) {
    const char character = characters.at(i);
    if (character == '\0') continue;
    if (quote != '\0') {
      if (character == quote) quote = '\0';
    } else if (isTag && (character == '"' || character == '\'')) {
      quote = character;
    } else if (ends.find(character) != std::string_view::npos) {
      return octets.substr(0, i + characters.width());
    }
  }
  return cut(octets);
}

/// The markup at which the parser failed, in UTF-8.
std::string markupHere(const OpenEntity& entity) {
  const std::string_view markup = markupAtStart(octetsFromHere(entity.parser));
  return decoded(markup, markup, entity.encoding);
}

constexpr std::string_view kWhiteSpace = " \t\r\n";

/// The name that a reference to an entity has, with the percent sign of a parameter entity, where
/// the markup begins with one.
std::string_view referredAtStart(std::string_view markup) {
  const bool isReference = !markup.empty() && (markup[0] == '&' || markup[0] == '%');
  const std::size_t end = isReference ? markup.find(';') : std::string_view::npos;
  if (end == std::string_view::npos || !xml::isName(markup.substr(1, end - 1))) return {};
  return markup[0] == '%' ? markup.substr(0, end) : markup.substr(1, end - 1);
}

std::string inTextOf(std::string_view entity) {
  return " (in the text of the entity \"" + shortened(entity) + "\")";
}

struct WrittenAttribute {
  std::string_view name;
  std::string_view value;  ///< With its references.

  std::string_view prefix() const {
    const std::size_t colon = name.find(':');
    return name.substr(0, colon == std::string_view::npos ? 0 : colon);
  }
  /// Whether it declares a namespace.
  bool declares() const { return name == "xmlns" || prefix() == "xmlns"; }
};

/// The beginning of a tag, or of another token.
std::string_view withoutSpace(std::string_view markup) {
  return markup.substr(0, markup.find_first_of(" \t\r\n>"));
}

constexpr std::string_view kEndsOfName = " \t\r\n/>";

std::string_view elementOf(std::string_view tag) {
  const std::size_t end = std::min(tag.find_first_of(kEndsOfName), tag.size());
  return tag.substr(std::min<std::size_t>(1, end), end > 0 ? end - 1 : 0);
}

/// The octets of a start tag up to the end of its name; empty where there is none.
std::string_view nameInTag(std::string_view octets) {
  const Characters characters(octets);
  if (characters.at(0) != '<') return {};
  std::size_t end = characters.width();
  while (end < octets.size() && end <= kMostOfToken &&
         (characters.at(end) == '\0' ||
          kEndsOfName.find(characters.at(end)) == std::string_view::npos)) {
    end += characters.width();
  }
  return cut(octets.substr(0, end));
}

/// The attributes of a start tag. expat has found that it is one.
std::vector<WrittenAttribute> attributesOf(std::string_view tag) {
  std::vector<WrittenAttribute> attributes;
  for (std::size_t i = tag.find_first_of(kWhiteSpace); i < tag.size();) {
    const std::size_t begin = tag.find_first_not_of(kWhiteSpace, i);
    const std::size_t quote = tag.find_first_of("\"'", i);
    if (begin == std::string_view::npos || quote == std::string_view::npos) break;
    const std::size_t end = tag.find(tag[quote], quote + 1);
    if (end == std::string_view::npos) break;
    const std::size_t nameEnd = tag.find_first_of(" \t\r\n=", begin);
    attributes.push_back(
        {tag.substr(begin, nameEnd - begin), tag.substr(quote + 1, end - quote - 1)});
    i = end + 1;
  }
  return attributes;
}

bool isReserved(std::string_view uri) { return uri == namespaces::xml || uri == namespaces::xmlns; }

using Bindings = std::vector<std::pair<std::string, std::string>>;

/// What a tag declares may not be in force: where an empty element fails, expat ends it first.
Bindings withDeclarations(const OpenDeclarations& open, std::string_view tag) {
  Bindings bindings;
  open.forEach([&](std::string prefix, std::string uri) {
    bindings.emplace_back(std::move(prefix), std::move(uri));
  });
  for (const WrittenAttribute& attribute : attributesOf(tag)) {
    if (attribute.prefix() != "xmlns") continue;
    bindings.emplace_back(attribute.name.substr(sizeof "xmlns"), attribute.value);
  }
  return bindings;
}

/// The namespace name of a prefix, or null.
const std::string* findBinding(const Bindings& bindings, std::string_view prefix) {
  static const std::string xml = namespaces::xml;
  if (prefix == "xml") return &xml;
  const auto found = std::find_if(bindings.rbegin(), bindings.rend(),
                                  [&](const auto& each) { return each.first == prefix; });
  return found == bindings.rend() ? nullptr : &found->second;
}

/// The prefix without a declaration. expat looks at attributes first.
std::string unboundPrefix(std::string_view tag, const Bindings& bindings) {
  const auto isUnbound = [&](std::string_view prefix) {
    return !prefix.empty() && findBinding(bindings, prefix) == nullptr;
  };
  for (const WrittenAttribute& attribute : attributesOf(tag)) {
    if (!attribute.declares() && isUnbound(attribute.prefix())) return namedAs(attribute.prefix());
  }
  const std::string_view prefix = WrittenAttribute{elementOf(tag), {}}.prefix();
  return isUnbound(prefix) ? namedAs(prefix) : std::string();
}

/// The first two attributes with different prefixes that have the same name.
std::string sameAttributes(std::string_view tag, const Bindings& bindings) {
  std::map<std::pair<std::string_view, std::string_view>, std::string_view> known;
  for (const WrittenAttribute& attribute : attributesOf(tag)) {
    const std::string_view prefix = attribute.prefix();
    const std::string* const uri =
        prefix.empty() || attribute.declares() ? nullptr : findBinding(bindings, prefix);
    if (uri == nullptr) continue;
    const auto [first, isNew] =
        known.try_emplace({*uri, attribute.name.substr(prefix.size() + 1)}, attribute.name);
    if (!isNew) return namedAs(first->second) + " and \"" + shortened(attribute.name) + '"';
  }
  return {};
}

/// How many lines end in a text of the document.
std::uint64_t countLines(std::string_view octets) {
  if (octets.find('\r') == std::string_view::npos && !isWide(octets)) {
    return static_cast<std::uint64_t>(std::ranges::count(octets, '\n'));
  }
  const Characters characters(octets);
  const std::size_t width = characters.width();
  std::uint64_t lines = 0;
  for (std::size_t i = 0; i < octets.size(); i += width) {
    const char character = characters.at(i);
    const bool isPair = character == '\r' && characters.at(i + width) == '\n';
    if (!isPair && (character == '\r' || character == '\n')) ++lines;
  }
  return lines;
}

/// Octets that are none of the encoding, where it was converted.
std::string describeOctets(const OpenEntity& entity) {
  return entity.recoder ? entity.recoder->describeFailure(entity.octetsRead()) : std::string();
}

}  // namespace

void XML10Driver::nameOpenElements() {
  OpenElements& elements = document_->elements;
  if (elements.unnamed().empty()) return;  // As it is while the document is scanned.
  const OpenEntity& entity = document_->current();
  int offset = 0;
  int size = 0;
  const char* const buffer = XML_GetInputContext(entity.parser, &offset, &size);
  const std::uint64_t here = entity.octetsRead();
  const std::uint64_t first = here - static_cast<std::uint64_t>(offset);
  // The current line less those that end between is that of the outermost.
  std::uint64_t line = 0;
  std::uint64_t place = 0;
  for (const std::uint64_t octet : elements.unnamed()) {
    if (buffer == nullptr || octet < first || octet > here) {
      elements.name({}, 0);
      continue;
    }
    const char* const tag = buffer + (octet - first);
    if (line == 0) {
      line = entity.line() - countLines({tag, here - octet});
    } else {
      line += countLines({buffer + (place - first), octet - place});
    }
    place = octet;
    elements.name(nameInTag({tag, static_cast<std::size_t>(buffer + size - tag)}), line);
  }
  elements.endNaming();
}

/// The innermost element, and the line where it begins.
std::string XML10Driver::describeInnermost(const char* before, const char* after) {
  nameOpenElements();
  const OpenElements& elements = document_->elements;
  const std::string_view octets = elements.innermostName();
  const std::string tag = decoded(octets, octets, document_->current().encoding);
  const std::string_view name = elementOf(tag);
  if (!xml::isName(name)) return {};
  return std::string(before)
      .append(shortened(name))
      .append("> of line ")
      .append(std::to_string(elements.innermostLine()))
      .append(after);
}

/// The entity that is not as a reference needs it.
std::string XML10Driver::describeEntity(XML_Error code, std::string_view markup) {
  GeneralEntities& entities = document_->generalEntities;
  if (markup.starts_with('%')) return ": \"" + shortened(referredAtStart(markup)) + '"';
  std::vector<std::string> open;
  for (const OpenEntity& entity : document_->open) open.push_back(entity.entity->name);
  std::string told;
  forEachReference(markup, [&](std::string_view referred, std::size_t) {
    if (!told.empty()) return;
    const std::string name(referred);
    const std::string* found = nullptr;
    if (code == XML_ERROR_UNDEFINED_ENTITY) {
      found = entities.findMissing(name);
    } else if (code == XML_ERROR_BINARY_ENTITY_REF) {
      found = entities.findKind(name, EntityKind::unparsed);
    } else if (code == XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF) {
      found = entities.findKind(name, EntityKind::external);
    } else {
      found = entities.findRecursive(name, open);
    }
    if (found != nullptr) told = namedAs(*found) + (*found != name ? inTextOf(name) : "");
  });
  return told;
}

std::string XML10Driver::describeInTag(XML_Error code, std::string_view tag) const {
  const Bindings bindings = withDeclarations(document_->bindings, tag);
  if (code == XML_ERROR_UNBOUND_PREFIX) return unboundPrefix(tag, bindings);
  if (code == XML_ERROR_DUPLICATE_ATTRIBUTE) return sameAttributes(tag, bindings);
  for (const WrittenAttribute& attribute : attributesOf(tag)) {
    if (!attribute.declares()) continue;
    const bool hasPrefix = attribute.name != "xmlns";
    if (code == XML_ERROR_UNDECLARING_PREFIX && hasPrefix && attribute.value.empty()) {
      return namedAs(attribute.name.substr(sizeof "xmlns"));
    }
    if (code == XML_ERROR_RESERVED_NAMESPACE_URI && isReserved(attribute.value) &&
        attribute.name != "xmlns:xml") {
      return namedAs(attribute.name);
    }
  }
  return {};
}

std::string XML10Driver::describeFailure(XML_Error code) {
  const OpenEntity& current = document_->current();
  const bool isOpen = document_->elements.depth() > current.depth;
  const std::string markup = markupHere(current);
  const std::string_view referred = referredAtStart(markup);
  std::string inEntity = referred.empty() ? std::string() : inTextOf(referred);
  switch (code) {
    case XML_ERROR_TAG_MISMATCH:
      return isOpen ? describeInnermost(": expected </", "") + inEntity : inEntity;
    case XML_ERROR_NO_ELEMENTS:
      return isOpen ? describeInnermost(": <", " is not closed") : std::string();
    case XML_ERROR_ASYNC_ENTITY:
      if (!inEntity.empty()) return inEntity;
      if (markup.starts_with("</")) return ": " + shortened(withoutSpace(markup)) + '>';
      return isOpen ? describeInnermost(": <", " is not closed") : std::string();
    case XML_ERROR_UNCLOSED_TOKEN:
      if (!inEntity.empty()) return inEntity;
      return ": " + shortened(withoutSpace(markup));
    case XML_ERROR_UNDEFINED_ENTITY:
    case XML_ERROR_RECURSIVE_ENTITY_REF:
    case XML_ERROR_BINARY_ENTITY_REF:
    case XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF:
      return describeEntity(code, markup);
    case XML_ERROR_PARAM_ENTITY_REF:
      return referred.empty() ? std::string() : ": \"" + shortened(referred) + '"';
    case XML_ERROR_DUPLICATE_ATTRIBUTE:
    case XML_ERROR_UNBOUND_PREFIX:
    case XML_ERROR_UNDECLARING_PREFIX:
    case XML_ERROR_RESERVED_NAMESPACE_URI:
      if (markup.starts_with('<')) return describeInTag(code, markup);
      if (!inEntity.empty()) return inEntity;
      return namedAs(std::string_view(markup).substr(0, markup.find_first_of(" \t\r\n=")));
    case XML_ERROR_BAD_CHAR_REF:
      if (!inEntity.empty()) return inEntity;
      return markup.starts_with("&#") ? ": " + shortened(markup.substr(0, markup.find(';') + 1))
                                      : std::string();
    case XML_ERROR_INVALID_TOKEN:
      return describeOctets(current);
    default:
      return {};
  }
}

}  // namespace Tavrin::text
