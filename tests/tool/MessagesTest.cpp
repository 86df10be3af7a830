#include "HexOctets.h"
#include "Workplace.h"

namespace {

/// What a document, or the name of a file, may do to the terminal of whoever reads about it.
using Messages = Workplace;

struct Shown {
  std::string text;
  std::string inMessages;
  std::string inEvents;
};

const Shown kTexts[] = {
    {"\x1B[2J", "\\x1B[2J", "\\u001B[2J"},  // An escape sequence.
    {"\xC2\x9B"
     "2J",
     "\\u009B2J", "\\u009B2J"},  // The same in C1.
    {"\xC2\x80\xC2\x9F\xC2\xA0", "\\u0080\\u009F\xC2\xA0", "\\u0080\\u009F\xC2\xA0"},
    {"\x7F", "\\x7F", "\\u007F"},
    {"\n\r\t", "\\n\\r\\t", "\\n\\r\\t"},
    {"\xE2\x80\xA8\xE2\x80\xA9", "\\u2028\\u2029", "\\u2028\\u2029"},
    {"\xE2\x80\xAA\xE2\x80\xAE", "\\u202A\\u202E", "\\u202A\\u202E"},
    {"\xE2\x81\xA6\xE2\x81\xA9", "\\u2066\\u2069", "\\u2066\\u2069"},
    {"\xE2\x80\x8E\xE2\x80\x8F\xD8\x9C", "\\u200E\\u200F\\u061C", "\\u200E\\u200F\\u061C"},
    // Beside them, nothing.
    {"\xE2\x80\x8D\xE2\x80\x90\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA\xD8\x9B",
     "\xE2\x80\x8D\xE2\x80\x90\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA\xD8\x9B",
     "\xE2\x80\x8D\xE2\x80\x90\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA\xD8\x9B"},
    {"\xFF\xC3", "\\xFF\\xC3", "\\uDCFF\\uDCC3"},  // Not UTF-8.
};

}  // namespace

TEST_F(Messages, ShowNamesOfFilesAsTheyAre) {
  for (const auto& [name, shown, inEvents] : kTexts) {
    SCOPED_TRACE(shown);
    EXPECT_EQ(run({"check", name}),
              (Result{2, "", "tavrin: " + shown + ": No such file or directory\n"}));
    writeFile(name, "<a>");
    EXPECT_EQ(run({"check", name}),
              (Result{1, "", shown + ":1:4: no element found: <a> of line 1 is not closed\n"}));
    writeFile(name, "<a/>");
    EXPECT_EQ(run({"check", name}), (Result{0, shown + ": well-formed\n", ""}));
    const std::string counts = run({"stat", name}).out;
    EXPECT_EQ(counts.substr(0, counts.find("  octets")), shown + "\n");
    EXPECT_EQ(run({"diff", name, "-"}, "<b/>"),
              (Result{1,
                      shown + ":1:1: startElement(\"\", \"a\", \"a\", [])\n" +
                          "-:1:1: startElement(\"\", \"b\", \"b\", [])\n",
                      ""}));
    EXPECT_EQ(run({"convert", "-", name}, "<a/>"),
              (Result{2, "", "tavrin: " + shown + ": already exists; --force replaces it\n"}));
    EXPECT_EQ(run({"check", "--" + name, "a"}).status, 2);
    EXPECT_EQ(run({"check", "--from", name, name}).status, 2);
  }
}

TEST_F(Messages, ShowNamesInDocumentsAsTheyAre) {
  for (const auto& [text, shown, inEvents] : kTexts) {
    if (text[0] == '\xFF' || text[0] == '\x1B') continue;  // No document has them.
    SCOPED_TRACE(shown);
    // A message of the library, about a namespace name that nothing declares.
    const std::string document = octets("E0 00 00 01 00 38 CD 00 'u' F0 3D") +
                                 static_cast<char>(text.size() - 1) + text + octets("00 'a' FF");
    const Result result = run({"check", "-"}, document);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find(shown), std::string::npos) << result.err;
    // A warning of the tool.
    if (text.find('\x7F') == 0 || text.find('\n') == 0) continue;
    writeFile("in.xml", "<!DOCTYPE a SYSTEM '" + text + ".dtd'><a/>");
    EXPECT_EQ(run({"check", "--entities", "in.xml"}),
              (Result{0, "in.xml: well-formed\n",
                      "in.xml: warning: external entity \"" + shown +
                          ".dtd\" is not read: No such file or directory\n"}));
  }
}

// Nothing is left out there.
TEST_F(Messages, OfEventsAndDifferencesLoseNothing) {
  for (const auto& [text, shown, inEvents] : kTexts) {
    SCOPED_TRACE(inEvents);
    const std::size_t size = text.size();
    const std::string length = size < 9 ? std::string(1, static_cast<char>(size - 1))
                                        : octets("08") + static_cast<char>(size - 9);
    const std::string document =
        octets("E0 00 00 01 00 3C 00 'a' E2") + length + text + octets("FF");
    const std::string comment = "comment(\"" + inEvents + "\")\n";
    EXPECT_EQ(run({"events", "--from", "FI", "-"}, document),
              (Result{0,
                      "startDocument()\nstartElement(\"\", \"a\", \"a\", [])\n" + comment +
                          "endElement(\"\", \"a\", \"a\")\nendDocument()\n",
                      ""}));
    writeFile("other", "<a/>");
    EXPECT_EQ(
        run({"diff", "--from-a", "FI", "-", "other"}, document),
        (Result{1, "-: octet 9: " + comment + "other:1:5: endElement(\"\", \"a\", \"a\")\n", ""}));
  }
  const std::string name(5000, 'n');
  const Result result = run({"events", "-"}, "<" + name + "/>");
  EXPECT_EQ(result.out, "startDocument()\nstartElement(\"\", \"" + name + "\", \"" + name +
                            "\", [])\nendElement(\"\", \"" + name + "\", \"" + name +
                            "\")\nendDocument()\n");
}

TEST_F(Messages, LeaveTheMiddleOfLongNamesOut) {
  const auto name = [](std::size_t length) {
    return std::string(length / 2, 'a') + std::string(length - length / 2, 'z');
  };
  const auto check = [&](const std::string& entity) {
    return run({"convert", "--from", "Expat", "-"},
               "<!DOCTYPE a [<!ENTITY e SYSTEM '" + entity + "'>]><a>&e;</a>")
        .err;
  };
  const auto message = [&](const std::string& shown, std::size_t length) {
    return "-:1:" + std::to_string(40 + length) + ": external entity \"" + shown +
           "\" was not read, so the copy would lack it\n";
  };
  // The quotation mark behind it belongs to the word.
  EXPECT_EQ(check(name(199)), message(name(199), 199));
  EXPECT_EQ(check(name(200)), message(std::string(99, 'a') + "..." + std::string(97, 'z'), 200));
  EXPECT_EQ(check(name(100000)),
            message(std::string(99, 'a') + "..." + std::string(97, 'z'), 100000));
  // Characters stay whole, and count as one however many octets they have or how they show.
  std::string euros, controls;
  for (int i = 0; i < 300; ++i) euros += "\xE2\x82\xAC";
  for (int i = 0; i < 300; ++i) controls += "\xC2\x85";
  EXPECT_EQ(check(euros), message(euros.substr(0, 3 * 99) + "..." + euros.substr(0, 3 * 97), 300));
  std::string begun, ended;
  for (int i = 0; i < 99; ++i) begun += "\\u0085";
  for (int i = 0; i < 97; ++i) ended += "\\u0085";
  EXPECT_EQ(check(controls), message(begun + "..." + ended, 300));
}

TEST_F(Messages, AreNeverLongerThanAFewLines) {
  std::string words;
  for (int i = 0; i < 100000; ++i) words += "word ";
  const std::string shown = run({"convert", "--from", "Expat", "-"},
                                "<!DOCTYPE a [<!ENTITY e SYSTEM '" + words + "'>]><a>&e;</a>")
                                .err;
  EXPECT_EQ(shown.size(), 1001U);
  EXPECT_EQ(shown.substr(0, 40), "-:1:500040: external entity \"word word w");
  EXPECT_EQ(shown.substr(shown.size() - 50),
            "rd word \" was not read, so the copy would lack it\n");
}
