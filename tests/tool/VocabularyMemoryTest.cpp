#include "Workplace.h"

namespace {

using VocabularyMemory = Workplace;

}  // namespace

// Of many distinct strings, no more is kept than was allowed. The samples come from a pipe, so that
// they are kept in a file meanwhile.
TEST_F(VocabularyMemory, IsBoundedByTheOption) {
  std::string sample = "<a>";
  for (int i = 0; i < 200000; ++i) {
    sample += "<b c='value " + std::to_string(i) + "'>text " + std::to_string(i) + "</b>";
  }
  sample += "</a>";
  // All strings of this sample would take about 80 MB.
  const auto limit = [] { limitMemory(rlim_t{90} << 20); };
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "v.fi", "--memory", "8M", "-"}, sample, limit).status,
            0);
  if (!kIsSanitized) {
    EXPECT_EQ(run({"vocabulary", "learn", "-o", "w.fi", "-"}, sample, limit),
              (Result{2, "", "tavrin: not enough memory\n"}));
  }
  EXPECT_EQ(run({"vocabulary", "show", "v.fi"}).status, 0);
  EXPECT_EQ(files(), Names{"v.fi"});
}

// Nothing recurses on the depth of a sample, and nothing is kept of its long texts.
TEST_F(VocabularyMemory, IsNotThatOfDeepOrLongSamples) {
  std::string sample;
  for (int i = 0; i < 100000; ++i) sample += "<a>";
  sample += std::string(10000000, 'x');
  for (int i = 0; i < 100000; ++i) sample += "</a>";
  const Result result = run({"vocabulary", "learn", "-o", "v.fi", "-"}, sample);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(run({"vocabulary", "show", "v.fi"}),
            (Result{0,
                    "v.fi: 2 entries\n  local names\n        1  \"a\"\n  element names\n"
                    "        1  a\n",
                    ""}));
}
