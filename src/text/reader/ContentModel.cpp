#include "ContentModel.h"

#include <vector>

namespace Tavrin {

namespace {

bool hasChildren(const XML_Content& node) {
  return node.type == XML_CTYPE_MIXED || node.type == XML_CTYPE_CHOICE ||
         node.type == XML_CTYPE_SEQ;
}

void appendStart(const XML_Content& node, std::string& text) {
  switch (node.type) {
    case XML_CTYPE_EMPTY:
      text = "EMPTY";
      break;
    case XML_CTYPE_ANY:
      text = "ANY";
      break;
    case XML_CTYPE_MIXED:
      text += node.numchildren > 0 ? "(#PCDATA|" : "(#PCDATA";
      break;
    case XML_CTYPE_NAME:
      text += node.name;
      break;
    case XML_CTYPE_CHOICE:
    case XML_CTYPE_SEQ:
      text += '(';
      break;
  }
}

void appendQuantifier(const XML_Content& node, std::string& text) {
  switch (node.quant) {
    case XML_CQUANT_NONE:
      break;
    case XML_CQUANT_OPT:
      text += '?';
      break;
    case XML_CQUANT_REP:
      text += '*';
      break;
    case XML_CQUANT_PLUS:
      text += '+';
      break;
  }
}

void appendEnd(const XML_Content& node, std::string& text) {
  if (node.type == XML_CTYPE_EMPTY || node.type == XML_CTYPE_ANY) return;
  if (hasChildren(node)) text += ')';
  appendQuantifier(node, text);
}

}  // namespace

std::string contentModelText(const XML_Content& model) {
  // The nodes above the current one, each with the next child to write. A document decides how
  // deep a model is, so the depth must not be that of the call stack.
  struct Level {
    const XML_Content* node;
    unsigned next;
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

}  // namespace Tavrin
