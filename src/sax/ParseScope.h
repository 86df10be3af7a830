#pragma once

#include <Tavrin/Exceptions.h>

namespace Tavrin {

/// Marks a reader as busy for the length of a call of parse. A handler that parses with the reader
/// that calls it would destroy the state of the document beneath its own callback, so this is
/// refused.
class ParseScope {
 public:
  explicit ParseScope(bool& parsing) : parsing_(parsing) {
    if (parsing) throw SAXException("parse called from a handler of the same reader");
    parsing = true;
  }
  ~ParseScope() { parsing_ = false; }
  ParseScope(const ParseScope&) = delete;
  ParseScope& operator=(const ParseScope&) = delete;

 private:
  bool& parsing_;
};

}  // namespace Tavrin
