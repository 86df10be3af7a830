#include "Declarations.h"

#include <algorithm>
#include <vector>

#include "Characters.h"

namespace Tavrin::xml {

namespace {

/// Consumes a text from its beginning.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool isAtEnd() const { return rest_.empty(); }
  void skipSpace() { remove(rest_.find_first_not_of(" \t\r\n")); }
  /// Consumes a word, if it comes next.
  bool consume(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    remove(word.size());
    return true;
  }
  /// Consumes everything up to the next delimiter of a model.
  std::string_view token() { return remove(rest_.find_first_of(" \t\r\n()|,?*+")); }
  /// Consumes one of a set of characters; 0 where none comes next.
  char anyOf(std::string_view characters) {
    if (rest_.empty() || characters.find(rest_.front()) == std::string_view::npos) return 0;
    return remove(1).front();
  }

 private:
  std::string_view remove(std::size_t count) {
    const std::string_view removed = rest_.substr(0, count);
    rest_.remove_prefix(removed.size());
    return removed;
  }

  std::string_view rest_;
};

/// Production 51, after "(#PCDATA".
bool isRestOfMixed(Scanner scanner) {
  bool hasNames = false;
  while (true) {
    scanner.skipSpace();
    if (scanner.consume(")")) break;
    if (!scanner.consume("|")) return false;
    scanner.skipSpace();
    if (!isQName(scanner.token())) return false;
    hasNames = true;
  }
  const bool hasStar = scanner.consume("*");
  return (hasStar || !hasNames) && scanner.isAtEnd();
}

/// Productions 47 to 50. A document decides how deep groups are nested, so they are not handled by
/// recursion: the separator of every open group is kept, 0 as long as there is none.
bool isChildren(Scanner scanner) {
  std::vector<char> groups;
  do {
    scanner.skipSpace();
    if (scanner.consume("(")) {
      groups.push_back(0);
      continue;
    }
    if (groups.empty() || !isQName(scanner.token())) return false;
    scanner.anyOf("?*+");
    // After a particle, groups end or the innermost continues.
    while (!groups.empty()) {
      scanner.skipSpace();
      if (scanner.consume(")")) {
        groups.pop_back();
        scanner.anyOf("?*+");
        if (groups.empty()) return scanner.isAtEnd();
        continue;
      }
      const char separator = scanner.anyOf(",|");
      char& expected = groups.back();
      if (separator == 0 || (expected != 0 && separator != expected)) return false;
      expected = separator;
      break;
    }
  } while (!groups.empty());
  return false;
}

/// Names or name tokens in parentheses, separated by bars (productions 58 and 59).
bool isEnumeration(std::string_view text, bool (*isItem)(std::string_view)) {
  Scanner scanner(text);
  if (!scanner.consume("(")) return false;
  do {
    scanner.skipSpace();
    if (!isItem(scanner.token())) return false;
    scanner.skipSpace();
  } while (scanner.consume("|"));
  return scanner.consume(")") && scanner.isAtEnd();
}

struct PredefinedEntity {
  std::string_view name;
  std::string_view character;
  std::string_view decimal;
  std::string_view hexadecimal;  // In lower case.
  bool mayStandForItself;
};

constexpr PredefinedEntity kPredefinedEntities[] = {{"lt", "<", "&#60;", "&#x3c;", false},
                                                    {"gt", ">", "&#62;", "&#x3e;", true},
                                                    {"amp", "&", "&#38;", "&#x26;", false},
                                                    {"apos", "'", "&#39;", "&#x27;", true},
                                                    {"quot", "\"", "&#34;", "&#x22;", true}};

const PredefinedEntity* findPredefined(std::string_view name) {
  const auto* const found = std::ranges::find(kPredefinedEntities, name, &PredefinedEntity::name);
  return found == std::end(kPredefinedEntities) ? nullptr : found;
}

}  // namespace

bool isContentModel(std::string_view text) {
  if (text == "EMPTY" || text == "ANY") return true;
  Scanner scanner(text);
  if (!scanner.consume("(")) return false;
  scanner.skipSpace();
  return scanner.consume("#PCDATA") ? isRestOfMixed(scanner) : isChildren(Scanner(text));
}

std::string attributeType(std::string_view text) {
  constexpr std::string_view kTypes[] = {"CDATA",  "ID",       "IDREF",   "IDREFS",
                                         "ENTITY", "ENTITIES", "NMTOKEN", "NMTOKENS"};
  if (std::ranges::find(kTypes, text) != std::end(kTypes)) return std::string(text);
  if (text.starts_with("NOTATION")) {
    text.remove_prefix(std::string_view("NOTATION").size());
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return isEnumeration(text, isNCName) ? "NOTATION " + std::string(text) : std::string();
  }
  return isEnumeration(text, isNmtoken) ? std::string(text) : std::string();
}

bool isPredefinedEntity(std::string_view name) { return findPredefined(name) != nullptr; }

char predefinedCharacter(std::string_view name) {
  const PredefinedEntity* const entity = findPredefined(name);
  return entity == nullptr ? '\0' : entity->character.front();
}

bool isReplacementText(std::string_view name, std::string_view text) {
  const PredefinedEntity* const entity = findPredefined(name);
  if (entity == nullptr || text == entity->decimal) return true;
  if (text == entity->character) return entity->mayStandForItself;
  return std::ranges::equal(text, entity->hexadecimal, [](char c, char lower) {
    return c == lower || (c >= 'A' && c <= 'F' && (c | 0x20) == lower);
  });
}

}  // namespace Tavrin::xml
