#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "copying/FaithfulCharacters.h"
#include "copying/MarkupScanner.h"
#include "copying/Recoding.h"

namespace tool {

/// Takes XML text in UTF-8, as a writer makes it, and passes it on in another encoding. Its
/// declaration names that. A character that the encoding does not give back becomes a reference to
/// it where there can be one; a CDATA section ends before it and begins anew behind it. Anywhere
/// else it is a failure.
class EncodingBuffer : public std::streambuf {
 public:
  /// @param out where failures are known: none is reported here
  EncodingBuffer(const std::string& encoding, std::ostream& out);

  /// Passes on what the document's end needs.
  void finish();

  /// Whether documents can be written in an encoding, and be read.
  static bool isUsable(const std::string& encoding);

 protected:
  int_type overflow(int_type c) override;
  /// @throws Tavrin::SAXException for a character that cannot be written
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  std::size_t convert(std::string_view octets);
  void convertBeginning(std::string_view octets);
  void write(std::string_view octets);
  std::string replacementOf(std::string_view character) const;

  std::string encoding_;
  std::ostream& out_;
  Recoding recoding_;
  FaithfulCharacters faithful_;
  bool hasBegun_ = false;
  std::string pending_;  // The part of a character.
  MarkupScanner scanner_;
};

/// A stream with such a buffer. What the buffer throws leaves the writer.
class EncodedStream : public std::ostream {
 public:
  EncodedStream(const std::string& encoding, std::ostream& target);

  void finish() { buffer_.finish(); }

 private:
  EncodingBuffer buffer_;
};

}  // namespace tool
