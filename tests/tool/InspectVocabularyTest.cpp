#include <Tavrin/OwnedVocabulary.h>

#include <fstream>

#include "InspectSupport.h"

namespace {

using InspectVocabulary = Inspecting;

}  // namespace

TEST_F(InspectVocabulary, CannotKnowTheEntriesOfAnExternalVocabulary) {
  expectFailure(octets("E0 00 00 01 20 10 80 02 'u:v' 00 00 'a' 05 92 01 'text' 3C 82 A0 FF F0"),
                kHeader +
                    R"(00000004: 20                       # document (C.2): initial vocabulary
00000005: 10 80                    #   initial vocabulary (C.2.5)
00000007: 02 75 3a 76              #     external vocabulary (C.22): "u:v"
# ! octet 11: Unknown external vocabulary - u:v (see --vocabulary and --uri)
0000000b: 00                       #     LOCAL NAME (C.21): 1 item
0000000c: 00 61                    #       local name (C.22): "a" -> LOCAL NAME[1] behind the external vocabulary
0000000e: 05                       #   element (C.3, C.18, C.27) = ELEMENT NAME[6]  /?
0000000f: 92 01 74 65 78 74        #     characters (C.7, C.15, C.20, C.24): "text" -> CONTENT CHARACTER CHUNK[1] behind the external vocabulary  /?
00000015: 3c                       #     element (C.3, C.18), with a literal name
00000016: 82                       #       local name (C.13, C.25) = LOCAL NAME[3] of or behind the external vocabulary -> ELEMENT NAME[1] behind the external vocabulary  /?/?
00000017: a0                       #       characters (C.7, C.15, C.28) = CONTENT CHARACTER CHUNK[1] of or behind the external vocabulary  /?/?
00000018: ff                       #     end of the element (C.3.8)  /?/? and of  /?
00000019: f0                       # end of the document (C.2.12)
)",
                "octet 11: Unknown external vocabulary - u:v (see --vocabulary and --uri)");
}

TEST_F(InspectVocabulary, ShowsTheEntriesOfAVocabularyThatItIsGiven) {
  Tavrin::OwnedVocabulary vocabulary;
  vocabulary.addElementName("u", "a", "p:a");
  vocabulary.addElementName("", "b");
  vocabulary.addAttributeName("", "b");
  vocabulary.addAttributeValue("x");
  vocabulary.addCharacters(std::string(63, 'c') + "\xC3\xA4");  // Longer than is shown of it.
  std::ofstream file(path("v.fi"), std::ios::binary);
  vocabulary.write(file);
  file.close();
  writeFile("other.fi", octets("E0 00 00 01 20 00 80 00 00 'w' 3C 80 FF"));
  const std::string document = octets(
      "E0 00 00 01 20 10 80 02 'u:v' 00 00 'd' 78 CF 81 81 F0 00 00 80 F0 01 A0 F0 3C 82 FF F0");
  const std::string text =
      kHeader + R"(00000004: 20                       # document (C.2): initial vocabulary
00000005: 10 80                    #   initial vocabulary (C.2.5)
00000007: 02 75 3a 76              #     external vocabulary (C.22): "u:v"
0000000b: 00                       #     LOCAL NAME (C.21): 1 item
0000000c: 00 64                    #       local name (C.22): "d" -> LOCAL NAME[3]
0000000e: 78                       #   element (C.3), with namespaces, with attributes
0000000f: cf                       #     namespace attribute (C.12)
00000010: 81                       #       prefix (C.13, C.25): "p" = PREFIX[2]
00000011: 81                       #       namespace name (C.13, C.25): "u" = NAMESPACE NAME[2]
00000012: f0                       #     end of the namespace attributes (C.3.4)
00000013: 00                       #     name (C.18, C.27) = ELEMENT NAME[1]  /p:a
00000014: 00                       #     attribute (C.4, C.17, C.25) = ATTRIBUTE NAME[1]  /p:a/@b
00000015: 80                       #       value (C.14, C.26): "x" = ATTRIBUTE VALUE[1]
00000016: f0                       #     end of the attributes (C.3.6)
00000017: 01                       #     element (C.3, C.18, C.27) = ELEMENT NAME[2]  /p:a/b
)";
  const std::string chunk(63, 'c');
  const std::string rest =
      "00000018: a0                       #       characters (C.7, C.15, C.28): \"" + chunk +
      "\"... = CONTENT CHARACTER CHUNK[1]  /p:a/b\n" +
      R"(00000019: f0                       #     end of the element (C.3.8)  /p:a/b
0000001a: 3c                       #     element (C.3, C.18), with a literal name
0000001b: 82                       #       local name (C.13, C.25): "d" = LOCAL NAME[3] -> ELEMENT NAME[3]  /p:a/d
0000001c: ff                       #     end of the element (C.3.8)  /p:a/d and of  /p:a
0000001d: f0                       # end of the document (C.2.12)
)";
  const ToolProcess::Arguments options = {"--vocabulary", "other.fi", "--uri", "u:w",
                                          "--vocabulary", "v.fi",     "--uri", "u:v"};
  expectText(document, text + rest, options);
  ToolProcess::Arguments withTables = options;
  withTables.emplace_back("--tables");
  expectText(document, text + rest + R"(# PREFIX
#   2  "p"
# NAMESPACE NAME
#   2  "u"
# LOCAL NAME
#   1  "a"
#   2  "b"
#   3  "d"
# ATTRIBUTE VALUE
#   1  "x"
# CONTENT CHARACTER CHUNK
#   1  ")" + chunk + R"("...
# ELEMENT NAME
#   1  "p:a"  "u"
#   2  "b"
#   3  "d"
# ATTRIBUTE NAME
#   1  "b"
)",
             withTables);
}

TEST_F(InspectVocabulary, HasTheLimitsOfOtherCommands) {
  writeFile("in.fi", octets("E0 00 00 01 00 3C 00 'a' 3C 00 'b' FF F0"));
  const Result result = run({"inspect", "--limit", "maximum-depth=1", "in.fi"});
  EXPECT_EQ(1, result.status);
  const std::string message =
      "octet 9: Elements nested deeper than 1 (see --limit maximum-depth)\n";
  EXPECT_EQ("in.fi: " + message, result.err);
  EXPECT_NE(std::string::npos, result.out.find("# ! " + message));
}
