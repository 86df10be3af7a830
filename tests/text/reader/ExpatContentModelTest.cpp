#include <gtest/gtest.h>

#include <algorithm>

#include "TextReaderSupport.h"

namespace {

/// What elementDecl gets for an element declared so.
std::string reportedModel(const std::string& declared) {
  struct Models : Tavrin::DeclHandler {
    void elementDecl(const std::string& name, const std::string& model) override {
      EXPECT_EQ("a", name);
      models.push_back(model);
    }
    std::vector<std::string> models;
  };
  Models models;
  Tavrin::XMLReader_Expat reader;
  reader.setProperty(Tavrin::properties::declarationHandler, &models);
  EXPECT_EQ("done", parseText(reader, "<!DOCTYPE a [<!ELEMENT a " + declared + ">]><a/>"));
  EXPECT_EQ(1U, models.models.size());
  return models.models.empty() ? "nothing" : models.models[0];
}

TEST(ExpatContentModel, IsReportedWithoutWhiteSpace) {
  EXPECT_EQ("(a,(b|c)+,d?)", reportedModel("( a , ( b | c )+ ,\n\td? )"));
  EXPECT_EQ("(#PCDATA|a|b)*", reportedModel("(\n#PCDATA | a\t|b )* "));
}

TEST(ExpatContentModel, IsOtherwiseReportedAsDeclared) {
  for (const std::string model : {
           "EMPTY",
           "ANY",
           "(#PCDATA)",
           "(#PCDATA)*",
           "(#PCDATA|a)*",
           "(#PCDATA|a|p:b|c)*",
           "(a)",
           "(a)?",
           "(a)*",
           "(a)+",
           "(a?)",
           "(a*)",
           "(a+)",
           "(a?)+",
           "(a,b)",
           "(a,b)?",
           "(a?,b*,c+,d)",
           "(a|b)",
           "(a|b)+",
           "(a?|b*|c+|d)*",
           "((a))",
           "((((a)?)*)+)",
           "((a,b)|(c,d))",
           "((a|b),(c|d))",
           "((a|b)?,(c|d)*,(e|f)+)",
           "((a,b)?|(c,d)*|(e,f)+)",
           "(a,(b|(c,(d|e)+)?)*,f)",
           "((a|b)*,(((c))),d,(e,(f,g)?)+)?",
           "(empty,any,EMPTY,ANY)",
           "(é|ü)",
       }) {
    EXPECT_EQ(model, reportedModel(model));
  }
}

TEST(ExpatContentModel, WithParameterEntitiesIsReportedExpanded) {
  EventLog log;
  log.entities["x"] = "<!ENTITY % m 'b | c'><!ELEMENT a (%m;)*><!ELEMENT d (a,(%m;)?)>";
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  EXPECT_EQ("done", parseText(reader, "<!DOCTYPE a SYSTEM 'x'><a/>"));
  EXPECT_EQ(wholeLog({"startDTD(a, , x)", "resolveEntity(, x)", "internalEntityDecl(%m, b | c)",
                      "elementDecl(a, (b|c)*)", "elementDecl(d, (a,(b|c)?))", "endDTD()",
                      "startElement(, a, a, [])", "endElement(, a, a)"}),
            log.text());
}

constexpr int kLevels = 200000;

// A document decides how deep its models are: the call stack must not.
TEST(ExpatContentModel, MayBe200000GroupsDeep) {
  const std::string model =
      std::string(kLevels, '(') + "a" + std::string(static_cast<std::size_t>(kLevels), ')');
  EXPECT_TRUE(model == reportedModel(model));
}

TEST(ExpatContentModel, MayBe200000GroupsDeepWithSiblingsAndQuantifiersAtEveryLevel) {
  std::string model;
  for (int i = 0; i < kLevels; ++i) model += i % 2 == 0 ? "(a?," : "(b|";
  model += "(c)";
  for (int i = kLevels - 1; i >= 0; --i) model += i % 2 == 0 ? ",d+)*" : "|e)?";
  EXPECT_TRUE(model == reportedModel(model));
}

TEST(ExpatContentModel, MayHave200000Children) {
  for (const std::string open : {"(", "(#PCDATA|"}) {
    for (const char separator : {'|', ','}) {
      const bool mixed = open != "(";
      if (mixed && separator == ',') continue;
      std::string model = open + "x";
      for (int i = 1; i < kLevels; ++i) model += separator + std::string("x");
      model += mixed ? ")*" : ")+";
      EXPECT_TRUE(model == reportedModel(model)) << open << separator;
    }
  }
}

}  // namespace
