#pragma once

#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter.h>

#include <string>
#include <string_view>

namespace Tavrin::text {

/// The feature of a writer of XML text that an identifier names, or null.
inline bool* findTextFeature(const std::string& name, bool& autoIndent, bool& emptyTags,
                             bool& xmlDeclaration) {
  if (name == features::autoIndent) return &autoIndent;
  if (name == features::emptyTags) return &emptyTags;
  if (name == features::xmlDeclaration) return &xmlDeclaration;
  return nullptr;
}

/// The markup that is the same for both writers of XML text.
/// @tparam Output derives from this class and has a function `write` for pieces: "XML" writes them
///         into the stream, "XML10" composes an event of them
template <typename Output>
class Markup {
 public:
  void writeComment(const std::string& text) { write("<!--", text, "-->"); }
  void writeInstruction(const std::string& target, const std::string& data) {
    write("<?", target, " ", data, "?>");
  }
  /// Ends a CDATA section whose opening has been written.
  void endSection() { write("]]>"); }

  // Declarations. The beginning may be followed by an external identifier.

  void beginDocumentType(const std::string& name) { write("<!DOCTYPE ", name); }
  void beginNotation(const std::string& name) { write("  <!NOTATION ", name); }
  void beginEntity(const std::string& name) { write("  <!ENTITY ", name); }
  void endDeclaration() { write(">"); }
  void endUnparsedEntity(const std::string& notation) { write(" NDATA ", notation, ">"); }
  void writeElementDeclaration(const std::string& name, const std::string& model) {
    write("  <!ELEMENT ", name, " ", model, ">");
  }

 protected:
  /// What the innermost container leaves open before its first content.
  static std::string_view openingOf(XMLWriter::WriterState state) {
    if (state == XMLWriter::InElement) return ">";
    if (state == XMLWriter::InCDATA) return "<![CDATA[";
    return state == XMLWriter::InDTD ? " [" : "";
  }

 private:
  template <typename... Pieces>
  void write(const Pieces&... pieces) {
    static_cast<Output&>(*this).write(pieces...);
  }
};

}  // namespace Tavrin::text
