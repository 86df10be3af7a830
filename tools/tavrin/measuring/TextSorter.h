#pragma once

#include <string>

#include "measuring/EventOctets.h"

namespace tool {

/// Tells what the octets of XML text are for, as the writer "XML10" writes it: in tags by their
/// syntax (XML 1.0, section 3.1), elsewhere by the event. Declarations of namespaces count for the
/// names.
class TextSorter : public OctetSorter {
 protected:
  void take(std::string_view octets) override;
  bool mayBePending() const override { return state_ != State::Content; }

 private:
  enum class State { Content, Markup, ElementName, EndName, Tag, AttributeName, Equals, Value };

  std::size_t takeContent(std::string_view octets);
  std::size_t takeValue(std::string_view octets);
  void takeMarkup(char octet);
  void takeInTag(char octet);
  void beginValue(char quote);

  State state_ = State::Content;
  std::string name_;  // The beginning of an attribute's, to know namespace declarations by.
  char quote_ = '\0';
  bool isDeclaration_ = false;
};

}  // namespace tool
