/// @file
/// The exceptions of the library: plain values, thrown by value and caught by reference.
///
/// They are not polymorphic and do not derive from std::exception. Code that catches a
/// `SAXException&` and throws the object by value (`throw e;`) therefore throws a plain
/// SAXException, without the derived part.
#pragma once

#include <Tavrin/Export.h>

#include <cstdint>
#include <string>

namespace Tavrin {

/// Any failure of reading or writing a document, with a message.
class TAVRIN_API SAXException {
 public:
  /// @param message what is wrong, in English; kept as it is
  explicit SAXException(const std::string& message) : message_(message) {}

  /// The message, without position or type; valid as long as the exception lives.
  const std::string& getMessage() const { return message_; }

 private:
  std::string message_;
};

/// A failure at a place in the document.
class TAVRIN_API SAXParseException : public SAXException {
 public:
  /// @param message what is wrong
  /// @param line    the line, from 1; -1 where a document has no lines
  /// @param column  the column, from 1; in a document without lines, an octet
  SAXParseException(const std::string& message, std::int32_t line, std::int32_t column)
      : SAXException(message), line_(line), column_(column) {}

  /// The line of the failure, from 1; -1 where the document has no lines.
  std::int32_t getLineNumber() const { return line_; }
  /// The column of the failure, from 1; in a document without lines, how many octets had been read.
  std::int32_t getColumnNumber() const { return column_; }

 private:
  std::int32_t line_;
  std::int32_t column_;
};

/// A feature, property or operation that the reader or writer does not know.
class TAVRIN_API SAXNotRecognizedException : public SAXException {
 public:
  using SAXException::SAXException;
};

/// Root of the failures of Fast Infoset encoding algorithms. It is not a SAXException: a handler
/// for that class does not catch it.
class TAVRIN_API FastInfosetException {
 public:
  /// @param message what is wrong, in English; kept as it is
  explicit FastInfosetException(const std::string& message) : message_(message) {}

  /// The message; valid as long as the exception lives.
  const std::string& getMessage() const { return message_; }

 private:
  std::string message_;
};

/// Data that an encoding algorithm (X.891, clause 10) cannot encode or decode.
class TAVRIN_API EncodingAlgorithmException : public FastInfosetException {
 public:
  using FastInfosetException::FastInfosetException;
};

}  // namespace Tavrin
