// pugixml: the whole document in memory, then a walk over it that resolves namespaces, which
// pugixml leaves to its users.

#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>

#include "peers.h"

namespace peers {

namespace {

constexpr char kXmlUri[] = "http://www.w3.org/XML/1998/namespace";

/// The bindings that are in scope, the latest last.
class Bindings {
 public:
  void declare(std::string_view prefix, const char* uri) { bindings_.push_back({prefix, uri}); }

  std::string_view find(std::string_view prefix) const {
    for (std::size_t i = bindings_.size(); i-- > 0;) {
      if (bindings_[i].prefix == prefix) return bindings_[i].uri;
    }
    if (prefix == "xml") return kXmlUri;
    if (!prefix.empty()) throw std::runtime_error("pugixml: a prefix is not declared");
    return {};
  }

  std::size_t size() const { return bindings_.size(); }
  void shrink(std::size_t size) { bindings_.resize(size); }

 private:
  struct Binding {
    std::string_view prefix;
    const char* uri = nullptr;
  };

  std::vector<Binding> bindings_;
};

class Walk {
 public:
  Totals totals;

  void start(const pugi::xml_node& node) {
    scopes_.push_back(bindings_.size());
    for (const pugi::xml_attribute& attribute : node.attributes()) {
      const std::string_view name = attribute.name();
      if (name == "xmlns") bindings_.declare({}, attribute.value());
      if (name.starts_with("xmlns:")) bindings_.declare(name.substr(6), attribute.value());
    }
    std::vector<Attribute> list;
    for (const pugi::xml_attribute& attribute : node.attributes()) {
      const std::string_view name = attribute.name();
      if (name == "xmlns" || name.starts_with("xmlns:")) continue;
      list.push_back({resolve(name, false), attribute.value()});
    }
    countStart(totals, resolve(node.name(), true), list);
  }

  void end(const pugi::xml_node& node) {
    countEnd(totals, resolve(node.name(), true));
    bindings_.shrink(scopes_.back());
    scopes_.pop_back();
  }

  void text(const pugi::xml_node& node) { countText(totals, node.value()); }

 private:
  Name resolve(std::string_view qName, bool takesDefault) const {
    const std::size_t colon = qName.find(':');
    const bool hasPrefix = colon != std::string_view::npos;
    const std::string_view prefix = hasPrefix ? qName.substr(0, colon) : std::string_view();
    const std::string_view uri =
        hasPrefix || takesDefault ? bindings_.find(prefix) : std::string_view();
    return {std::string(uri), std::string(hasPrefix ? qName.substr(colon + 1) : qName),
            std::string(qName)};
  }

  Bindings bindings_;
  std::vector<std::size_t> scopes_;  // How many bindings there were outside of each open element.
};

}  // namespace

Totals readPugixml(std::istream& stream) {
  pugi::xml_document document;
  const pugi::xml_parse_result result =
      document.load(stream, pugi::parse_default | pugi::parse_ws_pcdata);
  if (!result) throw std::runtime_error(result.description());
  Walk walk;
  const pugi::xml_node root = document.document_element();
  for (pugi::xml_node node = root;;) {
    if (node.type() == pugi::node_element) {
      walk.start(node);
      if (node.first_child()) {
        node = node.first_child();
        continue;
      }
      walk.end(node);
    } else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
      walk.text(node);
    }
    while (node != root && !node.next_sibling()) {
      node = node.parent();
      walk.end(node);
    }
    if (node == root) return walk.totals;
    node = node.next_sibling();
  }
}

}  // namespace peers
