#include <cstdlib>
#include <utility>

#include "Workplace.h"

namespace {

constexpr std::size_t kMostDocuments = kIsSanitized ? 5 : 30;  // Each takes dozens of runs.
constexpr std::uintmax_t kLargest = 200'000;

/// Documents of the machine, or those below the folder that TAVRIN_CORPUS names.
class GetCorpus : public Workplace {
 protected:
  static bool isXML(const std::filesystem::directory_entry& entry) {
    const std::string suffix = entry.path().extension();
    std::error_code error;
    return (suffix == ".xml" || suffix == ".svg" || suffix == ".xsl" || suffix == ".xsd") &&
           entry.is_regular_file(error) && entry.file_size(error) < kLargest;
  }

  static Names documents() {
    const char* const own = std::getenv("TAVRIN_CORPUS");
    Names names;
    const auto options = std::filesystem::directory_options::skip_permission_denied;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(own ? own : "/usr/share", options)) {
      if (isXML(entry)) names.push_back(entry.path());
    }
    std::sort(names.begin(), names.end());
    if (own || names.size() <= kMostDocuments) return names;
    Names some;
    for (std::size_t i = 0; i < kMostDocuments; ++i) {
      some.push_back(names[i * names.size() / kMostDocuments]);
    }
    return some;
  }

  /// What another implementation of XPath has as the value of an expression; nothing where it
  /// cannot read the document.
  std::string judge(const std::string& expression, const std::string& document) const {
    const std::string command = "xmllint --nonet --nocdata --xpath \"" + expression + "\" '" +
                                document + "' >'" + path("judged") + "' 2>/dev/null";
    return std::system(command.c_str()) == 0 ? readFile("judged") : std::string();
  }

  /// The first line of what the tool prints; an empty one for nothing.
  std::string get(const Names& arguments) const {
    const Result result = run(arguments);
    EXPECT_TRUE(result.err.empty()) << result.err;
    return result.out.empty() ? "\n" : result.out;
  }
};

}  // namespace

TEST_F(GetCorpus, HasWhatXmllintFindsThere) {
  if (std::system("command -v xmllint >/dev/null") != 0) {
    GTEST_SKIP() << "xmllint is missing: Debian's libxml2-utils";
  }
  const Names counted = {"//*",
                         "//*[2]",
                         "/*/*[position()<3]/@*",
                         "//*[@*][2]",
                         "//*[2][@*]//*[1]",
                         "//@*",
                         "//text()",
                         "//*/text()[2]",
                         "//comment()",
                         "//processing-instruction()",
                         "//*[@id!='']/*|//*[@*='1']|/*//*[3]/@*"};
  std::size_t compared = 0;
  for (const std::string& document : documents()) {
    SCOPED_TRACE(document);
    // The other one has references to entities as nodes.
    if (std::system(("grep -q '<!ENTITY' '" + document + "'").c_str()) == 0) continue;
    if (judge("count(//*)", document).empty()) continue;
    if (run({"check", document}).status != 0) continue;
    const std::string binary = path("copy.fi");
    ASSERT_EQ(run({"convert", "--force", document, binary}).status, 0);
    for (const std::string& path : counted) {
      SCOPED_TRACE(path);
      const std::string expected = judge("count(" + path + ")", document);
      EXPECT_EQ(get({"get", "--count", path, document}), expected);
      EXPECT_EQ(get({"get", "--count", path, binary}), expected);
    }
    for (const std::string path : {"//@*", "/*/*[2]/@*", "//*[2]/text()[1]", "//comment()"}) {
      SCOPED_TRACE(path);
      const std::string expected = judge("string(" + path + ")", document);
      EXPECT_EQ(get({"get", "--max", "1", path, document}), expected);
      EXPECT_EQ(get({"get", "--max", "1", path, binary}), expected);
    }
    EXPECT_EQ(get({"get", "--text", "/*", document}), judge("string(/*)", document));
    // Each fragment is a document, and no fragment is lost.
    const std::string fragments = get({"get", "--null", "//*[position()<3]", document});
    for (std::size_t begin = 0, number = 0; begin < fragments.size() && number < 20; ++number) {
      const std::size_t end = std::min(fragments.find('\0', begin), fragments.size());
      EXPECT_EQ(run({"check", "-"}, fragments.substr(begin, end - begin)).status, 0);
      begin = end + 1;
    }
    ++compared;
  }
  EXPECT_GT(compared, 0U);
}
