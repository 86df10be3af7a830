// Random events, right ones and wrong ones: whatever the writer accepts, a parser of its own reads
// without error, and finds what was sent.

#include <expat.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

/// What comes does not depend on the standard library (Steele, Lea and Flood, "Fast splittable
/// pseudorandom number generators").
class Random {
 public:
  explicit Random(std::uint64_t start) : state_(start) {}
  unsigned below(unsigned bound) {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return static_cast<unsigned>((z ^ (z >> 31)) % bound);
  }
  template <typename T, std::size_t Count>
  const T& oneOf(const T (&choices)[Count]) {
    return choices[below(Count)];
  }
  /// Now and then one of the others.
  template <typename T, std::size_t Count, std::size_t Others>
  const T& mostly(const T (&choices)[Count], const T (&others)[Others]) {
    return below(30) == 0 ? oneOf(others) : oneOf(choices);
  }

 private:
  std::uint64_t state_;
};

const std::string kRightTexts[] = {"a",
                                   "<",
                                   ">",
                                   "&",
                                   "'",
                                   "\"",
                                   "\t",
                                   "\n",
                                   "\r",
                                   "\r\n",
                                   "]]",
                                   "]",
                                   "]]>",
                                   "-",
                                   " ",
                                   "",
                                   "%p;",
                                   "&e;",
                                   "--x",
                                   "\xC3\xA4",
                                   "\xF0\x9F\x8C\xB3",
                                   "a long text without anything in it"};
const std::string kWrongTexts[] = {std::string(1, '\0'), "\x01", "\xFF", "\xC3", "\xEF\xBF\xBE"};
const std::string kRightNames[] = {"a", "b", "\xC3\xA4", "a-b.c"};
const std::string kWrongNames[] = {"", "1", "a b", "a:b", "<", "\xFF"};
const std::string kPrefixes[] = {"", "", "p", "q"};
const std::string kWrongPrefixes[] = {"xml", "xmlns", "unbound", "1"};
const std::string kURIs[] = {"urn:1", "urn:2", "urn:<&'\"\r\n"};
const std::string kWrongURIs[] = {"", "http://www.w3.org/2000/xmlns/", "\x01"};

/// What a parser reports, and what the writer was sent, in the same form.
using Log = std::vector<std::string>;

void addText(Log& log, const std::string& text) {
  if (text.empty()) return;
  if (log.empty() || !log.back().starts_with("text ")) log.push_back("text ");
  log.back() += text;
}

std::string expanded(const std::string& uri, const std::string& localName) {
  return uri.empty() ? localName : uri + '\f' + localName;
}

/// Reads with expat alone. Names are a namespace name, a form feed and a local name.
Log readBack(const std::string& document) {
  Log log;
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(
      XML_ParserCreateNS("UTF-8", '\f'), &XML_ParserFree);
  XML_SetUserData(parser.get(), &log);
  XML_SetElementHandler(
      parser.get(),
      [](void* user, const XML_Char* name, const XML_Char** attributes) {
        std::string line = "start " + std::string(name);
        for (; *attributes != nullptr; attributes += 2) {
          line += '|' + std::string(attributes[0]) + '=' + attributes[1];
        }
        static_cast<Log*>(user)->push_back(line);
      },
      [](void* user, const XML_Char* name) {
        static_cast<Log*>(user)->push_back("end " + std::string(name));
      });
  XML_SetCharacterDataHandler(parser.get(), [](void* user, const XML_Char* text, int length) {
    addText(*static_cast<Log*>(user), std::string(text, static_cast<std::size_t>(length)));
  });
  XML_SetCommentHandler(parser.get(), [](void* user, const XML_Char* text) {
    static_cast<Log*>(user)->push_back("comment " + std::string(text));
  });
  XML_SetProcessingInstructionHandler(
      parser.get(), [](void* user, const XML_Char* target, const XML_Char* data) {
        static_cast<Log*>(user)->push_back("pi " + std::string(target) + ' ' + data);
      });
  XML_SetEntityDeclHandler(
      parser.get(),
      [](void* user, const XML_Char* name, int isParameter, const XML_Char* value, int length,
         const XML_Char*, const XML_Char* systemId, const XML_Char*, const XML_Char* notation) {
        std::string line = "entity " + std::string(isParameter != 0 ? "%" : "") + name + ' ';
        if (value != nullptr) {
          line.append(value, static_cast<std::size_t>(length));
        } else {
          line += "SYSTEM " + std::string(systemId);
        }
        if (notation != nullptr) line += " NDATA " + std::string(notation);
        static_cast<Log*>(user)->push_back(line);
      });
  if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), 1) !=
      XML_STATUS_OK) {
    ADD_FAILURE() << XML_ErrorString(XML_GetErrorCode(parser.get())) << "\n" << document;
  }
  return log;
}

/// Sends random events and keeps what was accepted.
class Sender {
 public:
  Sender(std::uint64_t start, bool indent)
      : random_(start),
        writer_({.indent = indent, .emptyTags = start % 3 != 0, .declaration = start % 2 == 0}) {
    if (start % 5 == 0) writer_.set(properties::quoteCharacter, '"');
  }

  void sendDocument() {
    accepts([&] { writer_.startDocument(); });
    if (random_.below(3) == 0) sendDTD();
    sendStart();
    keepStart();
    const unsigned events = random_.below(40);
    for (unsigned i = 0; i < events && !open_.empty(); ++i) sendOne();
    while (!open_.empty()) sendEnd();
    EXPECT_TRUE(accepts([&] { writer_.endDocument(); }));
  }

  const std::string& text() const { return writer_.text(); }
  const Log& log() const { return log_; }
  unsigned refusals() const { return refusals_; }

 private:
  struct Name {
    std::string uri, localName, qName;
  };

  /// A refused event leaves no octet behind.
  template <typename Action>
  bool accepts(Action action) {
    const std::size_t before = writer_.text().size();
    if (thrown(action) == "nothing") return true;
    EXPECT_EQ(writer_.text().size(), before);
    ++refusals_;
    return false;
  }

  std::string randomText(unsigned most = 4) {
    std::string result;
    for (unsigned i = random_.below(most + 1); i > 0; --i) {
      result += random_.below(100) == 0 ? random_.oneOf(kWrongTexts) : random_.oneOf(kRightTexts);
    }
    return result;
  }

  Name name(bool isAttribute) {
    const std::string local = random_.mostly(kRightNames, kWrongNames);
    const std::string prefix = random_.mostly(kPrefixes, kWrongPrefixes);
    std::string uri = random_.oneOf(kURIs);
    if (prefix.empty() && (isAttribute || random_.below(2) == 0)) uri.clear();
    // Most often what is in scope.
    for (std::size_t i = scopes_.size(); i-- > 0 && random_.below(20) != 0;) {
      if (scopes_[i].first != prefix || (prefix.empty() && isAttribute)) continue;
      uri = scopes_[i].second;
      break;
    }
    return {uri, local, prefix.empty() ? local : prefix + ':' + local};
  }

  void sendStart() {
    pending_.clear();
    const std::size_t scopes = scopes_.size();
    for (unsigned i = random_.below(3); i > 0; --i) {
      const std::string prefix = random_.mostly(kPrefixes, kWrongPrefixes);
      const std::string uri = random_.mostly(kURIs, kWrongURIs);
      bool isTwice = false;
      for (const auto& mapping : pending_) isTwice = isTwice || mapping.first == prefix;
      // A mapping stays until the next start tag, so that a wrong one would spoil all of them.
      if (isTwice) continue;
      if (!accepts([&] { writer_.startPrefixMapping(prefix, uri); })) continue;
      pending_.emplace_back(prefix, uri);
      scopes_.emplace_back(prefix, uri);
    }
    AttributesImpl attributes;
    std::string line;
    for (unsigned i = random_.below(4); i > 0; --i) {
      const Name attribute = name(true);
      const std::string value = randomText();
      attributes.addAttribute(attribute.uri, attribute.localName, attribute.qName, "CDATA", value);
      line += '|' + expanded(attribute.uri, attribute.localName) + '=' + value;
    }
    // Refused or not: the mappings belong to the next start tag that is accepted.
    for (int attempts = 0;; ++attempts) {
      const Name element = name(false);
      if (attempts == 20) attributes = AttributesImpl();
      const std::string shown = attempts >= 20 ? std::string() : line;
      started_ = element;
      startLine_ = "start " + expanded(element.uri, element.localName) + shown;
      if (accepts([&] {
            writer_.startElement(element.uri, element.localName, element.qName, attributes);
          })) {
        break;
      }
    }
    declared_ = scopes_.size() - scopes;
  }

  void keepStart() {
    log_.push_back(startLine_);
    open_.push_back(started_);
    declarations_.push_back(declared_);
  }

  void sendEnd() {
    const Name element = open_.back();
    if (random_.below(10) == 0) {
      EXPECT_FALSE(accepts([&] { writer_.endElement("urn:no", "no", "no"); }));
    }
    ASSERT_TRUE(
        accepts([&] { writer_.endElement(element.uri, element.localName, element.qName); }));
    log_.push_back("end " + expanded(element.uri, element.localName));
    open_.pop_back();
    scopes_.resize(scopes_.size() - declarations_.back());
    declarations_.pop_back();
  }

  void sendOne() {
    switch (random_.below(8)) {
      case 0:
      case 1:
        sendStart();
        keepStart();
        return;
      case 2:
        sendEnd();
        return;
      case 3:
        return sendSection();
      case 4: {
        const std::string comment = randomText(2);
        if (comment.find('\r') != std::string::npos) return;
        if (accepts([&] { writer_.comment(comment); })) log_.push_back("comment " + comment);
        return;
      }
      case 5: {
        const std::string target = random_.mostly(kRightNames, kWrongNames);
        const std::string data = "d" + randomText(2);
        if (data.find('\r') != std::string::npos) return;
        if (accepts([&] { writer_.processingInstruction(target, data); })) {
          log_.push_back("pi " + target + ' ' + data);
        }
        return;
      }
      default: {
        const std::string characters = randomText();
        if (accepts([&] { writer_.characters(characters); })) addText(log_, characters);
      }
    }
  }

  void sendSection() {
    EXPECT_TRUE(accepts([&] { writer_.startCDATA(); }));
    for (unsigned i = random_.below(4); i > 0; --i) {
      const std::string characters = randomText();
      if (accepts([&] { writer_.characters(characters); })) addText(log_, characters);
    }
    EXPECT_TRUE(accepts([&] { writer_.endCDATA(); }));
  }

  void sendDTD() {
    EXPECT_TRUE(accepts([&] { writer_.startDTD("r", "", ""); }));
    for (unsigned i = random_.below(6); i > 0; --i) {
      // Each name once: of several declarations, a parser reports the first alone.
      const std::string entity = "e" + std::to_string(i);
      const std::string value = randomText();
      switch (random_.below(4)) {
        case 0:
          if (accepts([&] { writer_.internalEntityDecl(entity, value); })) {
            log_.push_back("entity " + entity + ' ' + value);
          }
          break;
        case 1:
          if (accepts([&] { writer_.internalEntityDecl('%' + entity, value); })) {
            log_.push_back("entity %" + entity + ' ' + value);
          }
          break;
        case 2:
          if (value.find('\r') != std::string::npos) break;
          if (accepts([&] { writer_.unparsedEntityDecl(entity, "", value, "n"); })) {
            log_.push_back("entity " + entity + " SYSTEM " + value + " NDATA n");
          }
          break;
        default:
          accepts([&] { writer_.attributeDecl("none", "a", "CDATA", "", value); });
      }
    }
    EXPECT_TRUE(accepts([&] { writer_.endDTD(); }));
  }

  Random random_;
  XML10Writer writer_;
  Log log_;
  std::vector<Name> open_;
  std::vector<std::pair<std::string, std::string>> scopes_;
  std::vector<std::pair<std::string, std::string>> pending_;
  std::vector<std::size_t> declarations_;
  Name started_;
  std::string startLine_;
  std::size_t declared_ = 0;
  unsigned refusals_ = 0;
};

TEST(XML10RandomEvents, ComeBackAsTheyWereAccepted) {
  unsigned refusals = 0;
  std::size_t events = 0;
  for (std::uint64_t start = 0; start < 1500; ++start) {
    Sender sender(start, false);
    sender.sendDocument();
    ASSERT_EQ(readBack(sender.text()), sender.log()) << start << "\n" << sender.text();
    refusals += sender.refusals();
    events += sender.log().size();
  }
  // Both kinds came.
  EXPECT_GT(refusals, 1500U);
  EXPECT_GT(events, 15000U);
}

/// Without the text of white space.
Log withoutLayout(const Log& log) {
  Log result;
  for (const std::string& line : log) {
    const bool isText = line.starts_with("text ");
    if (isText && line.find_first_not_of(" \n", 5) == std::string::npos) continue;
    result.push_back(line);
  }
  return result;
}

TEST(XML10RandomEvents, KeepTheirTextWhenTheyAreIndented) {
  for (std::uint64_t start = 0; start < 600; ++start) {
    Sender sender(start, true);
    sender.sendDocument();
    const Log read = readBack(sender.text());
    // Text other than layout is as it was: a break beside it would show.
    ASSERT_EQ(withoutLayout(read), withoutLayout(sender.log())) << start << "\n" << sender.text();
  }
}

}  // namespace
