#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// The lines of a block, as they are printed.
struct Block {
  std::string name;
  std::size_t octets;
  int elements, attributes, names, text, values, comments, instructions, depth, typedValues, items;
  std::string other;

  std::string lines() const {
    const auto number = [](auto value) { return std::to_string(value) + "\n"; };
    return name + "\n" +                                           //
           "  octets                   " + number(octets) +        //
           "  elements                 " + number(elements) +      //
           "  attributes               " + number(attributes) +    //
           "  distinct names           " + number(names) +         //
           "  text octets              " + number(text) +          //
           "  attribute value octets   " + number(values) +        //
           "  comments                 " + number(comments) +      //
           "  processing instructions  " + number(instructions) +  //
           "  depth                    " + number(depth) +         //
           "  typed values             " + number(typedValues) +   //
           "  typed items              " + number(items) +         //
           "  " + other + "\n";
  }
};

const std::string kDocument =
    "<!--c--><a xmlns:p='u' x='12' p:yy='3'><b>text</b><b><?p d?>more</b></a>";

Block blockOf(const std::string& name) {
  return {name, 72, 3, 2, 4, 8, 3, 1, 1, 2, 0, 0, "as Fast Infoset          57"};
}

const std::string kUndeclared = "The entity \"e\" is not declared";

const std::string kSmallest =
    Block{"small.xml", 4, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, "as Fast Infoset          9"}.lines();

using Stat = Workplace;

}  // namespace

TEST_F(Stat, CountsWhatTextHolds) {
  writeFile("in.xml", kDocument);
  EXPECT_EQ(run({"stat", "in.xml"}), (Result{0, blockOf("in.xml").lines(), ""}));
  EXPECT_EQ(run({"stat", "-"}, kDocument), (Result{0, blockOf("-").lines(), ""}));
}

TEST_F(Stat, CountsTheSameInFastInfoset) {
  writeFile("in.xml", kDocument);
  EXPECT_EQ(run({"convert", "in.xml", "in.fi"}), silent(0));
  Block block = blockOf("in.fi");
  block.octets = 57;
  block.other = "as XML text              " + std::to_string(38 + 72);  // With a declaration.
  EXPECT_EQ(run({"stat", "in.fi"}), (Result{0, block.lines(), ""}));
}

TEST_F(Stat, CountsTypedContent) {
  const std::string copy = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + typed::kDocumentAsText;
  writeFile("in.fi", typed::document());
  EXPECT_EQ(run({"stat", "in.fi"}),
            (Result{0,
                    Block{"in.fi", typed::document().size(), 1, 2, 3, 1, 2, 0, 0, 1, 9, 21,
                          "as XML text              " + std::to_string(copy.size())}
                        .lines(),
                    ""}));
}

TEST_F(Stat, CountsUUIDs) {
  const std::string two = "F81D4FAE7DEC11D0A76500A0C91E6BF6 00000000000000000000000000000000";
  const std::string document = typed::element("8C 22 1D " + two);
  // A declaration, tags, and two times 36 characters with a space between.
  EXPECT_EQ(run({"stat", "-"}, document),
            (Result{0,
                    Block{"-", document.size(), 1, 0, 1, 0, 0, 0, 0, 1, 1, 2,
                          "as XML text              " + std::to_string(38 + 7 + 73)}
                        .lines(),
                    ""}));
}

TEST_F(Stat, CountsOctetsOfTextInUTF8) {
  EXPECT_EQ(
      run({"stat", "-"}, "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE4'>\xE4\xE4</a>"),
      (Result{0,
              Block{"-", 58, 1, 1, 2, 4, 2, 0, 0, 1, 0, 0, "as Fast Infoset          22"}.lines(),
              ""}));
}

// The names of an element and an attribute are one, the same name in two namespaces are two.
TEST_F(Stat, CountsEveryNameOnce) {
  EXPECT_EQ(
      run({"stat", "-"}, "<a a='1'><a xmlns='u'/><a xmlns='v'/><b/><b/></a>"),
      (Result{0,
              Block{"-", 49, 5, 1, 4, 0, 1, 0, 0, 2, 0, 0, "as Fast Infoset          38"}.lines(),
              ""}));
}

TEST_F(Stat, HasABlockForEveryFile) {
  writeFile("in.xml", kDocument);
  writeFile("small.xml", "<a/>");
  EXPECT_EQ(
      run({"stat", "in.xml", "small.xml", "in.xml"}),
      (Result{0, blockOf("in.xml").lines() + "\n" + kSmallest + "\n" + blockOf("in.xml").lines(),
              ""}));
}

TEST_F(Stat, HasNoBlockForAFileThatCannotBeRead) {
  writeFile("small.xml", "<a/>");
  writeFile("bad.xml", "<a>");
  writeFile("bad.fi", octets("E0 00 00 01 00"));
  const std::string text = "bad.xml:1:4: no element found: <a> of line 1 is not closed\n";
  const std::string binary = "bad.fi: octet 5: Unexpected end of document\n";
  const std::string missing = "tavrin: missing: No such file or directory\n";
  EXPECT_EQ(run({"stat", "bad.xml"}), (Result{1, "", text}));
  EXPECT_EQ(run({"stat", "bad.xml", "small.xml", "bad.fi"}), (Result{1, kSmallest, text + binary}));
  EXPECT_EQ(run({"stat", "bad.xml", "missing", "small.xml"}),
            (Result{2, kSmallest, text + missing}));
}

TEST_F(Stat, TellsWhyThereIsNoOtherForm) {
  // The reference is kept, but nothing declares it any more. 5 octets of header, 3 of the element.
  const std::string reference = typed::element("C8 00 'e' 3C 00 'b' FF");
  EXPECT_EQ(run({"stat", "-"}, reference),
            (Result{0,
                    Block{"-", reference.size(), 2, 0, 2, 0, 0, 0, 0, 2, 0, 0,
                          "as XML text              impossible: -: octet 11: " + kUndeclared}
                        .lines(),
                    ""}));
  EXPECT_EQ(
      run({"stat", "--from", "FI", "-"}, typed::unknownBuiltIn()),
      (Result{0,
              Block{"-", 12, 1, 0, 1, 0, 0, 0, 0, 1, 1, 1,
                    "as XML text              impossible: -: octet 11: encoding algorithm 8 is "
                    "unknown, so the copy would lack its content"}
                  .lines(),
              ""}));
  EXPECT_EQ(
      run({"stat", "--from", "FI", "-"}, typed::element("E2 02 '-->'")),
      (Result{0,
              Block{"-", 14, 1, 0, 1, 0, 0, 1, 0, 1, 0, 0,
                    "as XML text              impossible: -: octet 13: You cannot put \"-->\" "
                    "into a comment"}
                  .lines(),
              ""}));
}

TEST_F(Stat, FindsTheDeepestElement) {
  constexpr int kDepth = 100000;
  std::string document, end;
  for (int i = 0; i < kDepth; ++i) document += "<a>";
  for (int i = 0; i < kDepth; ++i) end += "</a>";
  // The first name takes 3 octets, every other 1; ends come in pairs, the document's is the last.
  const std::size_t size = 5 + 3 + (kDepth - 1) + kDepth / 2 + 1;
  EXPECT_EQ(run({"stat", "-"}, document + end),
            (Result{0,
                    Block{"-", 7UL * kDepth, kDepth, 0, 1, 0, 0, 0, 0, kDepth, 0, 0,
                          "as Fast Infoset          " + std::to_string(size)}
                        .lines(),
                    ""}));
}

TEST_F(Stat, ReportsThatItCannotBeWritten) {
  EXPECT_EQ(run({"stat", "-"}, "<a/>", [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
            (Result{2, "", "tavrin: standard output: No space left on device\n"}));
}
