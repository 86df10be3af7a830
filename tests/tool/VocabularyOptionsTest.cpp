#include "HexOctets.h"
#include "Workplace.h"

namespace {

/// A document, a vocabulary with its names, and a copy that refers to that by the URI "u".
class VocabularyOptions : public Workplace {
 protected:
  void SetUp() override {
    writeFile("a.xml", "<a b='c'/>");
    // Local names a, b; the element name a; the attribute name b.
    writeFile("v.fi", octets("E0000001 20 0083 01 00'a' 00'b' 00 0000 00 0001 00 FF"));
    writeFile("a.fi", kReferring);
  }

  const std::string kReferring = octets("E0000001 20 1000 00'u' 40 00 40'c' FF F0");
  const std::string kCopy = "<a b='c'/>";
};

Result misuse(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }

ToolProcess::Arguments with(ToolProcess::Arguments arguments, const std::string& vocabulary,
                            const std::string& uri) {
  arguments.insert(arguments.end(), {"--vocabulary", vocabulary, "--uri", uri});
  return arguments;
}

}  // namespace

TEST_F(VocabularyOptions, LetAllCommandsRead) {
  EXPECT_EQ(run(with({"check", "a.fi"}, "v.fi", "u")), (Result{0, "a.fi: well-formed\n", ""}));
  EXPECT_EQ(run(with({"events", "a.fi"}, "v.fi", "u")), run({"events", "a.xml"}));
  EXPECT_EQ(run(with({"diff", "a.fi", "a.xml"}, "v.fi", "u")), silent(0));
  EXPECT_EQ(run(with({"diff", "a.xml", "a.fi"}, "v.fi", "u")), silent(0));
  EXPECT_EQ(run(with({"diff", "a.fi", "-"}, "v.fi", "u"), kReferring), silent(0));
  EXPECT_EQ(run(with({"convert", "--no-declaration", "a.fi"}, "v.fi", "u")),
            (Result{0, kCopy, ""}));
  const Result counted = run(with({"stat", "a.fi"}, "v.fi", "u"));
  EXPECT_EQ(counted.status, 0);
  EXPECT_NE(counted.out.find("  elements                 1\n"), std::string::npos);
}

TEST_F(VocabularyOptions, LetACopyReferToTheVocabulary) {
  EXPECT_EQ(run(with({"convert", "a.xml", "b.fi"}, "v.fi", "u")), silent(0));
  EXPECT_EQ(readFile("b.fi"), octets("E0000001 20 1000 00'u' 40 00 40'c' FF F0"));
  EXPECT_EQ(run(with({"convert", "--to", "x891", "a.xml"}, "v.fi", "u")),
            (Result{0, kReferring, ""}));
  // Again, and with documents behind each other.
  writeFile("two.fi", kReferring + kReferring);
  EXPECT_EQ(run(with({"convert", "two.fi", "c.fi"}, "v.fi", "u")), silent(0));
  EXPECT_EQ(readFile("c.fi"), kReferring + kReferring);
}

TEST_F(VocabularyOptions, LetACopyBeginWithTheVocabulary) {
  EXPECT_EQ(run({"convert", "--vocabulary", "v.fi", "a.xml", "b.fi"}), silent(0));
  EXPECT_EQ(readFile("b.fi"),
            octets("E0000001 20 0083 01 00'a' 00'b' 00 0000 00 0001 40 00 40'c' FF F0"));
  EXPECT_EQ(run({"check", "b.fi"}).status, 0);
}

// Several: all for reading, the last for writing.
TEST_F(VocabularyOptions, MayStandSeveralTimes) {
  writeFile("w.fi", octets("E0000001 20 0010 00 00'c' 3C00'x' FF"));  // The value c.
  const ToolProcess::Arguments both = {"--vocabulary", "v.fi", "--uri", "u",
                                       "--vocabulary", "w.fi", "--uri", "w"};
  ToolProcess::Arguments convert = {"convert", "a.fi", "b.fi"};
  convert.insert(convert.end(), both.begin(), both.end());
  EXPECT_EQ(run(convert), silent(0));
  EXPECT_EQ(readFile("b.fi"), octets("E0000001 20 1000 00'w' 7C00'a' 7800'b' 80 FF F0"));
  ToolProcess::Arguments diff = {"diff", "a.fi", "b.fi"};
  diff.insert(diff.end(), both.begin(), both.end());
  EXPECT_EQ(run(diff), silent(0));
  // The first URI is that of the first file, wherever they stand.
  EXPECT_EQ(run({"diff", "--uri", "u", "--uri", "w", "--vocabulary", "v.fi", "a.fi", "b.fi",
                 "--vocabulary", "w.fi"}),
            silent(0));
  // A document that refers to one gets it inside.
  EXPECT_EQ(run({"convert", "--vocabulary", "v.fi", "--uri", "u", "--vocabulary", "v.fi", "a.fi",
                 "c.fi"}),
            silent(0));
  EXPECT_EQ(run({"diff", "a.xml", "c.fi"}), silent(0));
}

TEST_F(VocabularyOptions, TellWhatIsMissing) {
  const std::string unknown =
      "a.fi: octet 9: Unknown external vocabulary - u "
      "(see --vocabulary and --uri)\n";
  EXPECT_EQ(run({"check", "a.fi"}), (Result{1, "", unknown}));
  EXPECT_EQ(run({"convert", "a.fi", "b.xml"}), (Result{1, "", unknown}));
  EXPECT_EQ(run({"stat", "a.fi"}), (Result{1, "", unknown}));
  EXPECT_EQ(run({"diff", "a.fi", "a.xml"}), (Result{1, "", unknown}));
  EXPECT_EQ(run({"events", "a.fi"}).err, unknown);
  EXPECT_EQ(run(with({"check", "a.fi"}, "v.fi", "U")), (Result{1, "", unknown}));
  EXPECT_EQ(files(), (Names{"a.fi", "a.xml", "v.fi"}));
}

// The wrong vocabulary is told by indexes that it does not have, or else not at all.
TEST_F(VocabularyOptions, CannotTellOneVocabularyFromAnother) {
  writeFile("w.fi", octets("E0000001 20 0080 00 00'c' 3C00'x' FF"));
  EXPECT_EQ(run(with({"check", "a.fi"}, "w.fi", "u")).status, 1);
  writeFile("w.fi", octets("E0000001 20 0083 01 00'x' 00'y' 00 0000 00 0001 00 FF"));
  EXPECT_EQ(run(with({"convert", "--no-declaration", "a.fi"}, "w.fi", "u")),
            (Result{0, "<x y='c'/>", ""}));
}

TEST_F(VocabularyOptions, AreRefusedWhereTheyMakeNoSense) {
  EXPECT_EQ(run({"check", "--vocabulary", "v.fi", "a.fi"}),
            misuse("--vocabulary v.fi: documents refer to it by a URI (see --uri)"));
  EXPECT_EQ(run({"diff", "--vocabulary", "v.fi", "a.fi", "a.fi"}),
            misuse("--vocabulary v.fi: documents refer to it by a URI (see --uri)"));
  EXPECT_EQ(run({"convert", "--vocabulary", "v.fi", "--vocabulary", "w.fi", "a.xml", "b.fi"}),
            misuse("--vocabulary v.fi: documents refer to it by a URI (see --uri)"));
  EXPECT_EQ(run({"check", "--uri", "u", "a.fi"}),
            misuse("--uri requires --vocabulary (see tavrin check --help)"));
  EXPECT_EQ(run({"check", "--vocabulary", "v.fi", "--uri", "u", "--uri", "w", "a.fi"}),
            misuse("--uri w: it belongs to no --vocabulary"));
  EXPECT_EQ(run({"check", "--vocabulary", "v.fi", "--uri", "u", "--vocabulary", "v.fi", "--uri",
                 "u", "a.fi"}),
            misuse("--uri u: it stands twice"));
  EXPECT_EQ(run(with({"check", "a.fi"}, "v.fi", "")), misuse("--uri: the URI is empty"));
  EXPECT_EQ(run(with({"check", "a.fi"}, "-", "u")),
            misuse("--vocabulary -: standard input may be a document, and no vocabulary"));
  EXPECT_EQ(run({"convert", "--vocabulary", "v.fi", "a.xml", "b.xml"}),
            misuse("--vocabulary without --uri: only a copy by the writer X891 begins with a "
                   "vocabulary"));
  EXPECT_EQ(run({"convert", "--vocabulary", "v.fi", "--to", "FI", "a.xml", "b.fi"}),
            misuse("--vocabulary without --uri: only a copy by the writer X891 begins with a "
                   "vocabulary"));
  EXPECT_EQ(run(with({"check", "a.fi"}, "missing.fi", "u")),
            misuse("missing.fi: No such file or directory"));
  EXPECT_EQ(run(with({"check", "a.fi"}, ".", "u")), misuse(".: Is a directory"));
  EXPECT_EQ(files(), (Names{"a.fi", "a.xml", "v.fi"}));
}

// XML text has no use for a vocabulary, so that one can be named for files of both encodings.
TEST_F(VocabularyOptions, AreNothingToText) {
  EXPECT_EQ(run(with({"check", "a.xml", "a.fi"}, "v.fi", "u")),
            (Result{0, "a.xml: well-formed\na.fi: well-formed\n", ""}));
  EXPECT_EQ(run(with({"convert", "--no-declaration", "a.xml"}, "v.fi", "u")),
            (Result{0, kCopy, ""}));
}

// The reader FI knows the tables of names and values.
TEST_F(VocabularyOptions, LetTheReaderFIRead) {
  EXPECT_EQ(run(with({"convert", "--no-declaration", "--from", "FI", "a.fi"}, "v.fi", "u")),
            (Result{0, kCopy, ""}));
}

TEST_F(VocabularyOptions, TellWhereAVocabularyIsBroken) {
  const struct {
    const char* what;
    std::string vocabulary;
    const char* message;
  } cases[] = {
      {"no document", "", "Not a Fast Infoset document (the input is empty)"},
      {"text", "<a/>", "octet 2: Not a Fast Infoset document"},
      {"cut off", octets("E0000001 20 0080 00 05'a'"), "octet 10: Unexpected end of document"},
      {"a million entries that do not come", octets("E0000001 20 0080 8FFF7F 00'a'"),
       "octet 12: Unexpected end of document"},
      {"a gigabyte that does not come", octets("E0000001 20 0080 00 603FFFFEBF 'a'"),
       "octet 14: Unexpected end of document"},
      {"four gigabytes", octets("E0000001 20 0080 00 60FFFFFEBE 'a'"),
       "octet 13: Literal longer than 1073741824 octets"},
      {"names without parts", octets("E0000001 20 0002 00 0005 00 FF"), ""},
      {"another vocabulary", octets("E0000001 20 1000 00'u' 3C00'a' FF"),
       "octet 9: The vocabulary is not complete: it refers to the external vocabulary u"},
      {"a name that is none", octets("E0000001 20 0080 00 01'a b' 3C00'a' FF"), ""},
  };
  for (const auto& [what, vocabulary, message] : cases) {
    SCOPED_TRACE(what);
    writeFile("w.fi", vocabulary);
    for (const ToolProcess::Arguments& arguments :
         {ToolProcess::Arguments{"vocabulary", "show", "w.fi"},
          ToolProcess::Arguments{"vocabulary", "header", "w.fi"},
          with({"check", "a.fi"}, "w.fi", "u"), with({"convert", "a.xml", "b.fi"}, "w.fi", "u")}) {
      const Result result = run(arguments);
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.out, "");
      if (*message != '\0') {
        EXPECT_EQ(result.err, "w.fi: " + std::string(message) + "\n");
      } else {
        EXPECT_TRUE(result.err.starts_with("w.fi")) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
      }
    }
  }
  EXPECT_EQ(files(), (Names{"a.fi", "a.xml", "v.fi", "w.fi"}));
}

// Whatever a vocabulary holds, there is a copy that comes back, or a refusal.
TEST_F(VocabularyOptions, DoNoHarmWithAnyVocabulary) {
  const std::string good = readFile("v.fi");
  for (std::size_t i = 0; i < good.size(); ++i) {
    for (const int change : {0x01, 0x10, 0x80, 0xFF}) {
      std::string bad = good;
      bad[i] = static_cast<char>(bad[i] ^ change);
      writeFile("w.fi", bad);
      const Result shown = run({"vocabulary", "show", "w.fi"});
      const Result copied = run(with({"convert", "--force", "a.xml", "b.fi"}, "w.fi", "u"));
      ASSERT_TRUE(shown.status == 0 || shown.status == 1) << i;
      ASSERT_EQ(copied.status, shown.status) << copied.err;
      if (copied.status != 0) continue;
      ASSERT_EQ(run(with({"diff", "a.xml", "b.fi"}, "w.fi", "u")), silent(0)) << i;
    }
  }
}
