#include "CanonicalForm.h"

namespace {

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\t':
        result += "&#9;";
        break;
      case '\n':
        result += "&#10;";
        break;
      case '\r':
        result += "&#13;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

}  // namespace

std::string CanonicalForm::text() const {
  if (notations_.empty()) return content_;
  std::string text = "<!DOCTYPE " + documentType_ + " [\n";
  for (const auto& [name, declaration] : notations_) text += declaration;
  return text + "]>\n" + content_;
}

void CanonicalForm::startElement(const std::string&, const std::string&, const std::string& qName,
                                 const Tavrin::Attributes& attributes) {
  // The order of octets in UTF-8 is that of characters.
  std::map<std::string, std::string> values;
  for (int i = 0; i < attributes.getLength(); ++i) {
    values[attributes.getQName(i)] = attributes.getValue(i);
  }
  content_ += "<" + qName;
  for (const auto& [name, value] : values) content_ += " " + name + "=\"" + escaped(value) + "\"";
  content_ += ">";
}

void CanonicalForm::endElement(const std::string&, const std::string&, const std::string& qName) {
  content_ += "</" + qName + ">";
}

void CanonicalForm::characters(const std::string& text) { content_ += escaped(text); }

void CanonicalForm::processingInstruction(const std::string& target, const std::string& data) {
  content_ += "<?" + target + " " + data + "?>";
}

void CanonicalForm::notationDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  std::string declaration = "<!NOTATION " + name;
  declaration += publicId.empty() ? " SYSTEM" : " PUBLIC '" + publicId + "'";
  if (!systemId.empty()) declaration += " '" + systemId + "'";
  notations_[name] = declaration + ">\n";
}

void CanonicalForm::startDTD(const std::string& name, const std::string&, const std::string&) {
  documentType_ = name;
}
