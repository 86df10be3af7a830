#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "WhatIsThrown.h"

// Rules that tell which text is typed: their paths, types and text form.

namespace {

using namespace Tavrin;

std::string refusal(const std::string& path, const std::string& type = "int") {
  TypingRules rules;
  const std::string outcome = thrown([&] { rules.add(path, type); });
  return rules.rules().empty() ? outcome : "added";
}

std::string shown(const TypingRules& rules) {
  std::string text;
  for (const auto& [path, type] : rules.rules()) text += path + '=' + type + ';';
  return text;
}

std::string read(const std::string& text) {
  std::istringstream stream(text);
  std::string rules;
  const std::string outcome = thrown([&] { rules = shown(TypingRules::read(stream)); });
  return outcome == "nothing" ? rules : outcome;
}

TEST(TypingRules, AreKeptInTheirOrder) {
  TypingRules rules;
  EXPECT_EQ("", shown(rules));
  rules.add("b", "int");
  rules.add("a/@x", "float");
  rules.add("b", "int");
  EXPECT_EQ("b=int;a/@x=float;b=int;", shown(rules));
}

TEST(TypingRules, PathsHaveNamesOfAllForms) {
  for (const char* path : {"a",        "/a",        "a/b",
                           "/a/b/c",   "@x",        "a/@x",
                           "/a/@x",    "*",         "*/@*",
                           "@*",       "/*",        "p:a",
                           "@p:a",     "{urn:x}a",  "{}a",
                           "{urn:x}*", "@{urn:x}*", "/{http://x/y#z}a/{u}b/@{http://x/}c",
                           "\xC3\xA4", "a.b-c_1"}) {
    EXPECT_EQ("added", refusal(path)) << path;
  }
}

TEST(TypingRules, WhatIsNoPathIsRefused) {
  const auto expect = [](const std::string& path, const std::string& reason) {
    EXPECT_EQ("SAXException: The path \"" + path + "\" " + reason, refusal(path));
  };
  for (const char* path : {"", "/", "a/", "//a", "a//b", "a/@", "@", "{u}", "{}", "p:", "@{u}"}) {
    expect(path, "lacks a name");
  }
  for (const char* path : {"a b", "a*", "**", "a@x", "p:*", "a:b:c", "a[1]", "a/text()", "a=b",
                           "a}b", "@@x", "{u}a:b", "a{u}b", "'a'"}) {
    expect(path, "has a name that no element or attribute has");
  }
  expect("{u", "has a brace that is not closed");
  expect("a/{urn:x/b", "has a brace that is not closed");
  expect("@x/a", "goes on behind an attribute");
  expect("a/@x/", "goes on behind an attribute");
  expect("/@x", "has an attribute without an element");
}

TEST(TypingRules, TypesAreThoseThatAreKnown) {
  for (const char* type : {"short", "int", "long", "float", "double", "boolean", "uuid", "base64",
                           "hexadecimal", "cdata", "auto"}) {
    EXPECT_EQ("added", refusal("a", type));
  }
  const struct {
    const char* type;
    const char* meant;
  } unknown[] = {
      {"", "; known"},
      {"3", "; known"},
      {"xy", "; known"},
      {"number", "; known"},
      {"integer", "; known"},
      {"Int", ", did you mean \"int\"? Known"},
      {"ints", ", did you mean \"int\"? Known"},
      {"flot", ", did you mean \"float\"? Known"},
      {"AUTO", ", did you mean \"auto\"? Known"},
      {"HexaDezimal", ", did you mean \"hexadecimal\"? Known"},
      {"aVeryLongNameThatIsNoTypeAtAll", "; known"},
  };
  for (const auto& [type, meant] : unknown) {
    EXPECT_EQ(std::string("SAXException: Unknown type \"") + type + "\"" + meant +
                  " are hexadecimal, base64, short, int, long, boolean, float, double, uuid, "
                  "cdata, auto",
              refusal("a", type));
  }
}

TEST(TypingRules, AttributesCannotBeCDATASections) {
  EXPECT_EQ(
      "SAXException: The path \"a/@x\" is that of an attribute, which cannot be a CDATA section",
      refusal("a/@x", "cdata"));
}

TEST(TypingRules, AreReadLineByLine) {
  EXPECT_EQ("", read(""));
  EXPECT_EQ("", read("\n\n  \t\r\n# a comment\n   # another a int"));
  EXPECT_EQ("a=int;", read("a int"));
  EXPECT_EQ("a=int;", read("a int\n"));
  EXPECT_EQ("a=int;", read("\xEF\xBB\xBF"
                           "a int\n"));
  EXPECT_EQ("a/@x=float;{http://x/#y}b=auto;*=auto;",
            read("# scene\r\n\ta/@x \t float # points\r\n{http://x/#y}b auto #\n*\tauto"));
}

/// A failure with its place.
std::string failure(const std::string& text) {
  std::istringstream stream(text);
  try {
    TypingRules::read(stream);
  } catch (const SAXParseException& exception) {
    return std::to_string(exception.getLineNumber()) + ":" +
           std::to_string(exception.getColumnNumber()) + ": " + exception.getMessage();
  }
  return "nothing";
}

TEST(TypingRules, AFailureNamesItsPlace) {
  EXPECT_EQ("1:2: A rule is a path and a type", failure("a"));
  EXPECT_EQ("3:7: A rule is a path and a type", failure("#\na int\na int b\n"));
  EXPECT_EQ("2:2: A rule is a path and a type", failure("a int\na #int"));
  EXPECT_EQ("2:2: The path \"a//b\" lacks a name", failure("a int\r\n\ta//b int"));
  EXPECT_EQ("1:3: The path \"@a/b\" goes on behind an attribute",
            failure("\xEF\xBB\xBF  @a/b int"));
  // Columns are characters.
  EXPECT_EQ(
      "4:3: Unknown type \"integer\"; known are hexadecimal, base64, short, int, long, boolean, "
      "float, double, uuid, cdata, auto",
      failure("a int\n\n\n\xC3\xA4 integer\n"));
}

TEST(TypingRules, AStreamThatCannotBeReadIsAFailure) {
  std::istringstream stream("a int");
  stream.setstate(std::ios::badbit);
  EXPECT_EQ("SAXException: The rules cannot be read", thrown([&] { TypingRules::read(stream); }));
  std::istringstream unopened("a int");
  unopened.setstate(std::ios::failbit);
  EXPECT_EQ("SAXException: The rules cannot be read", thrown([&] { TypingRules::read(unopened); }));
}

}  // namespace
