#pragma once

#include <Tavrin/Exceptions.h>

namespace Tavrin {

/// Marks a reader as busy during a call of parse. A handler must not parse with the reader that
/// calls it: that would destroy the document that is being read.
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
