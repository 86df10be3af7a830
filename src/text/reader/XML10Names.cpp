#include <strings.h>

#include "ExpatNames.h"
#include "XML10Driver.h"

// Three characters are letters to expat where it reads ISO-8859-1 or UTF-16, and only there. In no
// edition of XML 1.0 are they characters of names (production 4; fourth edition, production 85).

namespace Tavrin {

namespace {

/// Whether a name has U+00AA, U+00B5 or U+00BA.
bool hasFalseLetter(std::string_view name) {
  for (std::size_t i = name.find('\xC2'); i < name.size(); i = name.find('\xC2', i + 1)) {
    if (i + 1 == name.size()) break;
    if (name[i + 1] == '\xAA' || name[i + 1] == '\xB5' || name[i + 1] == '\xBA') return true;
  }
  return false;
}

/// An element's or attribute's name as the document has it, maybe with the prefix behind it.
std::string_view withoutNamespace(std::string_view name) {
  return name.substr(name.find(kXML10Separator) + 1);  // npos + 1 is 0.
}

}  // namespace

/// Takes note of an encoding in which expat has more letters.
void XML10Document::noteEncoding(const XML_Char* name) {
  if (name && strcasecmp(name, "ISO-8859-1") == 0) checksNames = true;
}

void XML10Document::noteStart(std::string_view octets) {
  const auto isAt = [&](std::size_t i, char octet) {
    return i < octets.size() && octets[i] == octet;
  };
  // UTF-16, with its mark or without.
  if (isAt(0, '\xFE') || isAt(0, '\xFF') || isAt(0, '\0') || isAt(1, '\0')) checksNames = true;
}

void XMLReader_XML10::Driver::requireName(std::string_view name, const XML10Position& position) {
  if (!document_->checksNames || !hasFalseLetter(name)) return;
  failAt(XML_ErrorString(XML_ERROR_INVALID_TOKEN), position);
}

void XMLReader_XML10::Driver::requireName(std::string_view name) {
  // A position takes time to find.
  if (document_->checksNames && hasFalseLetter(name)) requireName(name, positionHere());
}

void XMLReader_XML10::Driver::requireNames(const XML_Char* element, const XML_Char** attributes) {
  requireName(withoutNamespace(element));
  for (; *attributes; attributes += 2) requireName(withoutNamespace(*attributes));
}

void XMLReader_XML10::Driver::Callbacks::processingInstructionHandler(void* userData,
                                                                      const XML_Char* target,
                                                                      const XML_Char* data) {
  Driver& driver = from(userData);
  if (driver.document_->checksNames) driver.guard([&] { driver.requireName(target); });
  Tavrin::Callbacks::processingInstructionHandler(userData, target, data);
}

}  // namespace Tavrin
