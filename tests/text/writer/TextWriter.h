#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <initializer_list>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "WriterProbe.h"

/// A stream without a buffer of its own: what is written into it is seen at once, in the pieces in
/// which it came.
class Output : public std::ostream {
 public:
  Output() : std::ostream(nullptr) { rdbuf(&buffer_); }

  const std::string& text() const { return buffer_.text; }
  /// What came since this was asked last.
  std::string news() {
    const std::size_t seen = std::exchange(seen_, buffer_.text.size());
    return buffer_.text.substr(seen);
  }
  /// From now on every piece is kept.
  void keepPieces() { buffer_.keepsPieces = true; }
  const std::vector<std::string>& pieces() const { return buffer_.pieces; }
  /// How often the stream was flushed.
  int flushes() const { return buffer_.flushes; }
  /// Full from now on: it takes no more octets.
  void fill() { buffer_.full = true; }
  /// Takes octets again, after a failure too.
  void empty() {
    buffer_.full = false;
    clear();
  }

 private:
  class Buffer : public std::streambuf {
   public:
    std::string text;
    std::vector<std::string> pieces;
    bool keepsPieces = false;
    bool full = false;
    int flushes = 0;

   protected:
    std::streamsize xsputn(const char* octets, std::streamsize count) override {
      if (full) return 0;
      const std::string piece(octets, static_cast<std::size_t>(count));
      text += piece;
      if (keepsPieces) pieces.push_back(piece);
      return count;
    }
    int_type overflow(int_type octet) override {
      const char c = traits_type::to_char_type(octet);
      return xsputn(&c, 1) == 1 ? octet : traits_type::eof();
    }
    int sync() override {
      ++flushes;
      return 0;
    }
  };

  Buffer buffer_;
  std::size_t seen_ = 0;
};

/// What a text writer is told before it is used.
struct Settings {
  bool indent = false;
  bool emptyTags = true;
  bool declaration = false;
};

/// A text writer with a stream, and with short forms of the commonest events.
class TextWriter : public Probe<Tavrin::XMLWriter_XML> {
 public:
  using AttributeList = std::initializer_list<std::pair<const char*, std::string>>;

  explicit TextWriter(Settings settings = {}) {
    setFeature(Tavrin::features::autoIndent, settings.indent);
    setFeature(Tavrin::features::emptyTags, settings.emptyTags);
    setFeature(Tavrin::features::xmlDeclaration, settings.declaration);
    setOutputStream(&output);
  }

  /// Starts an element of a name without prefix.
  void start(const std::string& name, AttributeList attributes = {}) {
    Tavrin::AttributesImpl list;
    for (const auto& [qName, value] : attributes) {
      list.addAttribute("", qName, qName, "CDATA", value);
    }
    startElement("", name, name, list);
  }
  void end(const std::string& name) { endElement("", name, name); }
  /// Starts an element of a name without prefix and ends it again.
  void leaf(const std::string& name) {
    start(name);
    end(name);
  }

  const std::string& text() const { return output.text(); }

  Output output;
};

inline const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
