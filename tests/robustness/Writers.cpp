#include <functional>

#include "Subjects.h"
#include "Trap.h"

using namespace Tavrin;

namespace {

/// Each call may throw (trap::Place::attributes).
class TrappedAttributes : public EncodingAlgorithmAttributes {
 public:
  explicit TrappedAttributes(const EncodingAlgorithmAttributes& list) : list_(list) {}

  int getLength() const override { return trapped().getLength(); }
  const std::string& getURI(int i) const override { return trapped().getURI(i); }
  const std::string& getLocalName(int i) const override { return trapped().getLocalName(i); }
  const std::string& getQName(int i) const override { return trapped().getQName(i); }
  const std::string& getType(int i) const override { return trapped().getType(i); }
  const std::string& getValue(int i) const override { return trapped().getValue(i); }
  int getIndex(const std::string& uri, const std::string& name) const override {
    return trapped().getIndex(uri, name);
  }
  int getIndex(const std::string& name) const override { return trapped().getIndex(name); }
  const std::string& getType(const std::string& uri, const std::string& name) const override {
    return trapped().getType(uri, name);
  }
  const std::string& getType(const std::string& name) const override {
    return trapped().getType(name);
  }
  const std::string& getValue(const std::string& uri, const std::string& name) const override {
    return trapped().getValue(uri, name);
  }
  const std::string& getValue(const std::string& name) const override {
    return trapped().getValue(name);
  }
  const std::string& getAlgorithmURI(int i) const override { return trapped().getAlgorithmURI(i); }
  int getAlgorithmIndex(int i) const override { return trapped().getAlgorithmIndex(i); }
  const EncodedData* getAlgorithmData(int i) const override {
    return trapped().getAlgorithmData(i);
  }
  const std::string& getAlgorithmURI(const std::string& uri,
                                     const std::string& name) const override {
    return trapped().getAlgorithmURI(uri, name);
  }
  const std::string& getAlgorithmURI(const std::string& name) const override {
    return trapped().getAlgorithmURI(name);
  }
  int getAlgorithmIndex(const std::string& uri, const std::string& name) const override {
    return trapped().getAlgorithmIndex(uri, name);
  }
  int getAlgorithmIndex(const std::string& name) const override {
    return trapped().getAlgorithmIndex(name);
  }
  const EncodedData* getAlgorithmData(const std::string& uri,
                                      const std::string& name) const override {
    return trapped().getAlgorithmData(uri, name);
  }
  const EncodedData* getAlgorithmData(const std::string& name) const override {
    return trapped().getAlgorithmData(name);
  }

 private:
  const EncodingAlgorithmAttributes& trapped() const {
    trap::throwsOrEnds(trap::Place::attributes);
    return list_;
  }

  const EncodingAlgorithmAttributes& list_;
};

/// A document that has everything. Its strings are made beforehand, so that what allocates is the
/// writer, and longer than what a string holds without memory of its own.
class Document {
 public:
  static constexpr int kDepth = 8;

  Document() {
    const std::string& uri = keep("urn:a-namespace-name");
    list_.addAttribute(uri, "attribute", "prefix:attribute", "CDATA", "a value of some length");
    list_.addAttribute("", "of-numbers", "of-numbers", "CDATA", "", 3,
                       std::make_unique<IntData>(std::vector<long>{1, -2, 3, 40000, 5}));
    list_.addAttribute("", "second-attribute", "second-attribute", "NMTOKEN",
                       std::string(300, 'v'));
    for (int i = 0; i < 12; ++i) {
      const std::string name = "one-of-many-attributes-" + std::to_string(i);
      many_.addAttribute("", name, name, "CDATA", "the value of " + name);
    }
  }

  void prolog(XMLWriter& writer) const {
    writer.startDocument();
    writer.comment(comment_);
    writer.processingInstruction(target_, data_);
    writer.startDTD(root_, publicId_, systemId_);
    writer.notationDecl(name_, publicId_, systemId_);
    writer.unparsedEntityDecl(entity_, publicId_, systemId_, name_);
    writer.elementDecl(root_, "(#PCDATA|a-child-element)*");
    writer.attributeDecl(root_, name_, "(one|another)", "", "another");
    writer.internalEntityDecl("internal-entity", text_);
    writer.externalEntityDecl("external-entity", publicId_, systemId_);
    writer.processingInstruction(target_, data_);
    writer.endDTD();
    writer.comment(comment_);
  }

  void content(XMLWriter& writer) const {
    writer.startPrefixMapping("prefix", uri_);
    writer.startPrefixMapping("", defaultUri_);
    writer.startElement(uri_, root_, qName_, TrappedAttributes(list_));
    writer.characters(text_);
    for (int i = 0; i < kDepth; ++i) {
      const std::string& name = names_[static_cast<std::size_t>(i)];
      writer.startElement(defaultUri_, name, name, none_);
    }
    writer.characters(long_);
    writer.startElement(defaultUri_, root_, root_, TrappedAttributes(many_));
    writer.endElement(defaultUri_, root_, root_);
    for (int i = kDepth; i-- > 0;) {
      const std::string& name = names_[static_cast<std::size_t>(i)];
      writer.endElement(defaultUri_, name, name);
    }
    writer.startCDATA();
    writer.characters(text_);
    writer.endCDATA();
    writer.comment(comment_);
    writer.processingInstruction(target_, data_);
    writer.ignorableWhitespace(space_);
    writer.skippedEntity("external-entity");
  }

  void typed(XMLWriter_FI& writer) const {
    writer.bytes(text_);
    writer.shorts({1, -2, 3});
    writer.ints(integers_);
    writer.longs(integers_);
    writer.booleans(booleans_);
    writer.floats({1.5F, -2.25F});
    writer.doubles({1.5, -2.25});
    writer.octets({}, algorithms::hexadecimal, text_);
    writer.object({}, algorithms::cdata, section_);
  }

  void end(XMLWriter& writer) const {
    writer.endElement(uri_, root_, qName_);
    writer.comment(comment_);
    writer.endDocument();
  }

 private:
  std::string keep(const char* text) { return text; }

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
  const std::string entity_ = "an-unparsed-entity";
  const std::string text_ = "some text with <, > & others";
  const std::string space_ = "                    \n";
  const std::string long_ = std::string(600, 't');
  const std::vector<long> integers_ = std::vector<long>(50, 7);
  const std::vector<bool> booleans_ = std::vector<bool>(50, true);
  const CDATAData section_ = CDATAData("the text of a section");
  const std::vector<std::string> names_ = [] {
    std::vector<std::string> names;
    for (int i = 0; i < kDepth; ++i) names.push_back("a-child-element-" + std::to_string(i));
    return names;
  }();
  EncodingAlgorithmAttributesImpl list_;
  EncodingAlgorithmAttributesImpl many_;
  AttributesImpl none_;
};

class WriterSubject : public Subject {
 public:
  WriterSubject(const char* type, bool throws) : type_(type), throws_(throws) { create(); }

  void run(Trace& trace) override {
    TrappedOutput buffer(trace);
    std::ostream stream(&buffer);
    if (throws_) stream.exceptions(std::ios::failbit | std::ios::badbit);
    writer_->setOutputStream(&stream);
    document_.prolog(*writer_);
    document_.content(*writer_);
    if (auto* const typed = dynamic_cast<XMLWriter_FI*>(writer_.get())) document_.typed(*typed);
    document_.end(*writer_);
    recover();
  }

  // The writer of "FI" keeps what it has of its own when it is reset, so that it is given up.
  void recover() override {
    writer_->reset();
    if (type_ == "FI") create();
  }

 protected:
  XMLWriter& writer() { return *writer_; }

 private:
  void create() {
    writer_ = XMLWriterFactory::createXMLWriter(type_);
    if (type_ == "X891") writer_->setProperty(properties::initialVocabulary, &initial_);
  }

  static constexpr const char* kNames[] = {"a-name-of-the-vocabulary", "a-child-element-3"};
  ExternalVocabulary initial_ = [] {
    ExternalVocabulary vocabulary;
    vocabulary.localNames = {kNames, 2, 2};
    vocabulary.attributeValues = vocabulary.contentCharacterChunks = {kNames, 2, 2};
    return vocabulary;
  }();
  const Document document_;
  std::string type_;
  std::unique_ptr<XMLWriter> writer_;
  bool throws_;
};

/// Holds the octets of the root element back.
class IndentingWriter : public WriterSubject {
 public:
  IndentingWriter() : WriterSubject("XML10", true) {
    writer().setFeature(features::autoIndent, true);
  }
};

template <char kind, bool throws>
std::unique_ptr<Subject> make() {
  constexpr const char* type = kind == 't'   ? "XML"
                               : kind == '1' ? "XML10"
                               : kind == 'f' ? "FI"
                                             : "X891";
  return std::make_unique<WriterSubject>(type, throws);
}

}  // namespace

std::vector<SubjectKind> writers() {
  return {{"XML", false, make<'t', false>},
          {"XMLThrowingStream", false, make<'t', true>},
          {"XML10", false, make<'1', false>},
          {"XML10ThrowingStream", false, make<'1', true>},
          {"XML10Indenting", false,
           []() -> std::unique_ptr<Subject> { return std::make_unique<IndentingWriter>(); }},
          {"FI", false, make<'f', false>},
          {"FIThrowingStream", false, make<'f', true>},
          {"X891", false, make<'x', false>},
          {"X891ThrowingStream", false, make<'x', true>}};
}
