#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include "CopiedDocuments.h"

// What the filter has no reason to change passes, from all readers to all writers.

namespace {

using namespace Tavrin;

TEST(TypedContentFilterCopies, WithoutRules) {
  copies::expectCopies([](XMLReader& reader, XMLWriter& writer, std::istream& stream) {
    TypedContentFilter filter{TypingRules()};
    filter.setParent(&reader);
    connect(filter, writer);
    filter.parse(stream);
  });
}

TEST(TypedContentFilterCopies, WithTextThatHasNoType) {
  copies::expectCopies([](XMLReader& reader, XMLWriter& writer, std::istream& stream) {
    TypingRules rules;
    rules.add("*", "auto");
    rules.add("@*", "auto");
    TypedContentFilter filter(rules);
    filter.setParent(&reader);
    connect(filter, writer);
    filter.parse(stream);
  });
}

}  // namespace
