#include "vocabularies/HeaderFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "files/Failure.h"
#include "vocabularies/VocabularyTables.h"

namespace tool {

namespace {

/// A string literal. Octets that are not printable characters of ASCII stand as three octal digits,
/// which no character behind them can lengthen, and a question mark is no part of a trigraph.
std::string literal(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '?') {
      result += '\\';
      result += c;
    } else if (c >= ' ' && c <= '~') {
      result += c;
    } else {
      std::array<char, 8> digits{};
      std::snprintf(digits.data(), digits.size(), "\\%03o", static_cast<unsigned char>(c));
      result += digits.data();
    }
  }
  return result + '"';
}

/// @throws Failure where the operations of OwnedVocabulary do not make the vocabulary again
void checkCanBeMade(const std::string& file, const Tavrin::OwnedVocabulary& vocabulary) {
  const auto tables = vocabulary.tables();
  Tavrin::OwnedVocabulary made;
  const auto check = [&](std::uint32_t index, std::uint32_t expected, const char* title) {
    if (index == expected) return;
    throw Failure::document(file, "No program can make this vocabulary: entry " +
                                      std::to_string(expected) + " of its " + title +
                                      " is the same as entry " + std::to_string(index));
  };
  for (const auto& form : kStringTables) {
    const Tavrin::StringTable& table = (*tables).*form.table;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      check((made.*form.add)(textOf(table.entries[i])), form.first + i, form.title);
    }
  }
  for (const auto& form : kNameTables) {
    const Tavrin::QualifiedNameTable& table = (*tables).*form.table;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      const QualifiedName name(table.entries[i]);
      check((made.*form.add)(name.uri, name.localName, name.qName()), 1 + i, form.title);
    }
  }
}

void printTable(std::ostream& out, const StringTableForm& form, const Tavrin::StringTable& table) {
  if (table.definedCount == 0) return;
  out << "  {\n    static const char* const entries[] = {\n";
  for (std::uint32_t i = 0; i < table.definedCount; ++i) {
    out << "        " << literal(textOf(table.entries[i])) << ",\n";
  }
  out << "    };\n    for (const char* entry : entries) vocabulary." << form.operation
      << "(entry);\n  }\n";
}

void printTable(std::ostream& out, const NameTableForm& form,
                const Tavrin::QualifiedNameTable& table) {
  if (table.definedCount == 0) return;
  out << "  {\n    static const char* const names[][3] = {\n";
  for (std::uint32_t i = 0; i < table.definedCount; ++i) {
    const QualifiedName name(table.entries[i]);
    out << "        {" << literal(name.uri) << ", " << literal(name.localName) << ", "
        << literal(name.qName()) << "},\n";
  }
  out << "    };\n    for (const auto& name : names) vocabulary." << form.operation
      << "(name[0], name[1], name[2]);\n  }\n";
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::string_view kKeywords[] = {"alignas",       "alignof",     "and",
                                          "and_eq",        "asm",         "auto",
                                          "bitand",        "bitor",       "bool",
                                          "break",         "case",        "catch",
                                          "char",          "char16_t",    "char32_t",
                                          "char8_t",       "class",       "co_await",
                                          "co_return",     "co_yield",    "compl",
                                          "concept",       "const",       "const_cast",
                                          "consteval",     "constexpr",   "constinit",
                                          "continue",      "decltype",    "default",
                                          "delete",        "do",          "double",
                                          "dynamic_cast",  "else",        "enum",
                                          "explicit",      "export",      "extern",
                                          "false",         "float",       "for",
                                          "friend",        "goto",        "if",
                                          "inline",        "int",         "long",
                                          "mutable",       "namespace",   "new",
                                          "noexcept",      "not",         "not_eq",
                                          "nullptr",       "operator",    "or",
                                          "or_eq",         "private",     "protected",
                                          "public",        "register",    "reinterpret_cast",
                                          "requires",      "return",      "short",
                                          "signed",        "sizeof",      "static",
                                          "static_assert", "static_cast", "struct",
                                          "switch",        "template",    "this",
                                          "thread_local",  "throw",       "true",
                                          "try",           "typedef",     "typeid",
                                          "typename",      "union",       "unsigned",
                                          "using",         "virtual",     "void",
                                          "volatile",      "wchar_t",     "while",
                                          "xor",           "xor_eq"};

bool isIdentifier(std::string_view text) {
  return !text.empty() && isLetter(text[0]) &&
         std::all_of(text.begin(), text.end(), [](char c) { return isLetter(c) || isDigit(c); }) &&
         std::find(std::begin(kKeywords), std::end(kKeywords), text) == std::end(kKeywords);
}

/// "acme::orders::make" as "acme::orders" and "make".
std::pair<std::string_view, std::string_view> splitName(std::string_view name) {
  const std::size_t colons = name.rfind("::");
  if (colons == std::string_view::npos) return {{}, name};
  return {name.substr(0, colons), name.substr(colons + 2)};
}

}  // namespace

bool isFunctionName(const std::string& text) {
  // Names that others have already.
  if (text == "main" || text == "Tavrin" || text == "Tavrin::OwnedVocabulary") return false;
  std::string_view rest = text;
  for (;;) {
    const std::size_t colons = rest.find("::");
    if (!isIdentifier(rest.substr(0, colons))) return false;
    if (colons == std::string_view::npos) return true;
    rest.remove_prefix(colons + 2);
  }
}

void printHeader(std::ostream& out, const HeaderNames& names, const std::string& file,
                 const Tavrin::OwnedVocabulary& vocabulary) {
  checkCanBeMade(file, vocabulary);
  const auto [space, function] = splitName(names.function);
  const auto tables = vocabulary.tables();
  out << "// Made by tavrin vocabulary header. The position of an entry is its number: a "
         "vocabulary\n"
         "// that has others, or in another order, needs another URI.\n"
         "#pragma once\n"
         "\n"
         "#include <Tavrin/OwnedVocabulary.h>\n"
         "\n";
  if (!space.empty()) out << "namespace " << space << " {\n\n";
  if (!names.uri.empty()) {
    out << "/// The URI by which documents refer to the vocabulary that " << function
        << " makes.\ninline constexpr char " << function << "URI[] = " << literal(names.uri)
        << ";\n\n";
  }
  out << "inline ::Tavrin::OwnedVocabulary " << function << "() {\n";
  out << "  ::Tavrin::OwnedVocabulary vocabulary;\n";
  for (const auto& form : kStringTables) printTable(out, form, (*tables).*form.table);
  for (const auto& form : kNameTables) printTable(out, form, (*tables).*form.table);
  out << "  return vocabulary;\n}\n";
  if (!space.empty()) out << "\n}  // namespace " << space << "\n";
}

}  // namespace tool
