#include <Tavrin/Identifiers.h>

#include <gtest/gtest.h>

namespace {

using namespace Tavrin;

TEST(Identifiers, OfPropertiesAreExact) {
  EXPECT_STREQ(properties::lexicalHandler, "http://xml.org/sax/properties/lexical-handler");
  EXPECT_STREQ(properties::declarationHandler, "http://xml.org/sax/properties/declaration-handler");
  EXPECT_STREQ(properties::primitiveTypeContentHandler,
               "http://jvnet.org/fastinfoset/sax/properties/primitive-type-content-handler");
  EXPECT_STREQ(properties::encodingAlgorithmContentHandler,
               "http://jvnet.org/fastinfoset/sax/properties/encoding-algorithm-content-handler");
  EXPECT_STREQ(properties::registeredEncodingAlgorithms,
               "http://jvnet.org/fastinfoset/parser/properties/registered-encoding-algorithms");
  EXPECT_STREQ(properties::externalVocabularies,
               "http://jvnet.org/fastinfoset/parser/properties/external-vocabularies");
}

TEST(Identifiers, OfFeaturesAreExact) {
  EXPECT_STREQ(features::autoIndent, "http://tavrin/sax/features/auto-indent");
  EXPECT_STREQ(features::emptyTags, "http://tavrin/sax/features/empty-tags");
  EXPECT_STREQ(features::xmlDeclaration, "http://tavrin/sax/features/xml-declaration");
}

TEST(Identifiers, OfReservedNamespacesAreExact) {
  EXPECT_STREQ(namespaces::xml, "http://www.w3.org/XML/1998/namespace");
  EXPECT_STREQ(namespaces::xmlns, "http://www.w3.org/2000/xmlns/");
}

// An array's size tells a hidden octet behind the text, which a comparison of C strings does not.
static_assert(sizeof(properties::lexicalHandler) == 46);
static_assert(sizeof(properties::declarationHandler) == 50);
static_assert(sizeof(features::autoIndent) == 39);
static_assert(sizeof(features::emptyTags) == 38);
static_assert(sizeof(features::xmlDeclaration) == 43);
static_assert(sizeof(namespaces::xml) == 37);
static_assert(sizeof(namespaces::xmlns) == 30);

}  // namespace
