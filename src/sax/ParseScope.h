#pragma once

#include <Tavrin/Exceptions.h>

#include <string>

namespace Tavrin {

/// Marks a reader as busy during a call of parse, or of another operation that reads. A handler
/// must not call one of the reader that calls it: that would destroy the document that is being
/// read.
class ParseScope {
 public:
  explicit ParseScope(bool& parsing, const char* operation = "parse") : parsing_(parsing) {
    if (parsing) {
      throw SAXException(std::string(operation) + " called from a handler of the same reader");
    }
    parsing = true;
  }
  ~ParseScope() { parsing_ = false; }
  ParseScope(const ParseScope&) = delete;
  ParseScope& operator=(const ParseScope&) = delete;

 private:
  bool& parsing_;
};

}  // namespace Tavrin
