#include "HexOctets.h"
#include "Workplace.h"

namespace {

using Assemble = Workplace;
using namespace std::string_literals;

}  // namespace

TEST_F(Assemble, TakesOctetsTextsAndComments) {
  const struct {
    std::string text;
    std::string octets;
  } cases[] = {
      {"", ""},
      {"\n\n", ""},
      {"# only a comment", ""},
      {"00", "\0"s},
      {"00\n", "\0"s},
      {"e0 00 00 01", "\xE0\0\0\1"s},
      {"E0000001", "\xE0\0\0\1"s},
      {"\te0\t00  0001 # four\r\nff\r\n", "\xE0\0\0\1\xFF"s},
      // Offsets are not read.
      {"00000000: 61 62", "ab"},
      {"0: 61\n0: 62", "ab"},
      {"  ff: 61", "a"},
      {"ffffffffffffffff: 61", "a"},
      {"00:61", "a"},
      {"61:", ""},
      {"6162636465666768", "abcdefgh"},
      {"616263646566676869", "abcdefghi"},
      // Texts.
      {R"("text")", "text"},
      {R"(61"b"63)", "abc"},
      {R"("" "a""b")", "ab"},
      {R"("# no comment")", "# no comment"},
      {"\"\xC3\xA4\"", "\xC3\xA4"},
      {"\"\xFF\"", "\xFF"},
      {R"("\"\\\n\r\t\x00\xFf")", "\"\\\n\r\t\0\xFF"s},
      {R"("\u0041\u00e4\u20AC\uD83D\uDE00")", "A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {R"("\uDCFF\uDC80")", "\xFF\x80"},
      // What editors and terminals add.
      {"\xEF\xBB\xBF"
       "61",
       "a"},
      {"\x1B[2m00000000:\x1B[0m 61\x1B[1;31m62", "ab"},
  };
  for (const auto& [text, octets] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(run({"assemble"}, text), (Result{0, octets, ""}));
    writeFile("in.txt", text);
    EXPECT_EQ(run({"assemble", "--force", "in.txt", "out.fi"}), silent(0));
    EXPECT_EQ(readFile("out.fi"), octets);
  }
}

TEST_F(Assemble, TellsWhereATextHasAnotherForm) {
  constexpr char kTwoDigits[] = "an octet has two hexadecimal digits";
  constexpr char kExpected[] = "expected octets, a text in quotes or a comment";
  constexpr char kNotClosed[] = "the text that begins here is not closed on its line";
  constexpr char kHalf[] = "half of a surrogate pair";
  const struct {
    std::string text;
    std::string place;
    std::string message;
  } cases[] = {
      {"0", "1:1", kTwoDigits},
      {"000", "1:3", kTwoDigits},
      {"00\n\n 00 1 00", "3:5", kTwoDigits},
      {"00: 1", "1:5", kTwoDigits},
      {"00: 1\n", "1:5", kTwoDigits},
      {"00 1g", "1:4", kTwoDigits},
      {"00: 61: 62", "1:7", kExpected},
      {": 61", "1:1", kExpected},
      {"61 62\n63 g4", "2:4", kExpected},
      {"0x61", "1:1", kTwoDigits},
      {"61 'text'", "1:4", kExpected},
      {"\"\xC3\xA4\xE2\x82\xAC\" x", "1:6", kExpected},
      {"\"text", "1:1", kNotClosed},
      {"61 \"text\n\"", "1:4", kNotClosed},
      {R"("text\)", "1:1", kNotClosed},
      {R"("a\q")", "1:3", R"(expected \", \\, \n, \r, \t, \xNN or \uNNNN)"},
      {R"("a\x4")", "1:3", R"(expected two hexadecimal digits behind \x)"},
      {R"("a\u004")", "1:3", R"(expected four hexadecimal digits behind \u)"},
      {R"("\uD83D")", "1:2", kHalf},
      {R"("\uD83Dx")", "1:2", kHalf},
      {R"("\uD83D\n")", "1:2", kHalf},
      {R"("\uDE00")", "1:2", kHalf},
  };
  for (const auto& [text, place, message] : cases) {
    SCOPED_TRACE(text);
    writeFile("in.txt", text);
    const auto shown = [&where = place, &what = message](const std::string& name) {
      return name + ":" + where + ": " + what + "\n";
    };
    EXPECT_EQ(run({"assemble", "in.txt", "out.fi"}).err, shown("in.txt"));
    EXPECT_EQ(run({"assemble", "in.txt", "out.fi"}).status, 1);
    EXPECT_EQ(run({"assemble"}, text).err, shown("-"));
    EXPECT_EQ(files(), Names{"in.txt"});
  }
}

TEST_F(Assemble, KeepsAFileUnlessItIsForced) {
  writeFile("in.txt", "61");
  writeFile("out.fi", "old");
  const Result refused = run({"assemble", "in.txt", "out.fi"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(readFile("out.fi"), "old");
  EXPECT_EQ(run({"assemble", "--force", "in.txt", "out.fi"}), silent(0));
  EXPECT_EQ(readFile("out.fi"), "a");
  EXPECT_EQ(run({"assemble", "missing", "out"}),
            (Result{2, "", "tavrin: missing: No such file or directory\n"}));
}

// People change a document by its text.
TEST_F(Assemble, MakesADocumentOfATextThatWasChanged) {
  std::string text = run({"inspect", "-"}, octets("E0 00 00 01 00 3C 00 'a' 82 01 'text' FF")).out;
  const std::string old = "82 01 74 65 78 74";
  const std::size_t place = text.find(old);
  ASSERT_NE(place, std::string::npos);
  text.replace(place, old.size(), "82 05 \"new text\"");
  const Result made = run({"assemble"}, text);
  EXPECT_EQ(made, (Result{0, octets("E0 00 00 01 00 3C 00 'a' 82 05 'new text' FF"), ""}));
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, made.out),
            (Result{0, "<a>new text</a>", ""}));
}

TEST_F(Assemble, IsExplained) {
  EXPECT_EQ(run({"assemble", "--help"}),
            (Result{0, R"help(Makes the octets of a document of the text that inspect shows.

Usage: tavrin assemble [OPTIONS] [IN [OUT]]

  IN                the text; - or nothing is standard input
  OUT               where to write the octets; - or nothing is standard output

Options:
  --force           replace OUT if it exists
  -h, --help        print this help

Of what inspect shows of a file, whatever it is, assemble makes the octets of that file. The text
may be changed, or written by hand. On each line there are, and each may be missing:

  OFFSET:           hexadecimal digits and a colon; they may be wrong, nobody reads them
  OCTETS            pairs of hexadecimal digits, and texts in quotes, which become their UTF-8; in
                    texts, \" \\ \n \r \t \xNN and \uNNNN stand for a quote, a backslash, controls,
                    an octet and a character
  # COMMENT         anything, up to the end of the line

Lengths and indexes are octets like any others: whoever changes a text changes its length, too.

A text of another form is refused with its line and column, FILE:LINE:COLUMN. OUT appears when it is
complete, and not at all if the work fails.

Example:
  tavrin inspect in.fi > in.txt
  tavrin assemble in.txt out.fi
)help",
                    ""}));
}
