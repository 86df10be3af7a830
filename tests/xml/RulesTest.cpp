#include "xml/Rules.h"

#include <gtest/gtest.h>

namespace Tavrin::xml {
namespace {

const std::string kText = "You cannot put ";

TEST(Rules, OfNames) {
  EXPECT_EQ(whyNotQName("p:a"), "");
  EXPECT_EQ(whyNotQName("p:q:a"), "\"p:q:a\" is not a qualified name");
  EXPECT_EQ(whyNotQName("1"), "\"1\" is not a name");
  EXPECT_EQ(whyNotNCName("a"), "");
  EXPECT_EQ(whyNotNCName("p:a"), "\"p:a\" is not a name without a colon");
  EXPECT_EQ(whyNotNCName(""), "\"\" is not a name");
  EXPECT_EQ(whyNotNCName("a\xFF"), kText + "UTF-8 octet 0xFF into a name");
  EXPECT_EQ(whyNotTarget("xmlx"), "");
  EXPECT_EQ(whyNotTarget("1"), "\"1\" is not a name");
  EXPECT_EQ(whyNotTarget("xMl"),
            "\"xMl\" is reserved and cannot be the target of a processing instruction");
}

TEST(Rules, OfText) {
  EXPECT_EQ(whyNotText("a\n\xC3\xA9", "a comment"), "");
  EXPECT_EQ(whyNotText("a\x01", "a comment"), kText + "character U+0001 into a comment");
  EXPECT_EQ(whyNotComment("-a- b"), "");
  EXPECT_EQ(whyNotComment("a--b"), kText + "\"--\" into a comment");
  EXPECT_EQ(whyNotComment("a-"), "You cannot end a comment with \"-\"");
  EXPECT_EQ(whyNotInstructionData("? >"), "");
  EXPECT_EQ(whyNotInstructionData("a?>b"), kText + "\"?>\" into a processing instruction");
}

TEST(Rules, OfIdentifiers) {
  EXPECT_EQ(whyNotPublicId(""), "");
  EXPECT_EQ(whyNotPublicId("<"), "\"<\" is not a public identifier");
  EXPECT_EQ(whyNotPublicId("\xFF"), kText + "UTF-8 octet 0xFF into a public identifier");
  EXPECT_EQ(whyNotSystemId("a'b"), "");
  EXPECT_EQ(whyNotSystemId("a'\""), "A system identifier cannot hold both kinds of quotes");
  EXPECT_EQ(whyNotSystemId("\x01"), kText + "character U+0001 into a system identifier");
  EXPECT_EQ(whyNotVersion("1.7"), "");
  EXPECT_EQ(whyNotVersion("2.0"), "\"2.0\" is not a version of XML");
}

TEST(Rules, OfLocalNames) {
  EXPECT_EQ(whyNotLocalName("a", "a"), "");
  EXPECT_EQ(whyNotLocalName("a", "p:a"), "");
  EXPECT_EQ(whyNotLocalName("a", "p:b"), "The local name \"a\" does not belong to \"p:b\"");
  EXPECT_EQ(whyNotLocalName("a", ":a"), "The local name \"a\" does not belong to \":a\"");
  EXPECT_EQ(whyNotLocalName("a\xFF", "a"), kText + "UTF-8 octet 0xFF into a name");
}

TEST(Rules, OfNamesWhereDeclarationsAreInForce) {
  NamespaceBindings bindings;
  bindings.declare("p", "u");
  const std::string none;
  const std::string u = "u";
  const std::string v = "v";
  EXPECT_EQ(whyNotElement("p", &u, "p:a", bindings), "");
  EXPECT_EQ(whyNotElement("p", nullptr, "p:a", bindings), "");
  EXPECT_EQ(whyNotElement("p", &v, "p:a", bindings),
            "The prefix \"p\" is bound to \"u\" and not to \"v\"");
  EXPECT_EQ(whyNotElement("q", nullptr, "q:a", bindings), "The prefix \"q\" is not declared");
  EXPECT_EQ(whyNotElement("", &none, "a", bindings), "");
  EXPECT_EQ(whyNotElement("", &v, "a", bindings),
            "The element \"a\" has no prefix, but \"v\" is not the default namespace");
  bindings.declare("", "v");
  EXPECT_EQ(whyNotElement("", &v, "a", bindings), "");
  EXPECT_EQ(whyNotElement("", nullptr, "a", bindings), "");
  EXPECT_EQ(whyNotElement("", &none, "a", bindings),
            "The element \"a\" has no namespace, but the default namespace is \"v\"");
  EXPECT_EQ(whyNotAttribute("", &none, "a", bindings), "");
  EXPECT_EQ(whyNotAttribute("", &v, "a", bindings),
            "The attribute \"a\" has a namespace, but no prefix");
  EXPECT_EQ(whyNotAttribute("", &none, "xmlns", bindings),
            "An attribute with the name \"xmlns\" is a namespace declaration");
  EXPECT_EQ(whyNotAttribute("p", &v, "p:a", bindings),
            "The prefix \"p\" is bound to \"u\" and not to \"v\"");
}

TEST(Rules, OfDeclarations) {
  EXPECT_EQ(whyNotDeclaration("p", "u"), "");
  EXPECT_EQ(whyNotDeclaration("", ""), "");
  EXPECT_EQ(whyNotDeclaration("1", "u"), "\"1\" is not a name");
  EXPECT_EQ(whyNotDeclaration("p", "\x02"), kText + "character U+0002 into a namespace name");
  EXPECT_EQ(whyNotDeclaration("p", ""), "The prefix \"p\" cannot be undeclared");
  EXPECT_EQ(whyNotDeclaration("p", "", true), "");
}

}  // namespace
}  // namespace Tavrin::xml
