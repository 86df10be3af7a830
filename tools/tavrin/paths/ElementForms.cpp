#include "paths/ElementForms.h"

#include <Tavrin/Attributes.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <cstdint>
#include <string_view>

#include "printing/Text.h"

namespace tool {

namespace {

// --- XML ---

/// Appends a namespace declaration as an attribute, as the writer does.
void appendDeclaration(std::string& tag, const std::string& prefix, const std::string& uri) {
  tag += prefix.empty() ? " xmlns" : " xmlns:";
  tag += prefix + "='";
  for (const char c : uri) {
    switch (c) {
      case '&':
        tag += "&amp;";
        break;
      case '<':
        tag += "&lt;";
        break;
      case '\'':
        tag += "&apos;";
        break;
      case '\t':
        tag += "&#x9;";
        break;
      case '\n':
        tag += "&#xA;";
        break;
      case '\r':
        tag += "&#xD;";
        break;
      default:
        tag += c;
    }
  }
  tag += '\'';
}

/// To the writer, results are inside of an element that nobody sees, which declares what they
/// inherit. Where one result inherits what that before did, it is still there.
class XMLForm : public ElementForm {
 public:
  explicit XMLForm(std::ostream& out) : out_(out) {
    writer_.startDocument();
    startUnseen();
    startUnseen();
    writer_.setOutputStream(&out_);
  }

  std::string begin(const NamespaceScope& scope) override {
    if (scope.inherited() != inherited_) {
      inherited_ = scope.inherited();
      writer_.setOutputStream(nullptr);
      writer_.endElement(defaultURI_, kUnseen, kUnseen);
      defaultURI_.clear();
      scope.forEachInherited(true, [this](const std::string& prefix, const std::string& uri) {
        if (prefix.empty()) defaultURI_ = uri;
        writer_.startPrefixMapping(prefix, uri);
      });
      startUnseen();
      writer_.setOutputStream(&out_);
    }
    return declarationsOf(scope);
  }

  std::string beginInner(const NamespaceScope& scope) override {
    writer_.flush();
    return declarationsOf(scope);
  }

  void startElement(const Tag& tag) override {
    tag.scope.forEachOwn([this](const std::string& prefix, const std::string& uri) {
      writer_.startPrefixMapping(prefix, uri);
    });
    writer_.startElement(tag.uri, tag.localName, tag.qName, tag.attributes);
  }

  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    writer_.endElement(uri, localName, qName);
  }

  void characters(const std::string& text) override { writer_.characters(text); }
  void comment(const std::string& text) override { writer_.comment(text); }
  void instruction(const std::string& target, const std::string& data) override {
    writer_.processingInstruction(target, data);
  }
  void startCDATA() override { writer_.startCDATA(); }
  void endCDATA() override { writer_.endCDATA(); }

 private:
  static constexpr char kUnseen[] = "results";

  void startUnseen() {
    writer_.startElement(defaultURI_, kUnseen, kUnseen, Tavrin::AttributesImpl());
    writer_.flush();
  }

  static std::string declarationsOf(const NamespaceScope& scope) {
    std::string declarations;
    scope.forEachInherited(false, [&](const std::string& prefix, const std::string& uri) {
      appendDeclaration(declarations, prefix, uri);
    });
    return declarations;
  }

  Tavrin::XMLWriter_XML10 writer_;
  std::ostream& out_;
  std::uint64_t inherited_ = 0;  // What the unseen element declares,
  std::string defaultURI_;       // and the namespace name that it has by that.
};

// --- JSON ---

class JSONForm : public ElementForm {
 public:
  explicit JSONForm(std::ostream& out) : out_(out) {}

  std::string begin(const NamespaceScope&) override {
    isFirst_ = true;
    return {};
  }

  std::string beginInner(const NamespaceScope&) override {
    separate();
    print();
    isFirst_ = true;
    return {};
  }

  void startElement(const Tag& tag) override {
    separate();
    line_ += "{\"name\":";
    appendQuoted(line_, tag.qName);
    if (!tag.uri.empty()) appendMember("uri", tag.uri);
    const int length = tag.attributes.getLength();
    for (int i = 0; i < length; ++i) {
      line_ += i == 0 ? ",\"attributes\":{" : ",";
      appendQuoted(line_, tag.attributes.getQName(i));
      line_ += ':';
      appendQuoted(line_, tag.attributes.getValue(i));
    }
    line_ += length > 0 ? "},\"content\":[" : ",\"content\":[";
    isFirst_ = true;
    print();
  }

  void endElement(const std::string&, const std::string&, const std::string&) override {
    closeText();
    line_ += "]}";
    isFirst_ = false;
    print();
  }

  void characters(const std::string& text) override {
    if (!isInText_) {
      separate();
      line_ += '"';
      isInText_ = true;
      isFirst_ = false;
      print();
    }
    writeText(out_, text, true);
  }

  void comment(const std::string& text) override {
    separate();
    line_ += "{\"comment\":";
    appendQuoted(line_, text);
    closeItem();
  }

  void instruction(const std::string& target, const std::string& data) override {
    separate();
    line_ += "{\"target\":";
    appendQuoted(line_, target);
    appendMember("data", data);
    closeItem();
  }

 private:
  void appendMember(const char* name, const std::string& value) {
    line_ += std::string(",\"") + name + "\":";
    appendQuoted(line_, value);
  }

  void closeText() {
    if (isInText_) line_ += '"';
    isInText_ = false;
  }

  /// In front of every item of an array.
  void separate() {
    closeText();
    if (!isFirst_) line_ += ',';
  }

  void closeItem() {
    line_ += '}';
    isFirst_ = false;
    print();
  }

  void print() {
    out_ << line_;
    line_.clear();
  }

  std::ostream& out_;
  std::string line_;       // Kept for its storage.
  bool isFirst_ = true;    // The next item needs no comma in front.
  bool isInText_ = false;  // A string has its opening quote.
};

// --- Text ---

class TextForm : public ElementForm {
 public:
  TextForm(std::ostream& out, bool isJSON) : out_(out), isJSON_(isJSON) {}

  std::string begin(const NamespaceScope&) override { return {}; }
  std::string beginInner(const NamespaceScope&) override { return {}; }
  void startElement(const Tag&) override {}
  void endElement(const std::string&, const std::string&, const std::string&) override {}
  void characters(const std::string& text) override { writeText(out_, text, isJSON_); }
  void comment(const std::string&) override {}
  void instruction(const std::string&, const std::string&) override {}

 private:
  std::ostream& out_;
  bool isJSON_;
};

}  // namespace

void writeText(std::ostream& out, const std::string& text, bool isJSON) {
  if (!isJSON) {
    out << text;
    return;
  }
  std::string quoted;
  appendQuoted(quoted, text);
  out << std::string_view(quoted).substr(1, quoted.size() - 2);
}

std::unique_ptr<ElementForm> makeXMLForm(std::ostream& out) {
  return std::make_unique<XMLForm>(out);
}

std::unique_ptr<ElementForm> makeJSONForm(std::ostream& out) {
  return std::make_unique<JSONForm>(out);
}

std::unique_ptr<ElementForm> makeTextForm(std::ostream& out, bool isJSON) {
  return std::make_unique<TextForm>(out, isJSON);
}

}  // namespace tool
