#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "FIWriterProbe.h"

// Ends. In the format an end is half an octet, F; whatever comes next begins on a whole octet, so
// that a single end is filled up with 0. The tests build the expected octets from half octets,
// the writer builds them by owing.

namespace writer_test {
namespace {

/// An element with or without an attribute, and its children.
struct Tree {
  bool hasAttribute = false;
  std::vector<Tree> children;
};

/// All trees of up to a number of levels whose elements have up to two children.
std::vector<Tree> allShapes(int levels) {
  std::vector<Tree> shapes = {Tree{}};
  if (levels == 1) return shapes;
  const std::vector<Tree> below = allShapes(levels - 1);
  for (const Tree& child : below) shapes.push_back({false, {child}});
  for (const Tree& first : below) {
    for (const Tree& second : below) shapes.push_back({false, {first, second}});
  }
  return shapes;
}

/// Gives the elements attributes, in document order, as the function tells for each.
void decorate(Tree& tree, const std::function<bool(const Tree&)>& hasAttribute) {
  tree.hasAttribute = hasAttribute(tree);
  for (Tree& child : tree.children) decorate(child, hasAttribute);
}

/// What stands between, in front of and behind the children of an element.
using Between = std::function<void(Probe&)>;

void write(const Tree& tree, const Between& between, Probe& writer) {
  if (tree.hasAttribute) {
    writer.start("e", {{"a", ""}});
  } else {
    writer.start("e");
  }
  for (const Tree& child : tree.children) {
    if (between) between(writer);
    write(child, between, writer);
  }
  if (between) between(writer);
  writer.end("e");
}

/// Octets put together from whole and half ones.
class HalfOctets {
 public:
  void item(const std::string& octets) {
    if (half_) text_ += '\xF0';
    half_ = false;
    text_ += octets;
  }
  void end() {
    if (half_) text_ += '\xFF';
    half_ = !half_;
  }
  std::string text() const { return half_ ? text_ + '\xF0' : text_; }

 private:
  std::string text_;
  bool half_ = false;
};

/// The octets of a tree whose element name `e` and attribute name `a` are known already.
void expect(const Tree& tree, const std::string& between, HalfOctets& octets) {
  octets.item(std::string(1, tree.hasAttribute ? '\x40' : '\0'));
  if (tree.hasAttribute) {
    octets.item(::octets("00 FF"));
    octets.end();
  }
  for (const Tree& child : tree.children) {
    if (!between.empty()) octets.item(between);
    expect(child, between, octets);
  }
  if (!between.empty()) octets.item(between);
  octets.end();
}

/// Writes a tree below a root that makes the names known.
std::string written(const Tree& tree, const Between& between) {
  Probe writer;
  writer.startDocument();
  writer.start("e", {{"a", ""}});
  writer.comment("");
  write(tree, between, writer);
  writer.end("e");
  writer.endDocument();
  return writer.written();
}

std::string expected(const Tree& tree, const std::string& between) {
  HalfOctets octets;
  octets.item(::octets("E0 00 00 01 00 7C 00 'e' 78 00 'a' FF"));
  octets.end();
  octets.item(::octets("E2 FF"));
  expect(tree, between, octets);
  octets.end();
  octets.end();
  return EventLog::showOctets(octets.text());
}

/// Every shape, with attributes nowhere, everywhere, on leaves, on all others and here and there.
std::vector<Tree> allTrees() {
  std::size_t count = 0;
  const std::vector<std::function<bool(const Tree&)>> patterns = {
      [](const Tree&) { return false; },
      [](const Tree&) { return true; },
      [](const Tree& tree) { return tree.children.empty(); },
      [](const Tree& tree) { return !tree.children.empty(); },
      [&count](const Tree&) { return count++ % 2 == 0; },
      [&count](const Tree&) { return count++ % 3 == 1; },
  };
  std::vector<Tree> trees;
  for (const Tree& shape : allShapes(4)) {
    for (const auto& pattern : patterns) {
      trees.push_back(shape);
      decorate(trees.back(), pattern);
    }
  }
  return trees;
}

TEST(WriterTerminators, AreHalfOctetsInEveryShapeOfTree) {
  const std::vector<Tree> trees = allTrees();
  EXPECT_EQ(trees.size(), 183U * 6);
  for (const Tree& tree : trees) ASSERT_EQ(written(tree, nullptr), expected(tree, ""));
}

TEST(WriterTerminators, AreFilledUpInFrontOfTextInEveryShapeOfTree) {
  for (const Tree& tree : allTrees()) {
    ASSERT_EQ(written(tree, [](Probe& writer) { writer.characters("1234567"); }),
              expected(tree, octets("82 04 '1234567'")));
  }
}

TEST(WriterTerminators, AreFilledUpInFrontOfAnyOtherItemInEveryShapeOfTree) {
  for (const Tree& tree : allTrees()) {
    ASSERT_EQ(written(tree, [](Probe& writer) { writer.comment(""); }),
              expected(tree, octets("E2 FF")));
    ASSERT_EQ(written(tree, [](Probe& writer) { writer.shorts({1}); }),
              expected(tree, octets("8C 09 00 01")));
  }
}

TEST(WriterTerminators, AreNotFilledUpByWhatLeavesNoTraceInAnyShapeOfTree) {
  for (const Tree& tree : allTrees()) {
    ASSERT_EQ(written(tree,
                      [](Probe& writer) {
                        writer.characters("");
                        writer.ignorableWhitespace(" ");
                        writer.startEntity("e");
                        writer.endEntity("e");
                        writer.skippedEntity("e");
                        writer.endPrefixMapping("p");
                      }),
              expected(tree, ""));
  }
}

/// The document of a chain of elements, each in the one before it.
std::string chain(int depth, bool hasAttributes) {
  Probe writer;
  writer.startDocument();
  for (int i = 0; i < depth; ++i) {
    if (hasAttributes) {
      writer.start("e", {{"a", ""}});
    } else {
      writer.start("e");
    }
  }
  for (int i = 0; i < depth; ++i) writer.end("e");
  writer.endDocument();
  return writer.written();
}

TEST(WriterTerminators, OfAChainComeInPairs) {
  EXPECT_EQ(chain(0, false), document("F0"));
  EXPECT_EQ(chain(1, false), document("3C 00 'e' FF"));
  EXPECT_EQ(chain(2, false), document("3C 00 'e' 00 FF F0"));
  EXPECT_EQ(chain(3, false), document("3C 00 'e' 00 00 FF FF"));
  EXPECT_EQ(chain(4, false), document("3C 00 'e' 00 00 00 FF FF F0"));
}

TEST(WriterTerminators, OfAChainWithAttributesBeginWithThoseOfTheInnermost) {
  EXPECT_EQ(chain(1, true), document("7C 00 'e' 78 00 'a' FF FF F0"));
  EXPECT_EQ(chain(2, true), document("7C 00 'e' 78 00 'a' FF F0 40 00 FF FF FF"));
  EXPECT_EQ(chain(3, true), document("7C 00 'e' 78 00 'a' FF F0 40 00 FF F0 40 00 FF FF FF F0"));
}

}  // namespace
}  // namespace writer_test
