#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "paths/ElementForms.h"
#include "paths/Spool.h"

namespace tool {

/// How results are printed.
struct ResultFormat {
  bool isJSON = false;
  bool isText = false;    ///< Elements as their text.
  char end = '\n';        ///< Behind each result.
  std::string file = {};  ///< The name that JSON has beside each result, or empty.
};

/// Prints results in document order: an element in front of those inside of it. It is printed as
/// its octets come; those inside wait in a Spool until it ends.
class Results {
 public:
  Results(std::ostream& out, const ResultFormat& format);

  /// @name A result that is no element
  /// @{
  void beginValue();
  void addToValue(const std::string& text);
  void endValue();
  /// @}

  /// Whether an element is being printed: it gets all that is inside of it.
  bool isInElement() const { return depth_ > 0; }
  /// An element that is a result, or is inside of one.
  void startElement(const ElementForm::Tag& tag, bool isResult);
  void endElement(const std::string& uri, const std::string& localName, const std::string& qName);
  /// What else is inside of an element.
  ElementForm& inside() { return *form_; }

 private:
  /// Writes to the output, and to the spool where something waits there.
  class Split : public std::streambuf {
   public:
    explicit Split(std::ostream& out) : out_(out) {}
    std::optional<Spool> spool;
    std::string declarations;  // What goes behind the name of the tag that is written next.

   protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;

   private:
    std::ostream& out_;
  };

  void open(bool isString);
  void close(bool isString);
  Spool& spool();
  void printWaiting();
  void printInner(const std::string& declarations);

  std::ostream& out_;
  bool isJSON_;
  bool elementsAreStrings_;
  std::string before_;  // What stands in front of every result, and behind it.
  std::string behind_;
  Split split_;
  std::ostream stream_;
  std::unique_ptr<ElementForm> form_;
  std::uint64_t depth_ = 0;           // How many elements are open of the one that is printed.
  std::vector<std::uint64_t> inner_;  // The depths of those that are results themselves.
  std::string octets_;                // Kept for their storage.
};

}  // namespace tool
