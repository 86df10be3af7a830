#include "EventTarget.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace Tavrin::text {

namespace {

bool hasChildren(const XML_Content& node) {
  return node.type == XML_CTYPE_MIXED || node.type == XML_CTYPE_CHOICE ||
         node.type == XML_CTYPE_SEQ;
}

void appendStart(const XML_Content& node, std::string& text) {
  if (node.type == XML_CTYPE_EMPTY) text = "EMPTY";
  if (node.type == XML_CTYPE_ANY) text = "ANY";
  if (node.type == XML_CTYPE_NAME) text += node.name;
  if (node.type == XML_CTYPE_MIXED) text += node.numchildren > 0 ? "(#PCDATA|" : "(#PCDATA";
  if (node.type == XML_CTYPE_CHOICE || node.type == XML_CTYPE_SEQ) text += '(';
}

void appendEnd(const XML_Content& node, std::string& text) {
  if (node.type == XML_CTYPE_EMPTY || node.type == XML_CTYPE_ANY) return;
  if (hasChildren(node)) text += ')';
  constexpr const char* kQuantifiers[] = {"", "?", "*", "+"};  // In the order of XML_Content_Quant.
  text += kQuantifiers[node.quant];
}

/// The text of an element's content model (XML 1.0, section 3.2), without white space.
std::string contentModelText(const XML_Content& model) {
  // The path to the current node. A document decides how deep a model is, so there is no recursion.
  struct Level {
    const XML_Content* node;
    unsigned next;  // The next child to write.
  };
  std::vector<Level> levels;
  std::string text;
  appendStart(model, text);
  levels.push_back({&model, 0});
  while (!levels.empty()) {
    Level& level = levels.back();
    const XML_Content& node = *level.node;
    if (!hasChildren(node) || level.next == node.numchildren) {
      appendEnd(node, text);
      levels.pop_back();
      continue;
    }
    if (level.next > 0) text += node.type == XML_CTYPE_SEQ ? ',' : '|';
    const XML_Content& child = node.children[level.next++];
    appendStart(child, text);
    levels.push_back({&child, 0});
  }
  return text;
}

}  // namespace

void EventTarget::elementDecl(const XML_Char* name, XML_Content* model) {
  // The callback owns the model, one block from malloc, which is expat's default allocator.
  struct Release {
    void operator()(XML_Content* block) const { std::free(block); }
  };
  const std::unique_ptr<XML_Content, Release> owned(model);
  deliver(handlers.decl,
          [&](DeclHandler& handler) { handler.elementDecl(name, contentModelText(*model)); });
}

}  // namespace Tavrin::text
