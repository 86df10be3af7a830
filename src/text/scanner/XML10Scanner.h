#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "../../xml/NamespaceBindings.h"
#include "../../xml/Place.h"
#include "../../xml/UniqueAttributes.h"
#include "ScannedAttributes.h"
#include "ScannedEvents.h"
#include "ScannedNames.h"

namespace Tavrin::text {

/// Reads a well-formed document in UTF-8, but for a document type, by the grammar of XML 1.0
/// (fourth edition; its numbers stand with the operations), block by block. It keeps nothing of the
/// document but the elements that are open and their namespace declarations.
///
/// What it does not take for certain, it refuses before anything of it has been reported: a
/// document type, another encoding, and whatever is not well-formed. Another parser then goes on
/// from that very token, and has the last word. `describeContext` writes a document for it that
/// leads to the same state.
class XML10Scanner {
 public:
  struct Settings {
    bool splitsNames = true;         ///< By Namespaces in XML.
    bool listsDeclarations = false;  ///< Those of namespaces are attributes, too,
    bool namesXmlns = false;         ///< in the namespace of `xmlns`.
  };

  XML10Scanner(ScannedEvents& events, const Settings& settings)
      : events_(events), settings_(settings), names_(settings.splitsNames) {}
  XML10Scanner(const XML10Scanner&) = delete;
  XML10Scanner& operator=(const XML10Scanner&) = delete;

  enum class Outcome {
    read,     ///< All octets were read, but for a token that is not complete.
    halted,   ///< So were those up to a call of `halt`.
    refused,  ///< The token that the rest begins with is nothing for the scanner.
  };
  /// Reads the next octets. They begin with the rest of the call before.
  /// @param areLast whether the document ends with them; where that is no failure, nothing is left
  Outcome scan(std::string_view octets, bool areLast);
  /// After `hold` or `haltHere`, reads on in the same octets, where content goes on. Otherwise it
  /// has to be followed by `goOn`.
  /// @return whether an event has called one of them again
  bool pull() {
    isHalted_ = isHaltedHere_ = false;
    step_ = Step::done;
    if (isEmptyTag_ || declarationsToLeave_ > 0) completeTag();
    if (phase_ == Phase::content) step_ = content();
    return isHaltedHere_;
  }
  /// Reads on after that, as `scan` does.
  Outcome goOn();
  bool isHaltedHere() const { return isHaltedHere_; }
  /// What the last call has not read, in its octets.
  std::string_view rest() const { return rest_; }
  /// Ends the call of `scan` that is under way, after the current token.
  void halt() { isHalted_ = true; }
  /// Called from an event: the strings of its names and of its text stay valid, and the octets must
  /// stay where they are, until the next call of `pull`.
  void hold() { isHaltedHere_ = true; }
  /// Likewise, those of its attributes, too. Ends the call of `scan`, `pull` or `goOn` that is
  /// under way, after this event.
  void haltHere() { isHalted_ = isHaltedHere_ = true; }

  /// Where the markup or text of the current event begins.
  std::uint64_t octetsBefore() const {
    return octets_ + static_cast<std::uint64_t>(event_ - begin_);
  }
  const xml::Place& place() const;
  std::size_t depth() const { return open_.size(); }
  /// How many octets the last start tag has got by defaults, but for namespace declarations.
  std::size_t defaultOctets() const { return defaultOctets_; }

  // After a refusal.

  bool isInProlog() const { return phase_ == Phase::prolog; }
  /// Takes what a document type declares of an attribute, for the elements that follow.
  /// @param type  as Attributes::getType returns it
  /// @param value the default, normalized, or null
  /// @return whether it can: the time of a start tag grows with the attributes of its element
  bool declareAttribute(std::string_view element, std::string_view attribute,
                        const std::string& type, const char* value);
  /// Goes on at the root element.
  /// @param octets what stands in front of it: what was refused, and what follows
  void skipProlog(std::string_view octets);
  /// Calls a function with the pieces of a document that leads to the current state.
  void describeContext(const std::function<void(std::string_view piece)>& append) const;
  /// Calls a function with each open element, the outermost first: "<" and its name, and the line
  /// where it begins.
  void forEachElement(
      const std::function<void(std::string_view start, std::uint64_t line)>& visit) const;
  const xml::NamespaceBindings& bindings() const { return bindings_; }

 private:
  enum class Phase : std::uint8_t { start, prolog, content, section, epilog };
  /// What becomes of a token.
  enum class Step : std::uint8_t {
    done,
    cut,     ///< It needs more octets.
    refused  ///< It is nothing for the scanner.
  };
  /// What a start tag goes on with.
  enum class Part : std::uint8_t {
    elementName,
    attributeOrEnd,  ///< After a name or a value.
    spaceInTag,
    attributeName,
    equals,
    quote,
    value,
    emptyEnd
  };

  struct WrittenAttribute {
    ScannedName* name = nullptr;
    std::size_t begin = 0;  ///< Of the value, from the beginning of the tag.
    std::size_t end = 0;
    bool isPlain = true;  ///< No reference, and no white space but blanks.
    const DeclaredAttribute* declared = nullptr;
    bool isDefault = false;  ///< It is not written, but declared.
  };

  /// The start tag that is being read.
  struct Tag {
    std::size_t at = 1;         ///< How many of its octets have been looked at.
    std::size_t nameBegin = 1;  ///< Of the current name.
    std::size_t colon = 0;      ///< In the current name, or 0.
    ScannedName* element = nullptr;
    std::vector<WrittenAttribute> attributes;
    bool declares = false;  ///< Whether one of them declares a namespace.
    char quote = '\0';
    Part part = Part::elementName;

    void clear();
  };

  struct OpenElement {
    const ScannedName* name;
    const std::string* uri;
    std::uint32_t declarations;  ///< How many its tag has.
    std::uint64_t octet;         ///< Where it begins,
    std::uint64_t line;          ///< and the line; 0 until the end of the block.
  };

  /// A character that is written as a reference.
  struct Reference {
    Step step;
    std::size_t octets = 0;  ///< Of the reference.
    std::string text = {};   ///< The character.
  };

  Step scanPhase();
  void completeTag();
  void endBlock();

  // Document and prolog: ScannedProlog.cpp.
  Step startOfDocument();
  Step declaration();
  Step misc();
  Step whiteSpace();

  // Content: ScannedContent.cpp.
  Step content();
  Step markup();
  Step charData();
  Step contentReference();
  Step lineEnd();
  Step section();
  Step beginSection();
  const char* endOfCharacters(const char* at) const;
  const char* overCharacters(const char* at) const;
  Reference reference(const char* at) const;
  static Reference entityReference(std::string_view name, bool isCut);
  static Reference characterReference(std::string_view number, bool isCut);
  void report(std::string_view text) { events_.scannedText(text); }

  // Comments and processing instructions: ScannedContent.cpp.
  Step comment();
  Step instruction();
  Step instructionTarget(const char*& at);
  /// Where a text in markup goes on, or why not.
  Step overCharacter(const char*& at) const;

  // Tags: ScannedTags.cpp.
  Step startTag();
  Step cutTag(const char* at);
  Step name(const char*& at);
  Step nameOctets(const char*& at, const char* begin, std::size_t* colon) const;
  Step overNameCharacter(const char*& at, bool isFirst) const;
  Step value(const char*& at);
  Step endOfStartTag(const char* end, bool isEmpty);
  void applyDeclarations();
  bool declare(std::size_t outside);
  bool listAttributes();
  void assignValue(std::string& value, const WrittenAttribute& written) const;
  static const std::string& typeOf(const WrittenAttribute& attribute);
  const std::string* uriOf(ScannedName& name) const;
  bool declaresNamespace(const ScannedName& attribute) const {
    return settings_.splitsNames && xml::isDeclarationName(attribute.qName);
  }
  bool isFirst(ScannedName& attribute);
  Step endTag();
  void reportEnd();
  void leaveScope();

  std::size_t left(const char* at) const { return static_cast<std::size_t>(end_ - at); }

  ScannedEvents& events_;
  const Settings settings_;
  ScannedNames names_;
  xml::NamespaceBindings bindings_;
  xml::UniqueAttributes unique_;  ///< Those that have a prefix.
  std::uint32_t tags_ = 0;        ///< How many there were.
  std::vector<OpenElement> open_;
  ScannedAttributes attributes_;
  std::vector<std::vector<DeclaredAttribute>> declared_;  ///< By the numbers of elements.
  std::size_t defaultOctets_ = 0;
  Tag tag_;

  Phase phase_ = Phase::start;
  Step step_ = Step::done;  ///< What became of the last token.
  bool isHalted_ = false;
  bool isHaltedHere_ = false;  ///< Or will be, where the octets end.
  bool isEmptyTag_ = false;    ///< The end of the last element is that of its start tag.
  std::uint32_t declarationsToLeave_ = 0;  ///< Of an element that has ended.
  bool isLast_ = false;
  bool hasMisc_ = false;    ///< Whether anything stands in front of the root element but `start_`.
  std::string start_;       ///< A byte order mark and the XML declaration.
  std::size_t resume_ = 0;  ///< How much of a token that is not complete has been looked at.
  std::size_t targetEnd_ = 0;  ///< Of a processing instruction that is not complete.
  std::string target_;
  std::string text_;  ///< Of a comment or processing instruction.

  // The octets of the current call, where the current token begins and the current event.
  const char* begin_ = nullptr;
  const char* end_ = nullptr;
  const char* at_ = nullptr;
  const char* event_ = nullptr;
  std::string_view rest_;

  std::uint64_t octets_ = 0;  ///< Before these.
  xml::Place blockPlace_;     ///< Of these.
  std::size_t numbered_ = 0;  ///< How many open elements have a line.
  // How far lines and columns have been counted.
  mutable xml::Place place_;
  mutable const char* counted_ = nullptr;
};

/// White space (production 3).
inline bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

}  // namespace Tavrin::text
