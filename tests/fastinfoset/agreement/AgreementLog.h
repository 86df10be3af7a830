#pragma once

#include <string>
#include <vector>

#include "EventLog.h"
#include "FINaiveDecoder.h"

/// The writer, the reader and the naive decoder side by side.
namespace agreement {

using naive::TypedAs;

/// A log that merges no text and shows typed attributes exactly: behind a start tag stand their
/// values once more, as primitives.
class ExactLog : public EventLog {
 public:
  ExactLog();

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
};

/// Knows what comes back of the events that it is sent, when they are written and read again: the
/// rules of the dialect, stated as a third opinion. What it does not override leaves no trace. It
/// knows nothing of indexes, so that it is wrong for a short text that comes again behind sixteen
/// others.
class ExpectedEvents : public Tavrin::ContentHandler,
                       public Tavrin::DTDHandler,
                       public Tavrin::DeclHandler,
                       public Tavrin::LexicalHandler,
                       public Tavrin::PrimitiveTypeContentHandler,
                       public Tavrin::EncodingAlgorithmContentHandler {
 public:
  explicit ExpectedEvents(TypedAs typedAs) : typedAs_(typedAs) {}

  /// The events so far, a line each, as ExactLog has them.
  std::string text() const { return log_.text(); }

  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  /// @param index none of the library's own algorithms
  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  void flushText();
  void section(const std::string& text);

  TypedAs typedAs_;
  ExactLog log_;
  std::string gathered_;
  std::vector<std::string> declarations_;               // Prefix, namespace name, ...
  std::vector<std::vector<std::string>> openPrefixes_;  // Of each open element.
};

/// What the reader makes of a document. Where it throws, the last line tells.
std::string readBack(const std::string& octets, TypedAs typedAs);

/// What the naive decoder makes of it. Where it throws, it is the only line.
std::string decoded(const std::string& octets, TypedAs typedAs);

}  // namespace agreement
