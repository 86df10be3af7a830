#include "Workplace.h"

// Of a file in UTF-8 only octets are recorded, and lines are counted for a difference. Other
// documents have their lines from the reader. What is shown is the same.

namespace {

const std::string kMark = "\xEF\xBB\xBF";

class DiffPlaces : public Workplace {
 protected:
  /// Compares two documents that differ in the names of their elements, `b` and `c`.
  void expectPlace(const std::string& before, const std::string& after, const std::string& place) {
    SCOPED_TRACE(before.substr(0, 100));
    const std::string a = before + "<b/>" + after;
    const std::string b = before + "<c/>" + after;
    writeFile("a", a);
    writeFile("b", b);
    const std::string inA = ":" + place + ": startElement(\"\", \"b\", \"b\", [])\n";
    const std::string inB = ":" + place + ": startElement(\"\", \"c\", \"c\", [])\n";
    const Result inFiles = {1, "a" + inA + "b" + inB, ""};
    EXPECT_EQ(run({"diff", "a", "b"}), inFiles);
    EXPECT_EQ(run({"diff", "--property", "text-scanner=expat", "a", "b"}), inFiles);
    EXPECT_EQ(run({"diff", "--entities", "a", "b"}), inFiles);
    EXPECT_EQ(run({"diff", "-", "b"}, a), (Result{1, "-" + inA + "b" + inB, ""}));
    EXPECT_EQ(run({"diff", "a", "-"}, b), (Result{1, "a" + inA + "-" + inB, ""}));
  }
};

std::string times(int count, const std::string& text) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

/// ASCII in UTF-16.
std::string inUTF16(const std::string& text) {
  std::string result = "\xFF\xFE";
  for (const char c : text) result += {c, '\0'};
  return result;
}

}  // namespace

TEST_F(DiffPlaces, CountLinesAndCharacters) {
  expectPlace("<a>", "</a>", "1:4");
  expectPlace("<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "</a>", "1:7");
  expectPlace("<a>\n1\r\n\xC3\xA4 2\r3\n\r\xE2\x82\xAC", "</a>", "6:2");
  expectPlace("\n\n<?p d?>\n<a x='\n'>", "</a>", "5:3");
  expectPlace("<!DOCTYPE a [\n<!ENTITY e '<d/>\n\n'>\n]><a>&e;\n &e;", "</a>", "6:5");
}

TEST_F(DiffPlaces, CountCharactersInEachEncoding) {
  const auto declaration = [](const std::string& encoding) {
    return "<?xml version='1.0' encoding='" + encoding + "'?>\n<a>";
  };
  const std::string octets = "\xC3\xA4";  // A character, or two of them.
  expectPlace(kMark + "<a>\n" + octets, "</a>", "2:2");
  for (const std::string& mark : {std::string(), kMark}) {
    expectPlace(mark + declaration("utf-8") + octets, "</a>", "2:5");
    expectPlace(mark + declaration("ISO-8859-1") + octets, "</a>", "2:6");
  }
  expectPlace(declaration("US-ASCII") + "12", "</a>", "2:6");
  expectPlace(declaration("utf8") + octets, "</a>", "2:5");
  expectPlace(declaration("windows-1252") + octets, "</a>", "2:6");
  expectPlace(declaration("Shift_JIS") + "\x82\xA0", "</a>", "2:5");
  // A name that stands behind more white space than is looked at.
  expectPlace("<?xml version='1.0'" + times(900, " ") + "encoding='ISO-8859-1'?><a>\n" + octets,
              "</a>", "2:3");
  writeFile("a", inUTF16("<a>\n <b/></a>"));
  writeFile("b", inUTF16("<a>\n <c/></a>"));
  EXPECT_EQ(run({"diff", "a", "b"}), (Result{1,
                                             "a:2:2: startElement(\"\", \"b\", \"b\", [])\n"
                                             "b:2:2: startElement(\"\", \"c\", \"c\", [])\n",
                                             ""}));
}

// A line's end may be on the border of two blocks, whatever their size.
TEST_F(DiffPlaces, CountEachLineEndOnce) {
  for (const std::string shift : {"", " "}) {
    expectPlace("<a><!--" + shift + times(20000, "\r\n") + "-->", "</a>", "20001:4");
    expectPlace("<a>" + shift + times(100000, "\r\n"), "</a>", "100001:1");
  }
}

TEST_F(DiffPlaces, AreFoundFarIntoADocument) {
  expectPlace("<a>\n" + times(50000, "<e>\xC3\xA4</e>\n"), times(10, "<e/>\n") + "</a>", "50002:1");
  expectPlace("<a>\n" + times(50000, "<e/>\xC3\xA4") + "\r ", times(50000, "<e>\n</e>") + "</a>",
              "3:2");
}

TEST_F(DiffPlaces, AreThoseOfEachDifference) {
  const auto document = [](const std::string& x, const std::string& y, const std::string& z) {
    return "<a>\n" + x + " " + x + "\n" + times(30000, "<e>\xC3\xA4</e>\n") + y + "\n" +
           times(30000, "<e>\xC3\xA4</e>\n") + "<f z='" + z + "'>" + z + "</f></a>";
  };
  writeFile("a", document("<b/>", "<b/>", "1"));
  writeFile("b", document("<c/>", "<c/>", "2"));
  EXPECT_EQ(run({"diff", "--all", "--text", "a", "b"}),
            (Result{1,
                    "/a/b[1]\n- a:2:1: <b>\n"
                    "/a/c[1]\n+ b:2:1: <c>\n"
                    "/a/b[2]\n- a:2:6: <b>\n"
                    "/a/c[2]\n+ b:2:6: <c>\n"
                    "/a/b[3]\n- a:30003:1: <b>\n"
                    "/a/c[3]\n+ b:30003:1: <c>\n"
                    "/a/f[1]/@z\n- a:60004:1: \"1\"\n+ b:60004:1: \"2\"\n"
                    "/a/f[1]/text()[1]\n- a:60004:10: \"1\"\n+ b:60004:10: \"2\"\n",
                    ""}));
}
