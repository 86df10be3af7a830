#include "NamespaceBindings.h"

#include <Tavrin/Identifiers.h>

#include <iterator>

namespace Tavrin::xml {

std::string whyNotDeclarable(std::string_view prefix, std::string_view uri,
                             bool undeclaresPrefixes) {
  if (prefix == "xmlns") return "The prefix \"xmlns\" cannot be declared";
  if (uri == namespaces::xmlns) {
    return "The namespace \"" + std::string(uri) + "\" cannot be declared";
  }
  if (prefix == "xml" && uri != namespaces::xml) {
    return "The prefix \"xml\" cannot be bound to another namespace";
  }
  if (uri == namespaces::xml && prefix != "xml") {
    return "The namespace \"" + std::string(uri) + "\" cannot be bound to another prefix";
  }
  if (uri.empty() && !prefix.empty() && !undeclaresPrefixes) {
    return "The prefix \"" + std::string(prefix) + "\" cannot be undeclared";
  }
  return {};
}

void addDeclaration(std::vector<std::string>& declarations, const std::string& prefix,
                    const std::string& uri) {
  std::string added[] = {prefix, uri};
  declarations.insert(declarations.end(), std::move_iterator(std::begin(added)),
                      std::move_iterator(std::end(added)));
}

namespace {

// What is allocated beside the octets of a string, including what the allocator adds.
constexpr std::size_t kOfString = 128;
constexpr std::size_t kOfDeclaration = 48;

}  // namespace

NamespaceBindings::NamespaceBindings() { clear(); }

void NamespaceBindings::clear() {
  declarations_.clear();
  prefixes_.clear();
  uris_.clear();
  octets_ = 0;
  version_ = ++lastVersion_;
}

void NamespaceBindings::declare(std::string_view prefix, std::string_view uri) {
  // Where memory runs out, nothing is declared.
  const auto found = [](auto& map, std::string_view key) {
    const auto place = map.lower_bound(key);
    return place != map.end() && place->first == key ? place
                                                     : map.emplace_hint(place, std::string(key), 0);
  };
  const auto dropUnused = [](auto& map, auto entry) {
    if (entry->second == 0) map.erase(entry);
  };
  const auto prefixEntry = found(prefixes_, prefix);
  try {
    const auto uriEntry = found(uris_, uri);
    try {
      declarations_.push_back({prefixEntry, uriEntry, prefixEntry->second, version_});
    } catch (...) {
      dropUnused(uris_, uriEntry);
      throw;
    }
    octets_ += kOfDeclaration;
    if (prefixEntry->second == 0) octets_ += kOfString + prefix.size();
    if (uriEntry->second == 0) octets_ += kOfString + uri.size();
    ++uriEntry->second;
  } catch (...) {
    dropUnused(prefixes_, prefixEntry);
    throw;
  }
  prefixEntry->second = declarations_.size();
  version_ = ++lastVersion_;
}

void NamespaceBindings::undoLast() {
  const Declaration last = declarations_.back();
  declarations_.pop_back();
  version_ = last.version;
  octets_ -= kOfDeclaration;
  last.prefix->second = last.outer;
  if (last.outer == 0) {
    octets_ -= kOfString + last.prefix->first.size();
    prefixes_.erase(last.prefix);
  }
  if (--last.uri->second == 0) {
    octets_ -= kOfString + last.uri->first.size();
    uris_.erase(last.uri);
  }
}

const std::string& NamespaceBindings::find(std::string_view prefix) const {
  static const std::string unbound;
  static const std::string xml = namespaces::xml;
  if (last_.version == version_ && *last_.prefix == prefix) return *last_.uri;
  const auto found = prefixes_.find(prefix);
  if (found != prefixes_.end()) {
    last_ = {&found->first, &uriAt(found->second - 1), version_};
    return *last_.uri;
  }
  return prefix == "xml" ? xml : unbound;
}

}  // namespace Tavrin::xml
