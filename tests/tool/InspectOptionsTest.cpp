#include "HelpTexts.h"
#include "InspectSupport.h"
#include "Terminal.h"

namespace {

using InspectOptions = Inspecting;

}  // namespace

TEST_F(InspectOptions, ShowsTheNeighbourhoodOfAnOctet) {
  std::string document = "E0 00 00 01 00 3C 00 'a' ";
  for (int i = 0; i < 100; ++i) document += "80 'x' ";
  writeFile("in.fi", octets(document + "FF"));
  const auto line = [](const std::string& offset) {
    return offset +
           ": 80 78                    #     characters (C.7, C.15, C.20, C.24): \"x\"  /a\n";
  };
  std::string text;
  for (const char* offset : {"00000036", "00000038", "0000003a", "0000003c", "0000003e", "00000040",
                             "00000042", "00000044"}) {
    text += line(offset);
  }
  text += "# ! octet 72:\n" + line("00000046");
  for (const char* offset : {"00000048", "0000004a", "0000004c", "0000004e", "00000050", "00000052",
                             "00000054", "00000056"}) {
    text += line(offset);
  }
  EXPECT_EQ(run({"inspect", "--at", "72", "in.fi"}), (Result{0, text, ""}));
  EXPECT_EQ(run({"inspect", "--at=0x47", "in.fi"}), (Result{0, text, ""}));
  // Behind the end, the last lines are the nearest.
  text.clear();
  for (const char* offset : {"000000c0", "000000c2", "000000c4", "000000c6", "000000c8", "000000ca",
                             "000000cc", "000000ce"}) {
    text += line(offset);
  }
  text +=
      "000000d0: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the "
      "document\n";
  EXPECT_EQ(run({"inspect", "--at", "210", "in.fi"}),
            (Result{2, text, "tavrin: in.fi has 209 octets\n"}));
  for (const char* at : {"0", "-1", "x", "0x", "1x", "99999999999999999999"}) {
    EXPECT_EQ(run({"inspect", std::string("--at=") + at, "in.fi"}),
              (Result{2, "",
                      std::string("tavrin: --at: \"") + at +
                          "\" is not the number of an octet (see tavrin inspect --help)\n"}));
  }
}

TEST_F(InspectOptions, ShowsTheNeighbourhoodOfAnError) {
  writeFile("in.fi", octets("E0 00 00 01 00 3C 00 'a' 80 01 80 'x' C0"));
  const std::string lines = kRoot + R"(# ! octet 10:
00000008: 80 01                    #     characters (C.7, C.15, C.20, C.24): "\u0001"  /a
# ! octet 10: Invalid character U+0001
0000000a: 80 78                    #     characters (C.7, C.15, C.20, C.24): "x"  /a
# ! octet 13: expected an element, characters, an unexpanded entity reference, a processing instruction, a comment or the end of the element (C.3.7), but found c0
0000000c: c0                       # .
)";
  EXPECT_EQ(run({"inspect", "--at", "10", "in.fi"}),
            (Result{1, lines, "in.fi: octet 10: Invalid character U+0001\n"}));
}

TEST_F(InspectOptions, UsesColoursWhereThatIsAskedFor) {
  const std::string document = octets("E0 00 00 01 00 3C 00 'a' C0");
  writeFile("in.fi", document);
  const Result result = run({"inspect", "--color=always", "in.fi"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "\x1B[2m00000000:\x1B[0m e0 00 00 01              # \x1B[1mFast Infoset\x1B[0m\x1B[2m "
            "(12.6, 12.7)\x1B[0m, version 1 of the standard\n"
            "\x1B[2m00000004:\x1B[0m 00                       # \x1B[1mdocument\x1B[0m\x1B[2m "
            "(C.2)\x1B[0m\n"
            "\x1B[2m00000005:\x1B[0m 3c                       #   \x1B[1melement\x1B[0m\x1B[2m "
            "(C.3, C.18)\x1B[0m, with a literal name\n"
            "\x1B[2m00000006:\x1B[0m 00 61                    #     \x1B[1mlocal name\x1B[0m"
            "\x1B[2m (C.13, C.22)\x1B[0m: \x1B[32m\"a\"\x1B[0m -> \x1B[36mLOCAL NAME[1]\x1B[0m -> "
            "\x1B[36mELEMENT NAME[1]\x1B[0m  \x1B[35m/a\x1B[0m\n"
            "# \x1B[1;31m! octet 9: expected an element, characters, an unexpanded entity "
            "reference, a processing instruction, a comment or the end of the element (C.3.7), but "
            "found c0\x1B[0m\n"
            "\x1B[2m00000008:\x1B[0m c0                       # .\n");
  EXPECT_EQ(run({"assemble"}, result.out), (Result{0, document, ""}));
  const std::string plain = run({"inspect", "in.fi"}).out;
  EXPECT_EQ(plain.find('\x1B'), std::string::npos);
  EXPECT_EQ(run({"inspect", "--color=auto", "in.fi"}).out, plain);
  EXPECT_EQ(run({"inspect", "--color=never", "in.fi"}).out, plain);
  EXPECT_EQ(run({"inspect", "--color=maybe", "in.fi"}).status, 2);
}

TEST_F(InspectOptions, UsesColoursOnATerminalUnlessTheEnvironmentForbidsThem) {
  writeFile("in.fi", octets("E0 00 00 01 00 3C 00 'a' FF"));
  const std::string plain = run({"inspect", "in.fi"}).out;
  const std::string coloured = run({"inspect", "--color=always", "in.fi"}).out;
  EXPECT_NE(plain, coloured);
  const auto shown = [&](const char* noColor, const ToolProcess::Arguments& arguments) {
    Terminal terminal;
    EXPECT_EQ(run(arguments, "",
                  [&] {
                    dup2(terminal.program(), STDOUT_FILENO);
                    noColor ? setenv("NO_COLOR", noColor, 1) : unsetenv("NO_COLOR");
                  }),
              silent(0));
    return terminal.shown();
  };
  EXPECT_EQ(shown(nullptr, {"inspect", "in.fi"}), coloured);
  EXPECT_EQ(shown("", {"inspect", "in.fi"}), coloured);
  EXPECT_EQ(shown("1", {"inspect", "in.fi"}), plain);
  EXPECT_EQ(shown("1", {"inspect", "--color=always", "in.fi"}), coloured);
  EXPECT_EQ(shown(nullptr, {"inspect", "--color=never", "in.fi"}), plain);
}

TEST_F(InspectOptions, ReadsStandardInputAndRefusesWhatCannotBeRead) {
  const std::string document = octets("E0 00 00 01 00 3C 00 'a' FF");
  const std::string text = kRoot +
                           "00000008: ff                       #   end of the element (C.3.8, "
                           "C.2.12)  /a and of the document\n";
  EXPECT_EQ(run({"inspect", "-"}, document), (Result{0, text, ""}));
  EXPECT_EQ(run({"inspect", "missing"}),
            (Result{2, "", "tavrin: missing: No such file or directory\n"}));
  EXPECT_EQ(run({"inspect", "."}), (Result{2, "", "tavrin: .: Is a directory\n"}));
  EXPECT_EQ(
      run({"inspect", "-"}, document, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
      (Result{2, "", "tavrin: standard output: No space left on device\n"}));
  EXPECT_EQ(run({"inspect"}).status, 2);
}

// Neither indentation nor paths grow with the depth.
TEST_F(InspectOptions, ShowsDeepDocumentsInShortLines) {
  constexpr std::size_t kDepth = 100000;
  const std::string document = octets("E0 00 00 01 00 3C 00 'a'") + std::string(kDepth, '\0') +
                               std::string(kDepth / 2, '\xFF') + octets("FF");
  const Result result = run({"inspect", "-"}, document);
  EXPECT_EQ(result.status, 0);
  EXPECT_LT(result.out.size(), document.size() * 250);
  EXPECT_EQ(run({"assemble"}, result.out).out, document);
}

TEST_F(InspectOptions, IsExplained) {
  EXPECT_EQ(run({"inspect", "--help"}),
            (Result{0,
                    R"help(Shows what every octet of a Fast Infoset document is.

Usage: tavrin inspect [OPTIONS] FILE

  FILE              the document; - is standard input

Options:
  --at OCTET        show the lines around an octet, and read no further. OCTET is a number as
                    messages have it, counted from 1, or an offset as the lines have it behind 0x
  --tables          show the tables of the vocabulary behind each document
  --color WHEN      auto, always or never: whether to use colours. auto, which is so without the
                    option, does on a terminal unless the environment has NO_COLOR
)help" + kLimitOption + kVocabularyOptions +
                        R"help(  -h, --help        print this help

Every line has an offset, octets in hexadecimal and a comment, which tells what the octets are, with
the clauses of ITU-T X.891 that say so; then the value, the entry of a table that an index names,
behind =, the entry that is added to a table, behind ->, and the path of the element:

    00000014: 40 31                    #       value (C.14, C.19, C.23): "1" -> ATTRIBUTE VALUE[1]

Octets of a long text or typed value follow on lines of their own. Typed values are decoded. Lines
that begin with "# !" tell what is wrong.

Of a document that is broken, the octets up to the break are shown so, then what was expected, and
then the other octets as they are. The work fails then. It also fails where the octets can be
followed, but the reader X891 refuses what they say, such as a character that XML does not allow.
All octets are shown as what they are then. So it fails where check does, but for XML text, which is
no Fast Infoset, and for what comes behind a string of more than 16M octets, of which the octets
alone are judged.

The entries of an external vocabulary are those of --vocabulary, where its URI is that of --uri.
Otherwise they are not known: indexes are shown as they are.

)help" + kLimits + R"help(
The command assemble makes the same octets of the lines again.

Examples:
  tavrin inspect --tables in.fi
  tavrin inspect --at 1042 broken.fi
)help",
                    ""}));
}
