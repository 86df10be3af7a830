#include "Workplace.h"

namespace {

/// What tavrin get needs for large documents, which is the same as for small ones.
class GetMemory : public Workplace {
 protected:
  static constexpr rlim_t kOctets = rlim_t{100} << 20;

  Result getInLittleMemory(Names arguments, const std::string& document) const {
    arguments.insert(arguments.begin(), "get");
    arguments.push_back("-");
    return run(arguments, document, [] { limitMemory(kOctets); });
  }

  static std::string many(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  }
};

constexpr std::size_t kMany = 2'000'000;

}  // namespace

TEST_F(GetMemory, DoesNotGrowWithResultsInEachOther) {
  // The elements inside wait until the one around them ends: twice 120 MB with what marks them.
  const std::string document = "<a><b>" + many("<c>0123456789</c>\n<d x='1'/>", kMany) + "</b></a>";
  const Result result = run({"get", "/a|/a/b|//e", "-"}, document, [] {
    limitMemory(kOctets);
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  });
  EXPECT_EQ(result, silent(0));
}

TEST_F(GetMemory, DoesNotGrowWithATextOrTheNumberOfResults) {
  const std::string text =
      many("0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnop\n", kMany);
  const Result result = run({"get", "/a/text()", "-"}, "<a>" + text + "</a>", [] {
    limitMemory(kOctets);
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  });
  EXPECT_EQ(result, silent(0));
  EXPECT_EQ(
      getInLittleMemory({"--count", "//b[@x]|//b/@x"}, "<a>" + many("<b x='1'/>", kMany) + "</a>"),
      (Result{0, std::to_string(2 * kMany) + "\n", ""}));
}

TEST_F(GetMemory, IsLittleForEachOpenElement) {
  constexpr std::size_t kDepth = 300'000;
  const std::string document = many("<a>", kDepth) + "x" + many("</a>", kDepth);
  EXPECT_EQ(getInLittleMemory({"--count", "//a[1]//a[@x]|//a"}, document),
            (Result{0, std::to_string(kDepth) + "\n", ""}));
  EXPECT_EQ(getInLittleMemory({"--count", "/a/a"}, document), (Result{0, "1\n", ""}));
  EXPECT_EQ(getInLittleMemory({"--text", "--max", "3", "//a"}, document),
            (Result{0, "x\nx\nx\n", ""}));
}
