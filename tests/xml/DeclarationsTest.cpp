#include "xml/Declarations.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Tavrin::xml;

// XML 1.0, productions 46 to 51.
TEST(ContentModel, FollowsItsGrammar) {
  for (const char* model : {"EMPTY",
                            "ANY",
                            "(a)",
                            "(a)?",
                            "(a)*",
                            "(a)+",
                            "(a?)",
                            "(a*,b+)",
                            "(a|b)",
                            "(a,b,c)",
                            "((a))",
                            "((a|b),c)",
                            "(a,(b|(c,d)+)?,e)*",
                            "( a , b )",
                            "(\ta\n|\rb )",
                            "(p:a)",
                            "(#PCDATA)",
                            "(#PCDATA)*",
                            "( #PCDATA )",
                            "(#PCDATA|a)*",
                            "(#PCDATA | a | p:b )*",
                            "((((((a))))))",
                            "(a,a)"}) {
    EXPECT_TRUE(isContentModel(model)) << model;
  }
  for (const char* model : {"",
                            " ",
                            "empty",
                            "EMPTY ",
                            "ANY?",
                            "a",
                            "()",
                            "(",
                            ")",
                            "(a",
                            "a)",
                            "(a))",
                            "((a)",
                            "(a,)",
                            "(,a)",
                            "(a,,b)",
                            "(a b)",
                            "(a|b,c)",
                            "(a,b|c)",
                            "(a)??",
                            "(a) ?",
                            "(a ?)",
                            "(a?*)",
                            "(1)",
                            "(a:b:c)",
                            "(a)b",
                            "(a)(b)",
                            "(#PCDATA|a)",
                            "(#PCDATA|a)+",
                            "(#PCDATA,a)*",
                            "(#PCDATA)+",
                            "(#PCDATA)?",
                            "(#PCDATA|)*",
                            "(#PCDATAa)",
                            "(#PCDATA|(a))*",
                            "(a|#PCDATA)*",
                            "((#PCDATA))",
                            "(#PCDATA",
                            "(#pcdata)",
                            "(a)><",
                            "(%p;)",
                            "(a;b)",
                            " (a)",
                            "(a) ",
                            "(\xFF)"}) {
    EXPECT_FALSE(isContentModel(model)) << model;
  }
}

TEST(ContentModel, MayBeOfAnyDepth) {
  constexpr std::size_t kDepth = 1000000;
  const std::string open(kDepth, '(');
  EXPECT_TRUE(isContentModel(open + "a" + std::string(kDepth, ')')));
  EXPECT_FALSE(isContentModel(open + "a" + std::string(kDepth - 1, ')')));
  EXPECT_FALSE(isContentModel(open));
}

// Productions 54 to 59.
TEST(AttributeType, IsOneOfTheList) {
  for (const char* type :
       {"CDATA", "ID", "IDREF", "IDREFS", "ENTITY", "ENTITIES", "NMTOKEN", "NMTOKENS", "(a)",
        "(a|b)", "( a | 1 )", "(-|.|:)", "NOTATION (a)", "NOTATION (a|b)", "NOTATION ( a | b )"}) {
    EXPECT_EQ(attributeType(type), type);
  }
  EXPECT_EQ(attributeType("NOTATION(a|b)"), "NOTATION (a|b)");
  EXPECT_EQ(attributeType("NOTATION \t(a)"), "NOTATION (a)");
  for (const char* type : {"",
                           "cdata",
                           "CDATA ",
                           "NMTOKENSS",
                           "ENUMERATION",
                           "()",
                           "(a",
                           "a)",
                           "(a|)",
                           "(|a)",
                           "(a||b)",
                           "(a,b)",
                           "(a b)",
                           "(a)*",
                           "(a) ",
                           " (a)",
                           "(a*)",
                           "NOTATION",
                           "NOTATION ",
                           "NOTATION a",
                           "NOTATION ()",
                           "NOTATION (1)",
                           "NOTATION (a:b)",
                           "NOTATIONX (a)",
                           "NOTATION (a)>",
                           "NOTATION NOTATION (a)"}) {
    EXPECT_EQ(attributeType(type), "") << type;
  }
}

TEST(PredefinedEntity, IsOneOfFive) {
  for (const char* name : {"lt", "gt", "amp", "apos", "quot"}) {
    EXPECT_TRUE(isPredefinedEntity(name));
  }
  for (const char* name : {"", "l", "ltt", "LT", "%lt", "nbsp"}) {
    EXPECT_FALSE(isPredefinedEntity(name));
  }
}

// Section 4.6.
TEST(ReplacementText, OfAPredefinedEntityIsItsCharacter) {
  const struct {
    const char* name;
    const char* text;
    bool isRight;
  } cases[] = {
      {"lt", "&#60;", true},   {"lt", "&#x3C;", true},   {"lt", "&#x3c;", true},
      {"lt", "<", false},      {"lt", "", false},        {"lt", "&#62;", false},
      {"lt", "&#X3C;", false}, {"lt", "&#x3C", false},   {"amp", "&#38;", true},
      {"amp", "&#x26;", true}, {"amp", "&", false},      {"gt", ">", true},
      {"gt", "&#62;", true},   {"gt", "&#x3E;", true},   {"gt", ">>", false},
      {"apos", "'", true},     {"apos", "&#39;", true},  {"apos", "\"", false},
      {"quot", "\"", true},    {"quot", "&#x22;", true}, {"quot", "&quot;", false},
      {"other", "<", true},    {"other", "", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(isReplacementText(c.name, c.text), c.isRight) << c.name << " " << c.text;
  }
}

}  // namespace
