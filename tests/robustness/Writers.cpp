#include <memory>
#include <ostream>
#include <string>

#include "Subjects.h"
#include "TrappedCode.h"
#include "WrittenDocument.h"

using namespace Tavrin;

namespace {

/// What an application gives to the writer "X891".
class Vocabularies {
 public:
  void applyTo(XMLWriter& writer) {
    std::string uri = kURI;
    writer.setProperty(properties::registeredEncodingAlgorithms, &algorithms_);
    writer.setProperty(properties::initialVocabulary, &initial_);
    writer.setProperty(properties::externalVocabularies, &vocabularies_);
    writer.setProperty(properties::externalVocabulary, &uri);
  }

 private:
  static constexpr char kURI[] = "urn:an-external-vocabulary";
  static constexpr const char* kNames[] = {"a-name-of-the-vocabulary", "a-child-element-3"};
  static constexpr const char* kOthers[] = {"another-name-of-a-vocabulary", "a-child-element-5"};

  static ExternalVocabulary vocabulary(const char* const* texts) {
    ExternalVocabulary result;
    result.localNames = {texts, 2, 2};
    result.attributeValues = result.contentCharacterChunks = {texts, 2, 2};
    return result;
  }

  Base64EncodingAlgorithm inner_;
  TrappedAlgorithm algorithm_{inner_};
  EncodingAlgorithmMap algorithms_ = {{kAlgorithm, &algorithm_}};
  ExternalVocabulary initial_ = vocabulary(kNames);
  ExternalVocabulary external_ = vocabulary(kOthers);
  ExternalVocabularyMap vocabularies_ = {{kURI, &external_}};
};

enum class After { giveUp, tryAgain };

class WriterSubject : public Subject {
 public:
  /// @param after what follows an event that failed
  WriterSubject(const char* type, bool throws, After after = After::giveUp)
      : document_(type), type_(type), throws_(throws), after_(after) {
    create();
  }

  void run(Trace& trace) override {
    TrappedOutput buffer(trace);
    std::ostream stream(&buffer);
    if (throws_) stream.exceptions(std::ios::failbit | std::ios::badbit);
    writer_->setOutputStream(&stream);
    for (const WrittenDocument::Step& step : document_.steps()) {
      perform([&] { step(*writer_); });
    }
    perform([this] { recover(); });
  }

  // The writer of "FI" keeps what it has of its own when it is reset, so that it is given up.
  void recover() override {
    writer_->reset();
    if (type_ == "FI") create();
  }

 protected:
  XMLWriter& writer() { return *writer_; }

 private:
  template <typename Step>
  void perform(Step step) {
    try {
      step();
    } catch (...) {
      if (after_ == After::giveUp) throw;
      step();
    }
  }

  void create() {
    writer_ = XMLWriterFactory::createXMLWriter(type_);
    if (type_ == "X891") vocabularies_.applyTo(*writer_);
  }

  const WrittenDocument document_;
  Vocabularies vocabularies_;
  std::string type_;
  std::unique_ptr<XMLWriter> writer_;
  bool throws_;
  After after_;
};

/// Holds the octets of the root element back.
class IndentingWriter : public WriterSubject {
 public:
  explicit IndentingWriter(After after) : WriterSubject("XML10", true, after) {
    writer().setFeature(features::autoIndent, true);
  }
};

template <char kind, bool throws, After after = After::giveUp>
std::unique_ptr<Subject> make() {
  constexpr const char* type = kind == 't'   ? "XML"
                               : kind == '1' ? "XML10"
                               : kind == 'f' ? "FI"
                                             : "X891";
  return std::make_unique<WriterSubject>(type, throws, after);
}

template <After after>
std::unique_ptr<Subject> makeIndenting() {
  return std::make_unique<IndentingWriter>(after);
}

}  // namespace

std::vector<SubjectKind> writers() {
  return {{"XML", false, make<'t', false>},
          {"XMLThrowingStream", false, make<'t', true>},
          {"XML10", false, make<'1', false>},
          {"XML10ThrowingStream", false, make<'1', true>},
          {"XML10Indenting", false, makeIndenting<After::giveUp>},
          {"FI", false, make<'f', false>},
          {"FIThrowingStream", false, make<'f', true>},
          {"X891", false, make<'x', false>},
          {"X891ThrowingStream", false, make<'x', true>}};
}

std::vector<SubjectKind> persistentWriters() {
  return {{"XML10", false, make<'1', true, After::tryAgain>},
          {"XML10Indenting", false, makeIndenting<After::tryAgain>},
          {"X891", false, make<'x', true, After::tryAgain>}};
}
