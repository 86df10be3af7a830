#include "Workplace.h"

// Numbers are compared with text without printing them, where the text is short.

namespace {

class DiffNumbers : public Workplace {
 protected:
  /// Writes the document "a.fi", with numbers of a type.
  void writeNumbers(const std::string& type, const std::string& text) {
    writeFile("text", "<a>" + text + "</a>");
    writeFile("rules", "a " + type + "\n");
    ASSERT_EQ(run({"convert", "--force", "--typed", "rules", "text", "a.fi"}), silent(0));
  }

  /// Expects the same text, and no other: alone, and with others around it that show the whole of
  /// it at once.
  void expectNumber(const std::string& type, const std::string& text,
                    const std::vector<std::string>& others) {
    SCOPED_TRACE(type);
    expectText(type, text, "", "", others);
    expectText(type, text, "8 ", " 7 12345 12345", others);
  }

  void expectText(const std::string& type, const std::string& text, const std::string& before,
                  const std::string& behind, const std::vector<std::string>& others) {
    const std::string printed = before + text + behind;
    writeNumbers(type, printed);
    writeFile("b", "<a>" + printed + "</a>");
    EXPECT_EQ(run({"diff", "a.fi", "b"}), silent(0)) << printed;
    EXPECT_EQ(run({"diff", "b", "a.fi"}), silent(0)) << printed;
    for (const std::string& other : others) {
      const std::string characters = before + other + behind;
      writeFile("b", "<a>" + characters + "</a>");
      EXPECT_EQ(run({"diff", "a.fi", "b"}),
                (Result{1,
                        "a.fi: octet 9: characters(\"" + printed + "\")\nb:1:4: characters(\"" +
                            characters + "\")\n",
                        ""}));
    }
  }
};

std::string times(std::size_t count, const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace

TEST_F(DiffNumbers, AreTheTextThatTheyPrint) {
  for (const std::string type : {"float", "double"}) {
    expectNumber(type, "0.5", {"-0.5", ".5", "00.5", "0.50", "5e-1", "0.6", "0:5"});
    expectNumber(type, "-12.375", {"12.375", "--12.375", "-12.3750", "-012.375"});
    expectNumber(type, "658", {"658.", "658.0", "0658", "-658", "65", "6580"});
    expectNumber(type, "-0", {"0", "-00", "-"});
    expectNumber(type, "1e+05", {"100000"});
    expectNumber(type, "1e-04", {"0.0001"});
    expectNumber(type, "-INF", {"INF", "NaN"});
  }
  for (const std::string type : {"short", "int", "long"}) {
    expectNumber(type, "0", {"-0", "00"});
    expectNumber(type, "-32768", {"32768", "-32769", "-032768", "-3276.8"});
    expectNumber(type, "500", {"50", "5000", "5 00"});
  }
}

// A number of more digits than the type holds may stand for the same one in binary.
TEST_F(DiffNumbers, HaveOneText) {
  expectNumber("float", "16777216", {"16777217"});
  expectNumber("float", "0.1", {"0.10000000149"});
  expectNumber("float", "9999.995", {"9999.9951"});
  expectNumber("double", "0.1234567890123", {"0.1234567890124", "0.12345678"});
  expectNumber("int", "123456789", {"12345678"});
  expectNumber("long", "-9223372036854775808", {"-9223372036854775807"});
}

TEST_F(DiffNumbers, StandInManyBlocks) {
  for (const std::string type : {"float", "double"}) {
    const std::size_t count = 50000;
    const std::string text = times(count, "-1.25 17 ") + "1e-04";
    writeNumbers(type, text);
    writeFile("b", "<a>" + text + "</a>");
    EXPECT_EQ(run({"diff", "a.fi", "b"}), silent(0));
    // Pieces that are no numbers.
    writeFile("b", "<a>" + times(count, "-1<![CDATA[.]]>25 1&#55; ") + "1e-04</a>");
    EXPECT_EQ(run({"diff", "b", "a.fi"}), silent(0));
    // In the middle, a digit.
    std::string other = text;
    const std::size_t place = count / 2 * 9 + 4;
    other[place] = '6';
    writeFile("b", "<a>" + other + "</a>");
    const auto excerpt = [&](const std::string& whole) {
      return "characters(...\"" + whole.substr(place - 30, 80) + "\"...)\n";
    };
    EXPECT_EQ(run({"diff", "a.fi", "b"}),
              (Result{1, "a.fi: octet 9: " + excerpt(text) + "b:1:4: " + excerpt(other), ""}));
  }
}
