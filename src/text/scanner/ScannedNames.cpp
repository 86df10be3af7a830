#include "ScannedNames.h"

#include "../../xml/Rules.h"
#include "../../xml/SaltedHash.h"
#include "../../xml/SameText.h"

namespace Tavrin::text {

ScannedName& ScannedNames::find(std::string_view qName) {
  const auto hash = static_cast<std::uint32_t>(xml::saltedHash(qName));
  std::uint32_t number = index_.find(
      hash, [&](std::uint32_t each) { return xml::sameText(names_[each].qName, qName); });
  if (number == xml::HashIndex::kNone) {
    number = static_cast<std::uint32_t>(names_.size());
    ScannedName& name = names_.emplace_back();
    name.qName = qName;
    const std::string_view prefix = splits_ ? xml::split(qName).prefix : std::string_view();
    if (!splits_) {
      name.localName = &kNoName;
    } else if (prefix.empty()) {
      name.localName = &name.qName;
    } else {
      name.localName = &localNames_.emplace_back(qName.substr(prefix.size() + 1));
    }
    index_.add(hash, number);
  }
  ScannedName& found = names_[number];
  if (last_ != nullptr) last_->next = &found;
  last_ = &found;
  return found;
}

}  // namespace Tavrin::text
