#include "Normal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

bool isText(const Event& event) {
  return event.kind == Event::characters || event.kind == Event::ignorableWhitespace;
}

/// Without what no encoding keeps: where text is cut, empty sections, empty typed content; and
/// without declarations of the prefix xml, which is bound without them.
Events joined(const Events& events) {
  Events result;
  for (const Event& event : events) {
    const bool isMapping =
        event.kind == Event::startPrefixMapping || event.kind == Event::endPrefixMapping;
    if (isMapping && event.texts[0] == "xml") continue;
    if (isText(event)) {
      if (event.texts[0].empty()) continue;
      if (!result.empty() && result.back().kind == Event::characters) {
        result.back().texts[0] += event.texts[0];
      } else {
        result.push_back({Event::characters, event.texts});
      }
    } else if (event.kind == Event::endCDATA && !result.empty() &&
               result.back().kind == Event::startCDATA) {
      result.pop_back();
    } else if ((event.kind != Event::object && event.kind != Event::octets) ||
               !event.value.octets.empty()) {
      result.push_back(event);
    }
  }
  // An empty section stood between two texts.
  const bool again =
      std::adjacent_find(result.begin(), result.end(), [](const Event& one, const Event& other) {
        return isText(one) && isText(other);
      }) != result.end();
  return again ? joined(result) : result;
}

std::string withLineFeeds(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      result += '\n';
      if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

/// As XML 1.0 has it, sections 3.3.3 and 4.2.2: single spaces, between others only.
std::string normalSpaces(const std::string& text, const char* spaces) {
  std::string result;
  for (const char c : text) {
    if (std::strchr(spaces, c) == nullptr || c == '\0') {
      result += c;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

std::string normalPublicId(const std::string& text) { return normalSpaces(text, " \r\n"); }

std::vector<std::string> lines(const Events& events) {
  std::vector<std::string> result;
  result.reserve(events.size());
  for (const Event& event : events) result.push_back(event.show());
  return result;
}

/// Whether the writer of text has to make two sections of one.
bool isSplitInText(const Events& events) {
  bool inSection = false;
  for (const Event& event : events) {
    if (event.kind == Event::startCDATA) inSection = true;
    if (event.kind == Event::endCDATA) inSection = false;
    if (inSection && isText(event) && event.texts[0].find_first_of("]\r") != std::string::npos) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::vector<std::string> inFastInfoset(const Events& events) {
  Events result;
  Events declarations;
  Events instructions;
  std::string publicId;
  std::string systemId;
  bool inDTD = false;
  bool hasDocumentType = false;
  bool inSection = false;
  int depth = 0;
  std::size_t documentType = 0;
  for (const Event& event : events) {
    switch (event.kind) {
      case Event::startDTD:
        inDTD = true;
        hasDocumentType = !event.texts[1].empty() || !event.texts[2].empty();
        publicId = normalPublicId(event.texts[1]);
        systemId = withLineFeeds(event.texts[2]);
        documentType = result.size();
        continue;
      case Event::endDTD:
        inDTD = false;
        continue;
      case Event::notationDecl:
      case Event::unparsedEntityDecl:
        declarations.push_back(event);
        continue;
      case Event::startEntity:
      case Event::endEntity:
      case Event::elementDecl:
      case Event::attributeDecl:
      case Event::internalEntityDecl:
      case Event::externalEntityDecl:
        continue;
      case Event::processingInstruction:
        // Those of the external subset, too, belong to the document type.
        if (inDTD) {
          instructions.push_back(event);
          continue;
        }
        break;
      case Event::comment:
        if (inDTD) continue;
        break;
      case Event::skippedEntity:
        if (depth == 0 || inSection) continue;
        break;
      case Event::startElement:
        ++depth;
        break;
      case Event::endElement:
        --depth;
        break;
      case Event::startCDATA:
      case Event::endCDATA:
        inSection = event.kind == Event::startCDATA;
        break;
      default:
        if (depth == 0 && isText(event)) continue;
    }
    result.push_back(event);
    for (Event::Attribute& attribute : result.back().attributes) attribute.type = "CDATA";
  }
  // The order of notations and unparsed entities among each other is lost, and their place.
  std::vector<std::string> all;
  for (const Event& event : declarations) all.push_back(event.show());
  std::sort(all.begin(), all.end());
  // Without identifiers and instructions a document type needs no item of its own.
  if (hasDocumentType || !instructions.empty()) {
    Events type = {{Event::startDTD, {publicId, systemId}}};
    type.insert(type.end(), instructions.begin(), instructions.end());
    type.push_back({Event::endDTD});
    result.insert(result.begin() + static_cast<std::ptrdiff_t>(documentType), type.begin(),
                  type.end());
  }
  const std::vector<std::string> rest = lines(joined(result));
  all.insert(all.end(), rest.begin(), rest.end());
  return all;
}

std::vector<std::string> inXMLText(const Events& events) { return inXMLText(events, events); }

std::vector<std::string> inXMLText(const Events& events, const Events& original) {
  Events result;
  const bool withoutSections = isSplitInText(original);
  int depth = 0;
  for (Event event : events) {
    switch (event.kind) {
      case Event::startCDATA:
      case Event::endCDATA:
        if (withoutSections) continue;
        break;
      case Event::startEntity:
      case Event::endEntity:
        continue;  // In place of a general entity stands its text.
      case Event::skippedEntity:
        if (event.texts[0] == "[dtd]") continue;  // Fast Infoset tells of identifiers alone.
        break;
      case Event::startElement:
        ++depth;
        break;
      case Event::endElement:
        --depth;
        break;
      case Event::attributeDecl:
        if (event.texts[2] != "CDATA") event.texts[4] = normalSpaces(event.texts[4], " ");
        break;
      case Event::comment:
        event.texts[0] = withLineFeeds(event.texts[0]);
        break;
      case Event::processingInstruction:
        event.texts[1] = withLineFeeds(event.texts[1]);
        break;
      case Event::startDTD:
      case Event::notationDecl:
      case Event::externalEntityDecl:
      case Event::unparsedEntityDecl:
        event.texts[1] = normalPublicId(event.texts[1]);
        event.texts[2] = withLineFeeds(event.texts[2]);
        break;
      default:
        if (depth == 0 && isText(event)) continue;
    }
    result.push_back(std::move(event));
  }
  return lines(joined(result));
}

void finding(const std::string& what) {
  std::fprintf(stderr, "FINDING: %s\n", what.c_str());
  std::abort();
}

void expectEqual(const char* what, const std::vector<std::string>& expected,
                 const std::vector<std::string>& found) {
  if (expected == found) return;
  const std::size_t common = std::min(expected.size(), found.size());
  std::size_t i = 0;
  while (i < common && expected[i] == found[i]) ++i;
  const auto at = [i](const std::vector<std::string>& log) {
    return i < log.size() ? log[i] : std::string("nothing");
  };
  finding(std::string(what) + ", event " + std::to_string(i) + "\n  expected " + at(expected) +
          "\n  found    " + at(found));
}
