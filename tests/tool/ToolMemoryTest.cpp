#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// The tool where memory runs out: what it makes is whole, or it fails and leaves nothing.
class Memory : public Workplace {
 protected:
  void SetUp() override {
    if (kIsSanitized) GTEST_SKIP() << "address space cannot be limited under a sanitizer";
  }

  Result runWithin(rlim_t kibibytes, const ToolProcess::Arguments& arguments) const {
    return run(arguments, "", [kibibytes] { limitMemory(kibibytes * 1024); });
  }

  /// So many octets of booleans, eight in each.
  static std::string booleans(std::size_t count) {
    const std::size_t length = count + 1 - 259;
    std::string document = octets("E0 00 00 01 00 3C 00 'a' 8C 17");
    for (const int shift : {24, 16, 8, 0}) document += static_cast<char>(length >> shift);
    // The first octet begins with the number of bits that are not used: four.
    return document + '\x4A' + std::string(count - 1, '\xAA') + '\xA0' + octets("FF");
  }
};

}  // namespace

TEST_F(Memory, LeavesACopyWholeOrNone) {
  constexpr std::size_t kCount = std::size_t{1} << 20;
  writeFile("in.fi", booleans(kCount));
  std::string whole = "<a>";
  for (std::size_t i = 0; i < 4 * kCount; ++i) whole += "true false ";
  whole.replace(whole.size() - 1, 1, "</a>");
  for (const rlim_t limit : {60000, 100000, 400000}) {
    SCOPED_TRACE(limit);
    const Result result = runWithin(limit, {"convert", "--no-declaration", "in.fi", "out.xml"});
    if (result.status == 0) {
      EXPECT_TRUE(readFile("out.xml") == whole);
      EXPECT_EQ(result, silent(0));
      std::filesystem::remove(path("out.xml"));
    } else {
      EXPECT_EQ(result, (Result{2, "", "tavrin: not enough memory\n"}));
    }
    EXPECT_EQ(files(), Names{"in.fi"});
  }
}

TEST_F(Memory, LeavesADifferenceWholeOrNone) {
  const std::string value(std::size_t{8} << 20, 'x');
  const auto line = [&](const std::string& name, const std::string& y) {
    return name + ":1:1: startElement(\"\", \"a\", \"a\", [{\"\", \"x\", \"x\", \"CDATA\", \"" +
           value + "\"}, {\"\", \"y\", \"y\", \"CDATA\", \"" + y + "\"}])\n";
  };
  writeFile("a.xml", "<a x='" + value + "' y='1'/>");
  writeFile("b.xml", "<a x='" + value + "' y='2'/>");
  const std::string whole = line("a.xml", "1") + line("b.xml", "2");
  // What has no room for the stack of a thread has no thread.
  const Result noMemory{2, "", "tavrin: not enough memory\n"};
  const Result noThread{2, "",
                        "tavrin: no thread can be started: Resource temporarily unavailable\n"};
  for (const rlim_t limit : {30000, 45000, 60000, 75000, 90000, 100000, 110000, 150000, 400000}) {
    SCOPED_TRACE(limit);
    const Result result = runWithin(limit, {"diff", "a.xml", "b.xml"});
    if (result.status == 1) {
      EXPECT_TRUE(result.out == whole);
    } else {
      EXPECT_EQ(result, result == noThread ? noThread : noMemory);
    }
  }
}
