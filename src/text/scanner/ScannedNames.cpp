#include "ScannedNames.h"

#include "../../xml/Rules.h"

namespace Tavrin::text {

ScannedName& ScannedNames::find(std::string_view qName) {
  const auto hash = static_cast<std::uint32_t>(xml::saltedHash(qName));
  std::uint32_t number = index_.find(
      hash, [&](std::uint32_t each) { return xml::sameText(names_[each].qName, qName); });
  if (number == xml::HashIndex::kNone) {
    number = static_cast<std::uint32_t>(names_.size());
    ScannedName& name = names_.emplace_back();
    name.qName = qName;
    if (splits_) {
      const xml::QNameParts parts = xml::split(name.qName);
      name.localName = parts.localName;
      name.prefixSize = parts.prefix.size();
      name.declares = xml::isDeclarationName(qName);
    }
    index_.add(hash, number);
  }
  ScannedName& found = names_[number];
  if (last_ != nullptr) last_->next = &found;
  last_ = &found;
  return found;
}

}  // namespace Tavrin::text
