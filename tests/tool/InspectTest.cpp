#include "InspectSupport.h"

namespace {

using Inspect = Inspecting;

}  // namespace

TEST_F(Inspect, TellsOfNamesTextAndTables) {
  const std::string text = kHeader +
                           R"(00000004: 00                       # document (C.2)
00000005: 78                       #   element (C.3), with namespaces, with attributes
00000006: cf                       #     namespace attribute (C.12)
00000007: 00 70                    #       prefix (C.13, C.22): "p" -> PREFIX[2]
00000009: 00 75                    #       namespace name (C.13, C.22): "u" -> NAMESPACE NAME[2]
0000000b: f0                       #     end of the namespace attributes (C.3.4)
0000000c: 3f                       #     name (C.18), with a literal name
0000000d: 81                       #       prefix (C.13, C.25): "p" = PREFIX[2]
0000000e: 81                       #       namespace name (C.13, C.25): "u" = NAMESPACE NAME[2]
0000000f: 00 61                    #       local name (C.13, C.22): "a" -> LOCAL NAME[1] -> ELEMENT NAME[1]  /p:a
00000011: 78                       #     attribute (C.4, C.17), with a literal name
00000012: 00 62                    #       local name (C.13, C.22): "b" -> LOCAL NAME[2] -> ATTRIBUTE NAME[1]  /p:a/@b
00000014: 40 31                    #       value (C.14, C.19, C.23): "1" -> ATTRIBUTE VALUE[1]
00000016: f0                       #     end of the attributes (C.3.6)
00000017: 40                       #     element (C.3, C.18, C.27) = ELEMENT NAME[1], with attributes  /p:a/p:a
00000018: 00                       #       attribute (C.4, C.17, C.25) = ATTRIBUTE NAME[1]  /p:a/p:a/@b
00000019: 80                       #         value (C.14, C.26): "1" = ATTRIBUTE VALUE[1]
0000001a: ff                       #     end of the attributes and of the element (C.3.6, C.3.8)  /p:a/p:a
0000001b: 92 01 74 65 78 74        #     characters (C.7, C.15, C.20, C.24): "text" -> CONTENT CHARACTER CHUNK[1]  /p:a
00000021: 7c                       #     element (C.3, C.18), with a literal name, with attributes
00000022: 80                       #       local name (C.13, C.25): "a" = LOCAL NAME[1] -> ELEMENT NAME[2]  /p:a/a
00000023: 78                       #       attribute (C.4, C.17), with a literal name
00000024: 00 63                    #         local name (C.13, C.22): "c" -> LOCAL NAME[3] -> ATTRIBUTE NAME[2]  /p:a/a/@c
00000026: ff                       #         value (C.14, C.26): ""
00000027: f0                       #       end of the attributes (C.3.6)
00000028: a0                       #       characters (C.7, C.15, C.28): "text" = CONTENT CHARACTER CHUNK[1]  /p:a/a
00000029: e2                       #       comment (C.8)  /p:a/a
0000002a: 00 63                    #         content (C.14, C.19, C.23): "c"
0000002c: ff                       #     end of the element (C.3.8)  /p:a/a and of  /p:a
0000002d: f0                       # end of the document (C.2.12)
)";
  const std::string document = octets(
      "E0 00 00 01 00 78 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' 78 00 'b' 40 '1' F0 40 00 80 FF 92 01 "
      "'text' 7C 80 78 00 'c' FF F0 A0 E2 00 'c' FF F0");
  expectText(document, text);
  expectText(document,
             text +
                 R"(# PREFIX
#   2  "p"
# NAMESPACE NAME
#   2  "u"
# LOCAL NAME
#   1  "a"
#   2  "b"
#   3  "c"
# ATTRIBUTE VALUE
#   1  "1"
# CONTENT CHARACTER CHUNK
#   1  "text"
# ELEMENT NAME
#   1  "p:a"  "u"
#   2  "a"
# ATTRIBUTE NAME
#   1  "b"
#   2  "c"
)",
             {"--tables"});
}

TEST_F(Inspect, TellsOfWhatComesBeforeTheElement) {
  expectText(
      octets(
          "E0 00 00 01 5F 00 01 'id' 01 0001 C2 00 'n' 00 's' F0 D1 00 'e' 80 80 80 F0 04 'UTF-8' "
          "01 02 '1.0' C7 80 80 E1 00 'p' 40 'd' F0 E2 00 'c' 3C 00 'a' CB 00 'x' 80 80 C8 82 FF"),
      kHeader +
          R"(00000004: 5f                       # document (C.2): additional data, notations, unparsed entities, character encoding scheme, standalone, version
00000005: 00                       #   additional data (C.21): 1 item
00000006: 01 69 64                 #     identifier (C.22): "id"
00000009: 01 00 01                 #     data (C.22): "\u0000\u0001"
0000000c: c2                       #   notation (C.2.6, C.11)
0000000d: 00 6e                    #     name (C.13, C.22): "n" -> OTHER NCNAME[1]
0000000f: 00 73                    #     system identifier (C.13, C.22): "s" -> OTHER URI[1]
00000011: f0                       #   end of the notations (C.2.6)
00000012: d1                       #   unparsed entity (C.2.7, C.10)
00000013: 00 65                    #     name (C.13, C.22): "e" -> OTHER NCNAME[2]
00000015: 80                       #     system identifier (C.13, C.25): "s" = OTHER URI[1]
00000016: 80                       #     public identifier (C.13, C.25): "s" = OTHER URI[1]
00000017: 80                       #     notation name (C.13, C.25): "n" = OTHER NCNAME[1]
00000018: f0                       #   end of the unparsed entities (C.2.7)
00000019: 04 55 54 46 2d 38        #   character encoding scheme (C.22): "UTF-8"
0000001f: 01                       #   standalone (C.2.9): yes
00000020: 02 31 2e 30              #   version (C.2.10, C.14, C.19, C.23): "1.0"
00000024: c7                       #   document type declaration (C.9)
00000025: 80                       #     system identifier (C.13, C.25): "s" = OTHER URI[1]
00000026: 80                       #     public identifier (C.13, C.25): "s" = OTHER URI[1]
00000027: e1                       #     processing instruction (C.5)
00000028: 00 70                    #       target (C.13, C.22): "p" -> OTHER NCNAME[3]
0000002a: 40 64                    #       content (C.14, C.19, C.23): "d" -> OTHER STRING[1]
0000002c: f0                       #   end of the document type declaration (C.9)
0000002d: e2                       #   comment (C.8)
0000002e: 00 63                    #     content (C.14, C.19, C.23): "c"
00000030: 3c                       #   element (C.3, C.18), with a literal name
00000031: 00 61                    #     local name (C.13, C.22): "a" -> LOCAL NAME[1] -> ELEMENT NAME[1]  /a
00000033: cb                       #     unexpanded entity reference (C.6)  /a
00000034: 00 78                    #       name (C.13, C.22): "x" -> OTHER NCNAME[4]
00000036: 80                       #       system identifier (C.13, C.25): "s" = OTHER URI[1]
00000037: 80                       #       public identifier (C.13, C.25): "s" = OTHER URI[1]
00000038: c8                       #     unexpanded entity reference (C.6)  /a
00000039: 82                       #       name (C.13, C.25): "p" = OTHER NCNAME[3]
0000003a: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the document
)");
}

TEST_F(Inspect, TellsOfAnInitialVocabulary) {
  expectText(
      octets("E0 00 00 01 20 0C 83 00 02 'abc' 00 04 'urn:u' 01 00 'a' 00 'b' 00 00 00 00 00 01 40 "
             "00 20 F0 1B F0 88 3C 1B 8C 7D ABCD FF"),
      kHeader +
          R"(00000004: 20                       # document (C.2): initial vocabulary
00000005: 0c 83                    #   initial vocabulary (C.2.5)
00000007: 00                       #     RESTRICTED ALPHABET (C.21): 1 item
00000008: 02 61 62 63              #       restricted alphabet (C.22): "abc" -> RESTRICTED ALPHABET[16]
0000000c: 00                       #     ENCODING ALGORITHM (C.21): 1 item
0000000d: 04 75 72 6e 3a 75        #       encoding algorithm (C.22): "urn:u" -> ENCODING ALGORITHM[32]
00000013: 01                       #     LOCAL NAME (C.21): 2 items
00000014: 00 61                    #       local name (C.22): "a" -> LOCAL NAME[1]
00000016: 00 62                    #       local name (C.22): "b" -> LOCAL NAME[2]
00000018: 00                       #     ELEMENT NAME (C.21): 1 item
00000019: 00                       #       name surrogate (C.16)
0000001a: 00                       #         local name (C.16, C.25): "a" = LOCAL NAME[1] -> ELEMENT NAME[1]
0000001b: 00                       #     ATTRIBUTE NAME (C.21): 1 item
0000001c: 00                       #       name surrogate (C.16)
0000001d: 01                       #         local name (C.16, C.25): "b" = LOCAL NAME[2] -> ATTRIBUTE NAME[1]
0000001e: 40                       #   element (C.3, C.18, C.27) = ELEMENT NAME[1], with attributes  /a
0000001f: 00                       #     attribute (C.4, C.17, C.25) = ATTRIBUTE NAME[1]  /a/@b
00000020: 20 f0 1b                 #       value (C.14, C.19, C.23, C.29), restricted alphabet 16: "abc"
00000023: f0                       #     end of the attributes (C.3.6)
00000024: 88 3c 1b                 #     characters (C.7, C.15, C.20, C.24, C.29), restricted alphabet 16: "abc"  /a
00000027: 8c 7d ab cd              #     characters (C.7, C.15, C.20, C.24, C.29), algorithm 32 "urn:u": ABCD  /a
0000002b: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the document
)");
}

TEST_F(Inspect, DecodesValuesOfAllFormats) {
  expectText(
      octets("E0 00 00 01 00 3C 00 'a' 95 0041 88 01 12C5 98 06 02 2003A02A03 8C 0A 01 0001FFFE "
             "8C 0E 01 80000000 8C 12 05 FFFFFFFFFFFFFFFF 8C 14 1A 8C 1A 0D "
             "3DCCCCCD7FC000007F800000FF800000 8C 1E 05 3FB999999999999A 8C 02 00 0102FF 8C 06 00 "
             "FF00FE 8C 22 0D F81D4FAE7DEC11D0A76500A0C91E6BF6 9C 24 '<' FF"),
      kRoot +
          R"(00000008: 95 00 41                 #     characters (C.7, C.15, C.20, C.24), UTF-16: "A" -> CONTENT CHARACTER CHUNK[1]  /a
0000000b: 88 01 12 c5              #     characters (C.7, C.15, C.20, C.24, C.29, 9.1), restricted alphabet 1: "12.5"  /a
0000000f: 98 06 02 20 03 a0 2a 03  #     characters (C.7, C.15, C.20, C.24, C.29, 9.2), restricted alphabet 2: "2003-02-03" -> CONTENT CHARACTER CHUNK[2]  /a
00000017: 8c 0a 01 00 01 ff fe     #     characters (C.7, C.15, C.20, C.24, C.29, 10.4), algorithm 3 short: 1 -2  /a
0000001e: 8c 0e 01 80 00 00 00     #     characters (C.7, C.15, C.20, C.24, C.29, 10.5), algorithm 4 int: -2147483648  /a
00000025: 8c 12 05                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.6), algorithm 5 long: -1  /a
00000028: ff ff ff ff ff ff ff ff
00000030: 8c 14 1a                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.7), algorithm 6 boolean: true false true  /a
00000033: 8c 1a 0d                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.8), algorithm 7 float: 0.1 NaN INF -INF  /a
00000036: 3d cc cc cd 7f c0 00 00 7f 80 00 00 ff 80 00 00
00000046: 8c 1e 05                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.9), algorithm 8 double: 0.1  /a
00000049: 3f b9 99 99 99 99 99 9a
00000051: 8c 02 00 01 02 ff        #     characters (C.7, C.15, C.20, C.24, C.29, 10.2), algorithm 1 hexadecimal: 0102FF  /a
00000057: 8c 06 00 ff 00 fe        #     characters (C.7, C.15, C.20, C.24, C.29, 10.3), algorithm 2 base64: /wD+  /a
0000005d: 8c 22 0d                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.10), algorithm 9 uuid: f81d4fae-7dec-11d0-a765-00a0c91e6bf6  /a
00000060: f8 1d 4f ae 7d ec 11 d0 a7 65 00 a0 c9 1e 6b f6
00000070: 9c 24 3c                 #     characters (C.7, C.15, C.20, C.24, C.29, 10.11), algorithm 10 cdata: "<" -> CONTENT CHARACTER CHUNK[3]  /a
00000073: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the document
)");
}

// Lines of a long value end between two values, and between two characters.
TEST_F(Inspect, ShowsLongValuesInPieces) {
  const std::string text =
      "0123456789abcde\xC3\xA4 0123456789abcdef0123456789abcdef0123456789abcdef";
  expectText(
      octets("E0 00 00 01 00 3C 00 'a' 82 3F '" + text + "' FF"),
      kRoot +
          R"(00000008: 82 3f                    #     characters (C.7, C.15, C.20, C.24), 66 octets  /a
0000000a: 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65     #       "0123456789abcde"
00000019: c3 a4 20 30 31 32 33 34 35 36 37 38 39 61 62 63  #       "ä 0123456789abc"
00000029: 64 65 66 30 31 32 33 34 35 36 37 38 39 61 62 63  #       "def0123456789abc"
00000039: 64 65 66 30 31 32 33 34 35 36 37 38 39 61 62 63  #       "def0123456789abc"
00000049: 64 65 66                 #       "def"
0000004c: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the document
)");
  std::string doubles;
  for (int i = 0; i < 9; ++i) doubles += "3FF8000000000000";
  const std::string two = " 3f f8 00 00 00 00 00 00 3f f8 00 00 00 00 00 00  #       1.5 1.5\n";
  expectText(
      octets("E0 00 00 01 00 3C 00 'a' 8C 1E 45 " + doubles + " FF"),
      kRoot +
          "00000008: 8c 1e 45                 #     characters (C.7, C.15, C.20, C.24, C.29, "
          "10.9), algorithm 8 double, 72 octets  /a\n"
          "0000000b:" +
          two + "0000001b:" + two + "0000002b:" + two + "0000003b:" + two +
          "0000004b: 3f f8 00 00 00 00 00 00  #       1.5\n"
          "00000053: ff                       #   end of the element (C.3.8, C.2.12)  /a and "
          "of the document\n");
}

TEST_F(Inspect, ShowsSeveralDocuments) {
  expectText(
      "<?xml version='1.0' encoding='finf'?>" + octets("E0 00 00 01 00 3C 00 'a' F0 F0") +
          octets("E0 00 00 01 00 3C 00 'b' FF"),
      R"(00000000: 3c 3f 78 6d 6c 20 76 65 72 73 69 6f 6e 3d 27 31  # XML declaration (12.3): "<?xml version='1"
00000010: 2e 30 27 20 65 6e 63 6f 64 69 6e 67 3d 27 66 69  # ".0' encoding='fi"
00000020: 6e 66 27 3f 3e           # "nf'?>"
00000025: e0 00 00 01              # Fast Infoset (12.6, 12.7), version 1 of the standard
00000029: 00                       # document (C.2)
0000002a: 3c                       #   element (C.3, C.18), with a literal name
0000002b: 00 61                    #     local name (C.13, C.22): "a" -> LOCAL NAME[1] -> ELEMENT NAME[1]  /a
0000002d: f0                       #   end of the element (C.3.8)  /a
0000002e: f0                       # end of the document (C.2.12)
# document 2
0000002f: e0 00 00 01              # Fast Infoset (12.6, 12.7), version 1 of the standard
00000033: 00                       # document (C.2)
00000034: 3c                       #   element (C.3, C.18), with a literal name
00000035: 00 62                    #     local name (C.13, C.22): "b" -> LOCAL NAME[1] -> ELEMENT NAME[1]  /b
00000037: ff                       #   end of the element (C.3.8, C.2.12)  /b and of the document
)");
}

// --- What is broken ---

TEST_F(Inspect, ShowsABrokenDocumentUpToTheBreakAndTheRestAsItIs) {
  expectFailure(
      octets("E0 00 00 01 00 3C 00 'a' 92 01 'text' C0 'and much that follows' 00 FF"),
      kRoot +
          R"(00000008: 92 01 74 65 78 74        #     characters (C.7, C.15, C.20, C.24): "text" -> CONTENT CHARACTER CHUNK[1]  /a
# ! octet 15: expected an element, characters, an unexpanded entity reference, a processing instruction, a comment or the end of the element (C.3.7), but found c0
0000000e: c0 61 6e 64 20 6d 75 63 68 20 74 68 61 74 20 66  # .and much that f
0000001e: 6f 6c 6c 6f 77 73 00 ff  # ollows..
)",
      "octet 15: expected an element, characters, an unexpanded entity reference, a "
      "processing instruction, a comment or the end of the element (C.3.7), but found c0");
}

TEST_F(Inspect, ShowsWhatIsThereOfADocumentThatIsCutOff) {
  expectFailure(
      octets("E0 00 00 01 00 3C 00 'a' 92 01 'te'"),
      kRoot +
          R"(00000008: 92 01                    #     characters (C.7, C.15, C.20, C.24), 4 octets -> CONTENT CHARACTER CHUNK[1]  /a
0000000a: 74 65                    #       "te"
# ! octet 13: expected 2 more octets, but the file ends
)",
      "octet 13: expected 2 more octets, but the file ends");
  expectFailure(octets("E0 00 00 01 00 3C 00 'a' 92"),
                kRoot + R"(# ! octet 10: expected a length, but the file ends
00000008: 92                       # .
)",
                "octet 10: expected a length, but the file ends");
}

TEST_F(Inspect, ShowsWhatIsNoFastInfosetAsItIs) {
  const std::string expected =
      "expected a Fast Infoset document: the octets e0 00 00 01 (12.6), or before them an XML "
      "declaration of the encoding finf (12.3), but ";
  expectFailure("", "# ! octet 1: " + expected + "the file ends\n",
                "octet 1: " + expected + "the file ends");
  expectFailure(
      "<a>\n</a>",
      "# ! octet 2: " + expected + "found 61\n" + "00000000: 3c 61 3e 0a 3c 2f 61 3e  # <a>.</a>\n",
      "octet 2: " + expected + "found 61");
  expectFailure(octets("E0 00 00 01 00 3C 00 'a' FF 0A"),
                kRoot +
                    "00000008: ff                       #   end of the element (C.3.8, C.2.12)  /a "
                    "and of the document\n# document 2\n# ! octet 10: " +
                    expected + "found 0a\n00000009: 0a                       # .\n",
                "octet 10: " + expected + "found 0a");
}

// The octets can be followed, but not what they say.
TEST_F(Inspect, TellsWhereTheReaderRefusesWhatIsSaid) {
  expectFailure(
      octets("E0 00 00 01 00 3C 00 'a' 80 01 E2 00 'c' FF"),
      kRoot +
          R"(00000008: 80 01                    #     characters (C.7, C.15, C.20, C.24): "\u0001"  /a
# ! octet 10: Invalid character U+0001
0000000a: e2                       #     comment (C.8)  /a
0000000b: 00 63                    #       content (C.14, C.19, C.23): "c"
0000000d: ff                       #   end of the element (C.3.8, C.2.12)  /a and of the document
)",
      "octet 10: Invalid character U+0001");
}

TEST_F(Inspect, TellsOfNumbersAtTheBordersOfTheirForms) {
  const struct {
    const char* octets;
    const char* message;
  } cases[] = {
      // Element names, C.27.
      {"00", "6: expected an index of ELEMENT NAME up to 0, but found 1"},
      {"1F", "6: expected an index of ELEMENT NAME up to 0, but found 32"},
      {"2000", "6: expected an index of ELEMENT NAME up to 0, but found 33"},
      {"27FF", "6: expected an index of ELEMENT NAME up to 0, but found 2080"},
      {"280000", "6: expected an index of ELEMENT NAME up to 0, but found 2081"},
      {"2FFFFF", "6: expected an index of ELEMENT NAME up to 0, but found 526368"},
      {"30000000", "6: expected an index of ELEMENT NAME up to 0, but found 526369"},
      {"300FFFFF", "6: expected an index of ELEMENT NAME up to 0, but found 1574944"},
      {"30100000", "7: expected padding of zero bits (C.27), but found 10"},
      {"31", "6: expected the name of an element (C.27), but found 31"},
      // Chunks, C.28.
      {"3C 00 'a' AF", "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 16"},
      {"3C 00 'a' B000", "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 17"},
      {"3C 00 'a' B3FF", "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 1040"},
      {"3C 00 'a' B40000",
       "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 1041"},
      {"3C 00 'a' B7FFFF",
       "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 263184"},
      {"3C 00 'a' B8000000",
       "9: expected an index of CONTENT CHARACTER CHUNK up to 0, but found 263185"},
      {"3C 00 'a' B9", "9: expected an index (C.28), but found b9"},
      // Identifying strings and attribute names, C.25.
      {"3C BF", "7: expected an index of LOCAL NAME up to 0, but found 64"},
      {"3C C000", "7: expected an index of LOCAL NAME up to 0, but found 65"},
      {"3C DFFF", "7: expected an index of LOCAL NAME up to 0, but found 8256"},
      {"3C E00000", "7: expected an index of LOCAL NAME up to 0, but found 8257"},
      {"3C F0", "7: expected an index (C.25), but found f0"},
      {"7C 00 'a' 6FFFFF", "9: expected an index of ATTRIBUTE NAME up to 0, but found 1056832"},
      {"7C 00 'a' 70",
       "9: expected an attribute or the end of the attributes (C.3.6), but found 70"},
      {"7C 00 'a' 78 00 'b' F0", "12: expected an index (C.26), but found f0"},
  };
  for (const auto& [written, message] : cases) {
    SCOPED_TRACE(written);
    const Result result = run({"inspect", "-"}, octets(std::string("E0 00 00 01 00 ") + written));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, std::string("-: octet ") + message + "\n");
  }
}

TEST_F(Inspect, TellsOfLengthsAtTheBordersOfTheirForms) {
  const struct {
    const char* octets;
    const char* length;
  } cases[] = {
      {"3C 3F", "64"},
      {"3C 4000", "65"},
      {"3C 40FF", "320"},
      {"3C 6000000000", "321"},
      {"3C 60FFFFFFFF", "4294967616"},
      {"3C 00 'a' 81", "2"},
      {"3C 00 'a' 8200", "3"},
      {"3C 00 'a' 82FF", "258"},
      {"3C 00 'a' 8300000000", "259"},
      {"3C 00 'a' 83FFFFFFFF", "4294967554"},
      {"3C 00 'a' E2 07", "8"},
      {"3C 00 'a' E2 0800", "9"},
      {"3C 00 'a' E2 08FF", "264"},
      {"3C 00 'a' E2 0C00000000", "265"},
      {"3C 00 'a' E2 0CFFFFFFFF", "4294967560"},
  };
  for (const auto& [written, length] : cases) {
    SCOPED_TRACE(written);
    const std::string document = octets(std::string("E0 00 00 01 00 ") + written);
    const Result result = run({"inspect", "-"}, document);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "-: octet " + std::to_string(document.size() + 1) + ": expected " +
                              length + " more octets, but the file ends\n");
  }
}
