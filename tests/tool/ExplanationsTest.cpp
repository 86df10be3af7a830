#include "HexOctets.h"
#include "Workplace.h"

namespace {

class Explanations : public Workplace {
 protected:
  /// What --explain shows below the line of a failure, of a file and of a pipe.
  void expect(const std::string& document, const std::string& place, const std::string& below) {
    writeFile("in", document);
    EXPECT_EQ(run({"check", "in"}), (Result{1, "", "in:" + place + "\n"}));
    EXPECT_EQ(run({"check", "--explain", "in"}), (Result{1, "", "in:" + place + "\n" + below}));
    EXPECT_EQ(run({"check", "--explain", "-"}, document),
              (Result{1, "", "-:" + place + "\n" + below}));
  }
};

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace

TEST_F(Explanations, ShowTheLine) {
  expect("<a>\n  <b></c>\n</a>", "2:8: mismatched tag: expected </b> of line 2",
         "     2 |   <b></c>\n"
         "       |        ^\n");
  expect("<a>\r\n<b>\r</c>", "3:3: mismatched tag: expected </b> of line 2",
         "     3 | </c>\n"
         "       |   ^\n");
  expect("<a>", "1:4: no element found: <a> of line 1 is not closed",
         "     1 | <a>\n"
         "       |    ^\n");
  expect("<a>\n", "2:1: no element found: <a> of line 1 is not closed",
         "     2 | \n"
         "       | ^\n");
}

TEST_F(Explanations, AreAlignedWhateverTheCharacters) {
  // Four columns for two wide characters, one for an accented one, none for a combining one.
  expect(
      "<a b='\xE6\x97\xA5\xE6\x9C\xAC\xC3\xA9"
      "e\xCC\x81'></c>",
      "1:16: mismatched tag: expected </a> of line 1",
      "     1 | <a b='\xE6\x97\xA5\xE6\x9C\xAC\xC3\xA9"
      "e\xCC\x81'></c>\n"
      "       |                 ^\n");
  expect("<a>\t\x7F</c>", "1:8: mismatched tag: expected </a> of line 1",
         "     1 | <a>\\t\\x7F</c>\n"
         "       |            ^\n");
  expect("<a>\xFFxy</a>", "1:4: not well-formed (invalid token)",
         "     1 | <a>\\xFFxy</a>\n"
         "       |    ^\n");
}

TEST_F(Explanations, ReadTheEncodingOfTheDocument) {
  expect("<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE4</b>",
         "2:7: mismatched tag: expected </a> of line 2",
         "     2 | <a>\xC3\xA4</b>\n"
         "       |       ^\n");
  // The declaration outweighs a byte order mark.
  expect("\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE4</b>",
         "2:7: mismatched tag: expected </a> of line 2",
         "     2 | <a>\xC3\xA4</b>\n"
         "       |       ^\n");
  // Octets 0A and 0D alone end no line here.
  const std::string wide = octets("FFFE 3C00 6100 3E00 0A0D 0D00 0A00 3C00 2F00 6200 3E00");
  expect(wide, "2:3: mismatched tag: expected </a> of line 1",
         "     2 | </b>\n"
         "       |   ^\n");
}

TEST_F(Explanations, ShowThePartOfALongLine) {
  const std::string front = "<a>" + repeated("<b/>", 100) + "</c>";
  expect(front + repeated("<d/>", 100), "1:406: mismatched tag: expected </a> of line 1",
         "     1 | ..." + repeated("<b/>", 100).substr(400 - 42) + "</c>" + repeated("<d/>", 4) +
             "<d...\n       | " + std::string(47, ' ') + "^\n");
  expect(front, "1:406: mismatched tag: expected </a> of line 1",
         "     1 | ..." + repeated("<b/>", 100).substr(400 - 63) + "</c>\n       | " +
             std::string(68, ' ') + "^\n");
  expect("</c>" + repeated("<d/>", 100), "1:2: not well-formed (invalid token)",
         "     1 | </c>" + repeated("<d/>", 15) + "<d/...\n       |  ^\n");
}

// Of what was read only the last part is kept, and of the rest lines and characters are counted.
TEST_F(Explanations, ReachTheEndOfLargeDocuments) {
  std::string lines = "<a>";
  for (int i = 0; i < 1000000; ++i) lines += "\r\n<b>\xC3\xA9</b>";
  expect(lines + "</c>", "1000001:11: mismatched tag: expected </a> of line 1",
         "1000001 | <b>\xC3\xA9</b></c>\n"
         "        |           ^\n");
  const std::string line = "<a>" + repeated("<b>\xC3\xA9</b>", 1000000);
  expect(line + "</c>", "1:8000006: mismatched tag: expected </a> of line 1",
         "     1 | ..." + repeated("<b>\xC3\xA9</b>", 8).substr(72 - 71) + "</c>\n       | " +
             std::string(68, ' ') + "^\n");
}

TEST_F(Explanations, ShowOctetsOfFastInfoset) {
  expect(octets("E0 00 00 01 00 3C 00 'a' 3C 00 'b' 3C 00 '1' 82 01 'text' FF"),
         " octet 14: Invalid name \"1\"",
         "  in /a/b\n"
         "       1  E0 00 00 01 00 3C 00 61  3C 00 62 3C 00 31 82 01  .....<.a<.b<.1..\n"
         "                                                  ^^\n"
         "      17  74 65 78 74 FF                                    text.\n");
  expect(octets("E0 00 00 01 00"), " octet 5: Unexpected end of document",
         "  outside of the root element\n"
         "       1  E0 00 00 01 00                                    .....\n"
         "                      ^^\n");
  expect(octets("E0 00 00 01 00 3C 00 'a' FF  E0 00 00 01 00 3C 00 'b' 00"),
         " octet 18 (document 2): Unexpected end of document",
         "  in /b/b\n"
         "       1  E0 00 00 01 00 3C 00 61  FF E0 00 00 01 00 3C 00  .....<.a......<.\n"
         "      17  62 00                                             b.\n"
         "             ^^\n");
}

TEST_F(Explanations, AreBoundedForDeepDocuments) {
  constexpr int kDepth = 100000;
  std::string document = octets("E0 00 00 01 00 3C 00 'a'");
  document.append(kDepth - 1, '\0');
  document += octets("3C 00 '1'");
  const std::string shown = run({"check", "--explain", "-"}, document).err;
  EXPECT_EQ(shown.substr(0, shown.find('\n') + 1),
            "-: octet " + std::to_string(document.size()) + ": Invalid name \"1\"\n");
  EXPECT_NE(shown.find("\n  in " + repeated("/a", 1000) + "/... (100000 deep)\n"),
            std::string::npos);
}

TEST_F(Explanations, ShowNothingOfAnEntity) {
  writeFile("in", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]>\n<a>&e;</a>");
  writeFile("e.ent", "\n<b>");
  const Result result = run({"check", "--explain", "--entities", "in"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  EXPECT_NE(result.err.find("(in the entity e, \"e.ent\")"), std::string::npos) << result.err;
}

TEST_F(Explanations, AreOfEveryCommand) {
  writeFile("in", "<a></b>");
  const std::string shown =
      "in:1:6: mismatched tag: expected </a> of line 1\n"
      "     1 | <a></b>\n"
      "       |      ^\n";
  EXPECT_EQ(run({"convert", "--explain", "in", "out.fi"}), (Result{1, "", shown}));
  EXPECT_EQ(run({"stat", "--explain", "in"}), (Result{1, "", shown}));
  EXPECT_EQ(run({"events", "--explain", "in"}).err, shown);
  EXPECT_EQ(run({"diff", "--explain", "in", "in"}), (Result{1, "", shown + shown}));
}

// The failure of the copy, not of the reading.
TEST_F(Explanations, ShowWhereACopyFails) {
  writeFile("in.fi", octets("E0 00 00 01 00 3C 00 'a' 3C 00 'b' C8 00 'e' FF FF"));
  EXPECT_EQ(run({"convert", "--explain", "in.fi", "out.xml"}),
            (Result{1, "",
                    "in.fi: octet 14: The entity \"e\" is not declared\n"
                    "  in /a/b\n"
                    "       1  E0 00 00 01 00 3C 00 61  3C 00 62 C8 00 65 FF FF  "
                    ".....<.a<.b..e..\n"
                    "                                                  ^^\n"}));
}

TEST_F(Explanations, TellKindsOfFiles) {
  const auto message = [&](const std::string& document) {
    const std::string line = run({"check", "-"}, document).err;
    return line.substr(0, line.size() - 1);
  };
  const std::string neither = ", and neither XML nor Fast Infoset";
  EXPECT_EQ(message("PK\x03\x04"), "-: This is a zip file, as those of offices are" + neither);
  EXPECT_EQ(message("$EXI\x80"), "-: This is an EXI document" + neither);
  EXPECT_EQ(message("%PDF-1.7\n"), "-: This is a PDF document" + neither);
  EXPECT_EQ(message(" {\"a\": 1}"), "-: This is JSON" + neither);
  EXPECT_EQ(message("BZh91AY&SY"), "-: This is a bzip2 file" + neither);
  EXPECT_EQ(message("[[1]]"), "-: This is JSON" + neither);
  EXPECT_EQ(message("<!doctype HTML><p></p>"), "-:1:1: syntax error (this may be HTML)");
  EXPECT_EQ(message("<HTML><br></HTML>"),
            "-:1:13: mismatched tag: expected </br> of line 1 (this may be HTML)");
  EXPECT_EQ(message(""), "-:1:1: no element found (the input is empty)");
  EXPECT_EQ(message("{x}"), "-:1:1: not well-formed (invalid token)");
  EXPECT_EQ(run({"check", "-"}, "<!DOCTYPE html><html/>"), (Result{0, "-: well-formed\n", ""}));
}

// Whatever reads it, at the same place: none.
TEST_F(Explanations, TellKindsOfFilesToAllCommands) {
  writeFile("in.png", "\x89PNG\r\n");
  writeFile("in.xml", "<a/>");
  writeFile("empty", "");
  const Result image{1, "", "in.png: This is a PNG image, and neither XML nor Fast Infoset\n"};
  for (const ToolProcess::Arguments& arguments :
       {ToolProcess::Arguments{"check", "in.png"},
        {"check", "--from", "X891", "in.png"},
        {"check", "--from", "Expat", "in.png"},
        {"check", "--explain", "in.png"},
        {"get", "//a", "in.png"},
        {"convert", "in.png", "out.fi"},
        {"vocabulary", "show", "in.png"},
        {"vocabulary", "header", "-o", "out.h", "in.png"},
        {"check", "--vocabulary", "in.png", "--uri", "urn:v", "in.xml"}}) {
    EXPECT_EQ(run(arguments), image) << arguments[0];
  }
  const Result empty{1, "", "empty: Not a Fast Infoset document (the input is empty)\n"};
  EXPECT_EQ(run({"vocabulary", "show", "empty"}), empty);
  EXPECT_EQ(run({"vocabulary", "header", "empty"}), empty);
  EXPECT_EQ(run({"check", "--from", "X891", "empty"}), empty);
  EXPECT_EQ(files(), (Names{"empty", "in.png", "in.xml"}));
}

// As head does: whoever has seen enough closes the pipe.
TEST_F(Explanations, AreNotGivenToWhoeverClosedThePipe) {
  writeFile("in.xml", "<a>" + repeated("<b/>", 100000) + "</a>");
  for (const std::string command : {"convert", "events", "check", "stat"}) {
    SCOPED_TRACE(command);
    int ends[2];
    require(pipe2(ends, O_CLOEXEC), "pipe2");
    close(ends[0]);
    EXPECT_EQ(run({command, "in.xml"}, "", [&] { dup2(ends[1], STDOUT_FILENO); }), silent(2));
    close(ends[1]);
  }
}
