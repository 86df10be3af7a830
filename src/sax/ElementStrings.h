#pragma once

#include <Tavrin/XMLWriter.h>

#include <string>
#include <utility>

namespace Tavrin {

/// The strings of an open element, of which it is made in its place. Measured: where it was made
/// first and then got its strings, writing prose took a twentieth longer.
template <typename URI>
struct ElementStrings {
  URI uri;
  const std::string& localName;
  const std::string& qName;

  explicit operator XMLWriter::Element() const {
    return {std::forward<URI>(uri), localName, qName};
  }
};

}  // namespace Tavrin
