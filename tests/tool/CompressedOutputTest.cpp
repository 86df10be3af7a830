#include "CompressedData.h"
#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

constexpr std::size_t kMost = 1 << 20;

class CompressedOutput : public Workplace {
 protected:
  CompressedOutput() { writeFile("in.xml", "<a>text</a>"); }

  const std::string text_ = R"(<?xml version="1.0" encoding="UTF-8"?><a>text</a>)";
};

}  // namespace

TEST_F(CompressedOutput, GoesByTheNameOfTheFile) {
  const std::string binary = run({"convert", "--to", "X891", "in.xml"}).out;
  for (const std::string name : {"out.xml.gz", "out.gz", ".gz"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.xml", name}), silent(0));
    EXPECT_EQ(ungzip(readFile(name), kMost), text_);
  }
  for (const std::string name : {"out.xml.zst", "out.zst", ".zst"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.xml", name}), silent(0));
    EXPECT_EQ(unzstd(readFile(name), kMost), text_);
  }
  for (const std::string name : {"out.fi.gz", "out.x3db.gz"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.xml", name}), silent(0));
    EXPECT_EQ(ungzip(readFile(name), kMost), binary);
  }
  EXPECT_EQ(run({"convert", "in.xml", "out.fi.zst"}), silent(0));
  EXPECT_EQ(unzstd(readFile("out.fi.zst"), kMost), binary);
  for (const std::string name : {"out.xml.GZ", "gz", "out.gz.bak", "out.zstd"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.xml", name}), silent(0));
    EXPECT_EQ(readFile(name), text_);
  }
}

TEST_F(CompressedOutput, GoesByTheOptionBeforeThat) {
  EXPECT_EQ(ungzip(run({"convert", "--compress", "gzip", "in.xml"}).out, kMost), text_);
  EXPECT_EQ(unzstd(run({"convert", "--compress=zstd", "in.xml", "-"}).out, kMost), text_);
  EXPECT_EQ(run({"convert", "--compress=none", "in.xml"}), (Result{0, text_, ""}));
  EXPECT_EQ(run({"convert", "--compress=zstd", "in.xml", "out.xml.gz"}), silent(0));
  EXPECT_EQ(unzstd(readFile("out.xml.gz"), kMost), text_);
  // The name tells the type of writer nevertheless.
  EXPECT_EQ(run({"convert", "--compress=none", "in.xml", "out.fi.gz"}), silent(0));
  EXPECT_EQ(readFile("out.fi.gz"), run({"convert", "--to", "X891", "in.xml"}).out);
}

TEST_F(CompressedOutput, HasALevel) {
  std::string document = "<a>";
  for (int i = 0; i < 20000; ++i) document += "<b>" + std::to_string(i * i) + "</b>";
  document += "</a>";
  writeFile("in.xml", document);
  const auto sizeAt = [this](const std::string& form) {
    const Result result = run({"convert", "--compress", form, "in.xml"});
    EXPECT_EQ(result.status, 0);
    return result.out.size();
  };
  EXPECT_LT(sizeAt("gzip:9"), sizeAt("gzip:1"));
  EXPECT_EQ(sizeAt("gzip:6"), sizeAt("gzip"));
  EXPECT_LT(sizeAt("zstd:19"), sizeAt("zstd:1"));
  EXPECT_EQ(sizeAt("zstd:3"), sizeAt("zstd"));
  EXPECT_LE(sizeAt("zstd:22"), sizeAt("zstd:19"));
}

TEST_F(CompressedOutput, RefusesWhatIsNoForm) {
  const auto refused = [](const std::string& message) {
    return Result{2, "", "tavrin: --compress: " + message + " (see tavrin convert --help)\n"};
  };
  const std::string gzip = "the level of gzip is a number from 1 to 9";
  const std::string zstd = "the level of zstd is a number from 1 to 22";
  for (const auto& [form, message] : std::initializer_list<std::pair<std::string, std::string>>{
           {"xz", "\"xz\" is not gzip, zstd or none"},
           {"GZIP", "\"GZIP\" is not gzip, zstd or none"},
           {"gzip:0", gzip},
           {"gzip:10", gzip},
           {"gzip:", gzip},
           {"gzip:1x", gzip},
           {"gzip:-1", gzip},
           {"gzip:99999999999", gzip},
           {"zstd:23", zstd},
           {"none:1", "none has no level"},
       }) {
    SCOPED_TRACE(form);
    EXPECT_EQ(run({"convert", "--compress=" + form, "in.xml"}), refused(message));
  }
}

// The same document gives the same octets, whenever and by whatever name it is written.
TEST_F(CompressedOutput, IsAlwaysTheSame) {
  for (const std::string form : {"gzip", "zstd"}) {
    const Result first = run({"convert", "--compress", form, "in.xml"});
    EXPECT_EQ(run({"convert", "--compress", form, "in.xml"}), first);
    EXPECT_EQ(run({"convert", "--compress", form, "in.xml", form}), silent(0));
    EXPECT_EQ(readFile(form), first.out);
  }
}

TEST_F(CompressedOutput, ComesWholeOrNotAtAll) {
  writeFile("bad.xml", "<a>" + std::string(100000, 'x') + "</b>");
  const Result refused = run({"convert", "bad.xml", "out.xml.gz"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(files(), (Names{"bad.xml", "in.xml"}));
  // What has come to standard output shows that it lacks its end.
  const Result cut = run({"convert", "--compress=gzip", "bad.xml"});
  EXPECT_EQ(cut.status, 1);
  EXPECT_EQ(run({"check", "-"}, cut.out).status, 1);
  // A full disk is one when the last octets are written, too.
  for (const std::string form : {"gzip", "zstd", "none"}) {
    EXPECT_EQ(run({"convert", "--compress", form, "in.xml", "/dev/full"}),
              (Result{2, "", "tavrin: /dev/full: No space left on device\n"}));
  }
}

TEST_F(CompressedOutput, ComesBackFromEveryForm) {
  std::string document = "<a>";
  for (int i = 0; i < 50000; ++i) document += "<b c='" + std::to_string(i) + "'>text</b>";
  document += "</a>";
  writeFile("large.xml", document);
  for (const std::string name : {"a.xml.gz", "b.fi.gz", "c.fi.zst", "d.xml.zst", "e.fi"}) {
    EXPECT_EQ(run({"convert", "large.xml", name}), silent(0));
    EXPECT_EQ(run({"diff", "large.xml", name}), silent(0));
  }
}

// Several documents become one compressed file.
TEST_F(CompressedOutput, HoldsSeveralDocuments) {
  const std::string binary = octets("E0 00 00 01 00 3C 00 'a' FF");
  const Result result = run({"convert", "--to=X891", "--compress=zstd", "-"}, binary + binary);
  EXPECT_EQ(unzstd(result.out, kMost), binary + binary);
}
