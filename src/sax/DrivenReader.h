#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <istream>
#include <string>

namespace Tavrin {

/// The reader of a pull reader, which applications may configure: what would interfere is refused.
template <typename Reader>
class DrivenReader : public Reader {
 public:
  void parse(std::istream&) override { refuse("parse called"); }
  void parse(const void*, unsigned long, bool) override { refuse("parse called"); }
  void setFeature(const std::string& name, bool value) override {
    if (name == features::coalesceCharacters && value) refuse("Coalescing of characters asked");
    Reader::setFeature(name, value);
  }

 protected:
  [[noreturn]] static void refuse(const std::string& what) {
    throw SAXException(what + " of a pull reader's reader");
  }
};

}  // namespace Tavrin
