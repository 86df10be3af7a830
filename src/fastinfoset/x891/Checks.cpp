#include "Checks.h"

#include <Tavrin/Exceptions.h>

#include <limits>

#include "../../xml/Characters.h"
#include "../../xml/simd/EasyText.h"

namespace Tavrin::fastinfoset {

namespace {

void checkLength(std::string_view text) {
  if (text.size() > kLongestString) {
    throw SAXException("String longer than " + std::to_string(kLongestString) + " octets");
  }
}

[[noreturn]] void throwIsNot(std::string_view text, const char* what) {
  throw SAXException("\"" + std::string(text) + "\" is not a " + what);
}

}  // namespace

void checkText(const std::string& text, const char* where) {
  checkLength(text);
  if (xml::isEasyText(text)) return;
  const std::size_t position = xml::findInvalid(text);
  if (position == xml::kAllValid) return;
  throw SAXException("Invalid " + xml::describeInvalid(text, position) + " in " + where);
}

void checkNCName(std::string_view name) {
  if (name.empty()) throw SAXException("Empty name");
  checkLength(name);
  if (!xml::isNCName(name)) throwIsNot(name, "name without a colon");
}

void checkTarget(const std::string& target) {
  checkNCName(target);
  if (!xml::isTarget(target)) throwIsNot(target, "target");
}

void checkComment(const std::string& text) {
  checkText(text, "a comment");
  if (text.find("--") != std::string::npos) {
    throw SAXException("You cannot put \"--\" into a comment");
  }
  if (!text.empty() && text.back() == '-') {
    throw SAXException("A comment cannot end with \"-\"");
  }
}

void checkInstructionData(const std::string& data) {
  checkText(data, "a processing instruction");
  if (data.find("?>") != std::string::npos) {
    throw SAXException("You cannot put \"?>\" into a processing instruction");
  }
}

void checkIdentifiers(const std::string& publicId, const std::string& systemId) {
  checkLength(publicId);
  checkText(systemId, "a system identifier");
  if (!xml::isPublicId(publicId)) throwIsNot(publicId, "public identifier");
  if (!xml::isSystemId(systemId)) throwIsNot(systemId, "system identifier");
}

void checkIntegers(const std::vector<long>& integers) {
  for (const long integer : integers) {
    if (integer < std::numeric_limits<std::int32_t>::min() ||
        integer > std::numeric_limits<std::int32_t>::max()) {
      throw SAXException(std::to_string(integer) + " is not a 32-bit integer");
    }
  }
}

}  // namespace Tavrin::fastinfoset
