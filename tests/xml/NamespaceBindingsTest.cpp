#include "xml/NamespaceBindings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace Tavrin::xml;

const std::string kXML = "http://www.w3.org/XML/1998/namespace";

TEST(NamespaceBindings, BeginWithXmlAlone) {
  const NamespaceBindings bindings;
  EXPECT_EQ(bindings.find("xml"), kXML);
  EXPECT_EQ(bindings.find(""), "");
  EXPECT_EQ(bindings.find("p"), "");
  EXPECT_EQ(bindings.find("xmlns"), "");
  EXPECT_EQ(bindings.count(), 0U);
}

TEST(NamespaceBindings, HaveScopes) {
  NamespaceBindings bindings;
  bindings.declare("p", "urn:1");
  bindings.declare("", "urn:d");
  bindings.declare("p", "urn:2");
  bindings.declare("", "");
  EXPECT_EQ(bindings.count(), 4U);
  EXPECT_EQ(bindings.find("p"), "urn:2");
  EXPECT_EQ(bindings.find(""), "");
  bindings.undo(1);
  EXPECT_EQ(bindings.find(""), "urn:d");
  bindings.undo(0);
  EXPECT_EQ(bindings.count(), 3U);
  bindings.undo(1);
  EXPECT_EQ(bindings.find("p"), "urn:1");
  bindings.undo(2);
  EXPECT_EQ(bindings.find("p"), "");
  EXPECT_EQ(bindings.find(""), "");
  EXPECT_EQ(bindings.count(), 0U);
}

TEST(NamespaceBindings, AreCleared) {
  NamespaceBindings bindings;
  bindings.declare("p", "urn:1");
  bindings.declare("xml", kXML);
  bindings.clear();
  EXPECT_EQ(bindings.find("p"), "");
  EXPECT_EQ(bindings.find("xml"), kXML);
  EXPECT_EQ(bindings.count(), 0U);
}

TEST(NamespaceBindings, HaveANumberThatTellsThemApart) {
  NamespaceBindings bindings;
  const auto outside = bindings.version();
  std::set<std::uint64_t> versions{outside};
  for (int i = 0; i < 3; ++i) {
    bindings.declare("p", "urn:p");
    EXPECT_TRUE(versions.insert(bindings.version()).second);
    const auto inside = bindings.version();
    bindings.declare("q", "urn:q");
    EXPECT_TRUE(versions.insert(bindings.version()).second);
    bindings.undo(1);
    EXPECT_EQ(bindings.version(), inside);
    bindings.undo(1);
    EXPECT_EQ(bindings.version(), outside);
  }
  bindings.clear();
  EXPECT_TRUE(versions.insert(bindings.version()).second);
}

// Namespaces in XML 1.0, section 3.
TEST(WhyNotDeclarable, NamesTheRule) {
  const std::string kXMLNS = "http://www.w3.org/2000/xmlns/";
  const struct {
    std::string prefix;
    std::string uri;
    std::string reason;
  } cases[] = {
      {"p", "urn:p", ""},
      {"", "urn:p", ""},
      {"", "", ""},
      {"xml", kXML, ""},
      {"xmlx", "urn:p", ""},
      {"p", "", "The prefix \"p\" cannot be undeclared"},
      {"xmlns", "urn:p", "The prefix \"xmlns\" cannot be declared"},
      {"xmlns", kXMLNS, "The prefix \"xmlns\" cannot be declared"},
      {"p", kXMLNS, "The namespace \"" + kXMLNS + "\" cannot be declared"},
      {"xml", "urn:p", "The prefix \"xml\" cannot be bound to another namespace"},
      {"xml", "", "The prefix \"xml\" cannot be bound to another namespace"},
      {"p", kXML, "The namespace \"" + kXML + "\" cannot be bound to another prefix"},
      {"", kXML, "The namespace \"" + kXML + "\" cannot be bound to another prefix"},
  };
  for (const auto& c : cases) EXPECT_EQ(whyNotDeclarable(c.prefix, c.uri), c.reason);
  EXPECT_EQ(whyNotDeclarable("p", "", true), "");
}

}  // namespace
