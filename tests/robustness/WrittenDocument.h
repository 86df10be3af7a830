#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TrappedCode.h"

/// The algorithm of the application.
inline constexpr char kAlgorithm[] = "urn:an-algorithm-of-the-application";

/// A document that has everything, event by event. Its strings are made beforehand, so that what
/// allocates is the writer, and longer than what a string holds without memory of its own.
class WrittenDocument {
 public:
  using Step = std::function<void(Tavrin::XMLWriter&)>;

  /// @param type of the writers; with typed content, and the application's, for those that take it
  explicit WrittenDocument(const std::string& type) {
    const bool isTyped = type == "FI" || type == "X891";
    list_.addAttribute(uri_, "attribute", "prefix:attribute", "CDATA", "a value of some length");
    list_.addAttribute("", "of-numbers", "of-numbers", "CDATA", "", 3,
                       std::make_unique<Tavrin::IntData>(std::vector<long>{1, -2, 3, 40000, 5}));
    if (type == "X891") {
      list_.addAttribute("", "of-the-application", "of-the-application", "CDATA", kAlgorithm, 0,
                         std::make_unique<Tavrin::Base64Data>(text_));
    }
    list_.addAttribute("", "second-attribute", "second-attribute", "NMTOKEN",
                       std::string(300, 'v'));
    for (int i = 0; i < 12; ++i) {
      const std::string name = "one-of-many-attributes-" + std::to_string(i);
      many_.addAttribute("", name, name, "CDATA", "the value of " + name);
    }
    prolog();
    content();
    if (isTyped) typed();
    if (type == "X891") {
      add([this](Tavrin::XMLWriter& w) {
        encoded(w).object(kAlgorithm, 0, Tavrin::Base64Data(text_));
      });
      add([this](Tavrin::XMLWriter& w) { encoded(w).octets(kAlgorithm, 0, text_); });
    }
    end();
  }
  WrittenDocument(const WrittenDocument&) = delete;
  WrittenDocument& operator=(const WrittenDocument&) = delete;

  const std::vector<Step>& steps() const { return steps_; }

 private:
  static constexpr int kDepth = 8;

  void add(Step step) { steps_.push_back(std::move(step)); }

  void prolog() {
    add([](Tavrin::XMLWriter& w) { w.startDocument(); });
    add([this](Tavrin::XMLWriter& w) { w.comment(comment_); });
    add([this](Tavrin::XMLWriter& w) { w.processingInstruction(target_, data_); });
    add([this](Tavrin::XMLWriter& w) { w.startDTD(root_, publicId_, systemId_); });
    add([this](Tavrin::XMLWriter& w) { w.notationDecl(name_, publicId_, systemId_); });
    add([this](Tavrin::XMLWriter& w) {
      w.unparsedEntityDecl(entity_, publicId_, systemId_, name_);
    });
    add([this](Tavrin::XMLWriter& w) { w.elementDecl(root_, "(#PCDATA|a-child-element)*"); });
    add([this](Tavrin::XMLWriter& w) {
      w.attributeDecl(root_, name_, "(one|another)", "", "another");
    });
    add([this](Tavrin::XMLWriter& w) { w.internalEntityDecl("internal-entity", text_); });
    add([this](Tavrin::XMLWriter& w) { w.externalEntityDecl(external_, publicId_, systemId_); });
    add([this](Tavrin::XMLWriter& w) { w.processingInstruction(target_, data_); });
    add([](Tavrin::XMLWriter& w) { w.endDTD(); });
    add([this](Tavrin::XMLWriter& w) { w.comment(comment_); });
  }

  void content() {
    add([this](Tavrin::XMLWriter& w) { w.startPrefixMapping("prefix", uri_); });
    add([this](Tavrin::XMLWriter& w) { w.startPrefixMapping("", defaultUri_); });
    add([this](Tavrin::XMLWriter& w) {
      w.startElement(uri_, root_, qName_, TrappedAttributes(list_));
    });
    add([this](Tavrin::XMLWriter& w) { w.characters(text_); });
    for (const std::string& name : names_) {
      add([this, &name](Tavrin::XMLWriter& w) { w.startElement(defaultUri_, name, name, none_); });
    }
    add([this](Tavrin::XMLWriter& w) { w.characters(long_); });
    add([this](Tavrin::XMLWriter& w) {
      w.startElement(defaultUri_, root_, root_, TrappedAttributes(many_));
    });
    add([this](Tavrin::XMLWriter& w) { w.endElement(defaultUri_, root_, root_); });
    for (int i = kDepth; i-- > 0;) {
      const std::string& name = names_[static_cast<std::size_t>(i)];
      add([this, &name](Tavrin::XMLWriter& w) { w.endElement(defaultUri_, name, name); });
    }
    add([](Tavrin::XMLWriter& w) { w.startCDATA(); });
    add([this](Tavrin::XMLWriter& w) { w.characters(text_); });
    add([](Tavrin::XMLWriter& w) { w.endCDATA(); });
    add([this](Tavrin::XMLWriter& w) { w.comment(comment_); });
    add([this](Tavrin::XMLWriter& w) { w.processingInstruction(target_, data_); });
    add([this](Tavrin::XMLWriter& w) { w.ignorableWhitespace(space_); });
    add([this](Tavrin::XMLWriter& w) { w.skippedEntity(external_); });
  }

  static Tavrin::PrimitiveTypeContentHandler& values(Tavrin::XMLWriter& writer) {
    return dynamic_cast<Tavrin::PrimitiveTypeContentHandler&>(writer);
  }
  static Tavrin::EncodingAlgorithmContentHandler& encoded(Tavrin::XMLWriter& writer) {
    return dynamic_cast<Tavrin::EncodingAlgorithmContentHandler&>(writer);
  }

  void typed() {
    add([this](Tavrin::XMLWriter& w) { values(w).bytes(text_); });
    add([](Tavrin::XMLWriter& w) { values(w).shorts({1, -2, 3}); });
    add([this](Tavrin::XMLWriter& w) { values(w).ints(integers_); });
    add([this](Tavrin::XMLWriter& w) { values(w).longs(integers_); });
    add([this](Tavrin::XMLWriter& w) { values(w).booleans(booleans_); });
    add([](Tavrin::XMLWriter& w) { values(w).floats({1.5F, -2.25F}); });
    add([](Tavrin::XMLWriter& w) { values(w).doubles({1.5, -2.25}); });
    add([this](Tavrin::XMLWriter& w) {
      encoded(w).octets({}, Tavrin::algorithms::hexadecimal, text_);
    });
    add([this](Tavrin::XMLWriter& w) {
      encoded(w).object({}, Tavrin::algorithms::cdata, section_);
    });
  }

  void end() {
    add([this](Tavrin::XMLWriter& w) { w.endElement(uri_, root_, qName_); });
    add([this](Tavrin::XMLWriter& w) { w.comment(comment_); });
    add([](Tavrin::XMLWriter& w) { w.endDocument(); });
  }

  const std::string comment_ = "a comment of some length";
  const std::string target_ = "a-target-of-instructions";
  const std::string data_ = "the data of an instruction";
  const std::string root_ = "a-root-element-name";
  const std::string qName_ = "prefix:a-root-element-name";
  const std::string uri_ = "urn:a-namespace-name";
  const std::string defaultUri_ = "urn:the-default-namespace";
  const std::string publicId_ = "a public identifier";
  const std::string systemId_ = "a-system-identifier.ent";
  const std::string name_ = "a-name-of-something";
  const std::string external_ = "external-entity";
  const std::string entity_ = "an-unparsed-entity";
  const std::string text_ = "some text with <, > & others";
  const std::string space_ = "                    \n";
  const std::string long_ = std::string(600, 't');
  const std::vector<long> integers_ = std::vector<long>(50, 7);
  const std::vector<bool> booleans_ = std::vector<bool>(50, true);
  const Tavrin::CDATAData section_ = Tavrin::CDATAData("the text of a section");
  const std::vector<std::string> names_ = [] {
    std::vector<std::string> names;
    for (int i = 0; i < kDepth; ++i) names.push_back("a-child-element-" + std::to_string(i));
    return names;
  }();
  Tavrin::EncodingAlgorithmAttributesImpl list_;
  Tavrin::EncodingAlgorithmAttributesImpl many_;
  Tavrin::AttributesImpl none_;
  std::vector<Step> steps_;
};
