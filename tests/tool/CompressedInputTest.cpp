#include <pty.h>
#include <termios.h>

#include <thread>

#include "CompressedData.h"
#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

using namespace std::string_literals;

class CompressedInput : public Workplace {
 protected:
  /// What a command makes of a file and of standard input; both have to be the same but for the
  /// name.
  void expectBoth(const std::string& data, const Result& expected) const {
    writeFile("in", data);
    EXPECT_EQ(run({"check", "in"}), expected);
    Result ofInput = expected;
    for (std::string* text : {&ofInput.out, &ofInput.err}) {
      if (text->starts_with("in")) text->replace(0, 2, "-");
    }
    EXPECT_EQ(run({"check", "-"}, data), ofInput);
  }
};

const Result kWellFormed{0, "in: well-formed\n", ""};

/// An element `a` in Fast Infoset.
const std::string kBinary = octets("E0 00 00 01 00 3C 00 'a' FF");

/// A frame that zstd skips (RFC 8878, section 3.1.2).
const std::string kSkipped = "\x5A\x2A\x4D\x18\x03\0\0\0xyz"s;

/// A document that does not become much smaller.
std::string noisyDocument(std::size_t size) {
  std::string text = "<a>";
  unsigned state = 1;
  while (text.size() < size) {
    state = state * 1664525U + 1013904223U;
    text += static_cast<char>('A' + (state >> 24) % 50);
    if (text.back() == '<' || text.back() == '&' || text.back() == ']') text.back() = 'x';
  }
  return text + "</a>";
}

}  // namespace

TEST_F(CompressedInput, IsReadByEveryCommand) {
  const std::string document = "<a x='1'>text<b/></a>";
  writeFile("plain.xml", document);
  writeFile("a.xml", gzipOf(document));
  writeFile("b.xml", zstdOf(document));
  for (const std::string command : {"events", "convert"}) {
    SCOPED_TRACE(command);
    const Result plain = run({command, "plain.xml"});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(run({command, "a.xml"}), plain);
    EXPECT_EQ(run({command, "b.xml"}), plain);
    EXPECT_EQ(run({command, "-"}, gzipOf(document)), plain);
    EXPECT_EQ(run({command, "-"}, zstdOf(document)), plain);
  }
  EXPECT_EQ(run({"diff", "plain.xml", "a.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "a.xml", "b.xml"}), silent(0));
  EXPECT_EQ(run({"check", "a.xml", "b.xml"}),
            (Result{0, "a.xml: well-formed\nb.xml: well-formed\n", ""}));
  EXPECT_EQ(run({"stat", "-"}, gzipOf(document)), run({"stat", "-"}, document));
}

TEST_F(CompressedInput, MayBeFastInfosetAndInSeveralParts) {
  expectBoth(gzipOf(kBinary), kWellFormed);
  expectBoth(zstdOf(kBinary), kWellFormed);
  const Result two{0, "in: well-formed (2 documents)\n", ""};
  expectBoth(gzipOf(kBinary + kBinary), two);
  expectBoth(gzipOf(kBinary) + gzipOf(kBinary), two);
  expectBoth(zstdOf(kBinary) + zstdOf(kBinary), two);
  // A part may end anywhere, and be empty.
  expectBoth(gzipOf("") + gzipOf("<a>x") + gzipOf("") + gzipOf("</a>"), kWellFormed);
  expectBoth(zstdOf("<") + kSkipped + zstdOf("a/>") + zstdOf(""), kWellFormed);
  expectBoth(kSkipped + zstdOf("<a/>") + kSkipped, kWellFormed);
  // Each octet in a part of its own.
  std::string gzip;
  std::string zstd;
  for (const char c : "<a>text</a>"s) {
    gzip += gzipOf(std::string(1, c));
    zstd += zstdOf(std::string(1, c));
  }
  expectBoth(gzip, kWellFormed);
  expectBoth(zstd, kWellFormed);
}

TEST_F(CompressedInput, MayBeLarge) {
  const std::string document = noisyDocument(3'000'000);
  for (const std::string& data : {gzipOf(document), zstdOf(document), gzipOf(document, 0)}) {
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, data), (Result{0, document, ""}));
    writeFile("in", data);
    EXPECT_EQ(run({"convert", "--no-declaration", "in"}), (Result{0, document, ""}));
  }
}

// As for any other document: in that what has no octets lacks.
TEST_F(CompressedInput, MayBeEmpty) {
  const Result empty{1, "", "in:1:1: no element found (the input is empty)\n"};
  expectBoth(gzipOf(""), empty);
  expectBoth(zstdOf(""), empty);
  expectBoth(kSkipped, empty);
}

// Positions are those in the document.
TEST_F(CompressedInput, IsTheDocumentInMessages) {
  expectBoth(gzipOf("<a>\n</b>"), {1, "", "in:2:3: mismatched tag: expected </a> of line 1\n"});
  expectBoth(zstdOf(kBinary + "x"),
             {1, "", "in: octet 10: No Fast Infoset document begins here\n"});
}

TEST_F(CompressedInput, IsRefusedWhereItIsCut) {
  for (const bool isGzip : {true, false}) {
    SCOPED_TRACE(isGzip);
    const std::string data = isGzip ? gzipOf("<a>text</a>") : zstdOf("<a>text</a>");
    for (std::size_t size = 2; size < data.size(); ++size) {
      SCOPED_TRACE(size);
      expectBoth(data.substr(0, size),
                 {1, "",
                  "in: the "s + (isGzip ? "gzip" : "zstd") + " data ends too early, behind octet " +
                      std::to_string(size) + "\n"});
    }
    // A second part, too. Of less than two octets nothing can be told.
    const std::string blanks = isGzip ? gzipOf("   ") : zstdOf("   ");
    for (std::size_t size = 2; size < blanks.size(); ++size) {
      SCOPED_TRACE(size);
      expectBoth(data + blanks.substr(0, size),
                 {1, "",
                  "in: the "s + (isGzip ? "gzip" : "zstd") + " data ends too early, behind octet " +
                      std::to_string(data.size() + size) + "\n"});
    }
  }
}

TEST_F(CompressedInput, IsRefusedWhereItIsDamaged) {
  std::string gzip = gzipOf("<a>text</a>");
  gzip[gzip.size() - 8] ^= 1;  // Its check value (RFC 1952, section 2.3).
  expectBoth(gzip, {1, "",
                    "in: the gzip data is damaged behind octet " + std::to_string(gzip.size() - 4) +
                        ": incorrect data check\n"});
  std::string zstd = zstdOf("<a>text</a>");
  zstd.back() ^= 1;
  expectBoth(zstd, {1, "",
                    "in: the zstd data is damaged behind octet " + std::to_string(zstd.size() - 4) +
                        ": Restored data doesn't match checksum\n"});
  // A file in a reserved kind of block (RFC 1951, section 3.2.3).
  std::string reserved = gzipOf("<a/>");
  reserved[10] = '\x07';
  expectBoth(reserved,
             {1, "", "in: the gzip data is damaged behind octet 11: invalid block type\n"});
}

TEST_F(CompressedInput, IsRefusedWhereSomethingElseFollows) {
  const std::string gzip = gzipOf("<a/>");
  const std::string zstd = zstdOf("<a/>");
  const auto refused = [](const std::string& form, std::size_t octet) {
    return Result{1, "",
                  "in: what follows the " + form + " data from octet " + std::to_string(octet + 1) +
                      " on is something else\n"};
  };
  for (const std::string& rest : {"x"s, "\x1F"s, "<a/>"s, "\0\0\0\0"s, zstd}) {
    expectBoth(gzip + rest, refused("gzip", gzip.size()));
  }
  for (const std::string& rest : {"x"s, "\x28"s, "<a/>"s, gzip}) {
    expectBoth(zstd + rest, refused("zstd", zstd.size()));
  }
}

// Whatever the damage is, the tool says so, or the document is what it was.
TEST_F(CompressedInput, IsNeverAnotherDocumentWhereItIsDamaged) {
  const std::string document = "<list><item>one</item><item>two</item><item>three</item></list>";
  for (const bool isGzip : {true, false}) {
    const std::string data = isGzip ? gzipOf(document) : zstdOf(document);
    for (std::size_t i = 0; i < data.size(); ++i) {
      SCOPED_TRACE(i);
      std::string damaged = data;
      damaged[i] ^= static_cast<char>(1 << i % 8);
      const Result result = run({"convert", "--no-declaration", "-"}, damaged);
      if (result.status == 0) {
        EXPECT_EQ(result.out, document);
      } else {
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
      }
    }
  }
}

// The window that data asks for is bounded.
TEST_F(CompressedInput, MayAskForAWindowOf128MiB) {
  const std::string document = noisyDocument(100'000);
  EXPECT_EQ(run({"check", "-"}, zstdOf(document, 27)), (Result{0, "-: well-formed\n", ""}));
  const Result refused = run({"check", "-"}, zstdOf(document, 28));
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err,
            "-: the zstd data is damaged behind octet 5: it needs more than 128 MiB of memory\n");
}

// 512 MiB of blanks in half a megabyte: they pass through a small memory.
TEST_F(CompressedInput, MayBecomeVeryLargeInConstantMemory) {
  if (kIsSanitized) GTEST_SKIP() << "address space cannot be limited under a sanitizer";
  const std::string blanks = gzipOf(std::string(64 << 20, ' '), 9);
  std::string data = gzipOf("<a>");
  for (int i = 0; i < 8; ++i) data += blanks;
  data += gzipOf("</a>");
  EXPECT_EQ(run({"check", "-"}, data, [] { limitMemory(64 << 20); }),
            (Result{0, "-: well-formed\n", ""}));
}

TEST_F(CompressedInput, IsReadTwiceWhereTheDocumentIs) {
  // A document type, and an entity that only a reference declares.
  const std::string document = octets("E0 00 00 01 00 C4 F0 3C 00 'a' CA 00 'e' 02 'e.x' FF");
  const Result plain = run({"convert", "-"}, document);
  EXPECT_EQ(plain.status, 0) << plain.err;
  for (const std::string& data : {gzipOf(document), zstdOf(document),
                                  gzipOf(document.substr(0, 9)) + gzipOf(document.substr(9))}) {
    EXPECT_EQ(run({"convert", "-"}, data), plain);
    writeFile("in.fi", data);
    EXPECT_EQ(run({"convert", "in.fi"}), plain);
  }
  // More than what is kept in memory.
  const std::string large =
      octets("E0 00 00 01 00 C4 F0 3C 00 'a' CA 00 'e' 02 'e.x' 83 00 3F FE FD") +
      std::string(0x400000, 'x') + octets("FF");
  EXPECT_EQ(run({"convert", "-"}, gzipOf(large)), run({"convert", "-"}, large));
  std::string cut = gzipOf(large);
  cut.resize(cut.size() - 1);
  const Result refused = run({"convert", "-", "out.xml"}, cut);
  EXPECT_EQ(refused, (Result{1, "",
                             "-: the gzip data ends too early, behind octet " +
                                 std::to_string(cut.size()) + "\n"}));
}

TEST_F(CompressedInput, MayBeThatOfAnEntity) {
  writeFile("in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml.gz'>]><a>&e;</a>");
  writeFile("e.xml.gz", gzipOf("<b/>"));
  EXPECT_EQ(run({"check", "--entities", "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
  writeFile("e.xml.gz", gzipOf("<b/>").substr(0, 12));
  const Result cut = run({"check", "--entities", "in.xml"});
  EXPECT_EQ(cut, (Result{1, "", "e.xml.gz: the gzip data ends too early, behind octet 12\n"}));
}

// What has been compressed so far is shown while more is still to come.
TEST_F(CompressedInput, IsShownAsItComes) {
  using Form = std::string (*)(const std::string&);
  const Form plain = [](const std::string& text) { return text; };
  const Form gzip = [](const std::string& text) { return gzipOf(text); };
  const Form zstd = [](const std::string& text) { return zstdOf(text); };
  for (const Form form : {plain, gzip, zstd}) {
    require(mkfifo(path("out").c_str(), 0600), "mkfifo");
    const int reading =
        require(open(path("out").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), "open");
    ToolProcess process({"events", "-"}, directory_,
                        [] { dup2(open("out", O_WRONLY), STDOUT_FILENO); });
    std::string shown;
    const auto waitFor = [&](const std::string& expected) {
      char block[4096];
      for (int i = 0; i < 6000 && shown.size() < expected.size(); ++i) {
        const ssize_t count = read(reading, block, sizeof block);
        if (count > 0) shown.append(block, static_cast<std::size_t>(count));
        std::this_thread::sleep_for(std::chrono::milliseconds(count > 0 ? 0 : 10));
      }
      EXPECT_EQ(shown, expected);
    };
    process.write(form("<a><b>"));
    const std::string first = "startDocument()\nstartElement(\"\", \"a\", \"a\", [])\n";
    const std::string second = "startElement(\"\", \"b\", \"b\", [])\n";
    waitFor(first + second);
    process.write(form("</b>"));
    const std::string third = first + second + "endElement(\"\", \"b\", \"b\")\n";
    waitFor(third);
    process.write(form("</a>"));
    waitFor(third + "endElement(\"\", \"a\", \"a\")\n");
    EXPECT_EQ(process.wait(), silent(0));
    waitFor(third + "endElement(\"\", \"a\", \"a\")\nendDocument()\n");
    close(reading);
    std::filesystem::remove(path("out"));
  }
}

TEST_F(CompressedInput, MayComeInPieces) {
  for (const std::string& data : {gzipOf("<a>text</a>"), zstdOf("<a>text</a>")}) {
    ToolProcess process({"check", "-"}, directory_);
    for (const char c : data) {
      process.write(std::string(1, c));
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(process.wait(), (Result{0, "-: well-formed\n", ""}));
  }
}

// The bar counts what the file has: it does not stand still at its end, and never goes back.
TEST_F(CompressedInput, ShowsTheProgressOfTheFile) {
  int person = -1;
  int program = -1;
  termios raw{};
  cfmakeraw(&raw);
  require(openpty(&person, &program, nullptr, &raw, nullptr), "openpty");
  fcntl(person, F_SETFL, O_NONBLOCK);
  // 9 MiB on disk, as stored blocks, twice: a document that is read once and one that is read
  // twice.
  std::string binary = octets("E0 00 00 01 00 C4 F0 3C 00 'a' CA 00 'e' 02 'e.x'");
  for (int i = 0; i < 144; ++i) binary += octets("83 00 00 FE FD") + std::string(65536, 'x');
  binary += octets("FF");
  writeFile("in.fi.gz", gzipOf(binary, 0));
  EXPECT_EQ(run({"convert", "in.fi.gz", "out.xml"}, "", [&] { dup2(program, STDERR_FILENO); }),
            silent(0));
  std::string shown;
  char block[4096];
  for (ssize_t count; (count = read(person, block, sizeof block)) > 0;) {
    shown.append(block, static_cast<std::size_t>(count));
  }
  EXPECT_NE(shown.find('%'), std::string::npos);
  int last = 0;
  for (std::size_t place = 0; (place = shown.find('%', place)) != std::string::npos; ++place) {
    const int percent = std::stoi(shown.substr(place - 3, 3));
    EXPECT_GE(percent, last);
    EXPECT_LE(percent, 100);
    last = percent;
  }
  close(person);
  close(program);
}
