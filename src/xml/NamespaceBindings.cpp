#include "NamespaceBindings.h"

#include <Tavrin/Identifiers.h>

#include <utility>

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

NamespaceBindings::NamespaceBindings() { clear(); }

void NamespaceBindings::clear() {
  declarations_.clear();
  bindings_.clear();
  bindings_.emplace("xml", namespaces::xml);
  version_ = ++lastVersion_;
}

void NamespaceBindings::declare(const std::string& prefix, const std::string& uri) {
  // Where memory runs out, nothing is declared.
  std::string inner = uri;
  std::string& binding = bindings_[prefix];
  declarations_.push_back({&binding, {}, version_});
  declarations_.back().outer = std::exchange(binding, std::move(inner));
  version_ = ++lastVersion_;
}

void NamespaceBindings::undoLast() {
  Declaration& last = declarations_.back();
  *last.binding = std::move(last.outer);
  version_ = last.version;
  declarations_.pop_back();
}

const std::string& NamespaceBindings::find(std::string_view prefix) const {
  static const std::string unbound;
  const auto found = bindings_.find(prefix);
  return found == bindings_.end() ? unbound : found->second;
}

}  // namespace Tavrin::xml
