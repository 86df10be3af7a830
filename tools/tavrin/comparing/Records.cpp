#include "comparing/Records.h"

namespace tool {

void Block::clear() {
  size = 0;
  places.clear();
  anchor = {};
  entityOf.clear();
  entities.clear();
  remarks.clear();
  document = 1;
  lastText = 0;
  lastTextNumber = 0;
  isCutOff = false;
  if (octets.size() > 2 * kRoom) octets = {};  // A long record is rare.
}

std::string Record::entity() const {
  const std::uint32_t entity = number < block->entityOf.size() ? block->entityOf[number] : 0;
  return entity == 0 ? std::string() : block->entities[entity - 1];
}

std::string Record::remark(std::uint32_t attribute) const {
  for (const Remark& remark : block->remarks) {
    if (remark.record == number && remark.attribute == attribute) return remark.text;
  }
  return kUsualType;
}

std::string_view takeString(std::string_view& body) {
  std::uint32_t size = 0;
  std::memcpy(&size, body.data(), sizeof size);
  const std::string_view text = body.substr(sizeof size, size);
  body.remove_prefix(sizeof size + size);
  return text;
}

std::vector<std::string_view> stringsOf(const Record& record) {
  std::vector<std::string_view> strings;
  std::string_view rest = record.body;
  while (!rest.empty()) strings.push_back(takeString(rest));
  return strings;
}

}  // namespace tool
