#include <array>
#include <regex>

#include "HexOctets.h"
#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

const std::string kDocument =
    "<!--c--><a xmlns:p='u' x='12' p:yy='3'><b>text</b><b><?p d?>more</b></a>";

class StatPage : public Workplace {
 protected:
  /// The page about a document, without its style sheet.
  std::string pageOf(const std::string& document, const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"stat", "--html", "-", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Result result = run(arguments, document);
    EXPECT_EQ(result.status, 0) << result.err;
    const std::size_t begin = result.out.find("<style>");
    const std::size_t end = result.out.find("</style>");
    return begin < end && end != std::string::npos
               ? result.out.substr(0, begin) + result.out.substr(end + 8)
               : "no style";
  }

  /// The octets of each kind, and all of them: as XML text, as Fast Infoset.
  struct Row {
    std::uint64_t text;
    std::uint64_t binary;
    bool operator==(const Row&) const = default;
    friend void PrintTo(const Row& row, std::ostream* out) {
      *out << row.text << " and " << row.binary;
    }
  };
  static std::vector<Row> rowsOf(const std::string& page) {
    static const std::regex row(
        "<tr><th>[^\n]*</th><td class=\"n\">([0-9,]+)</td>[^\n]*?</td><td class=\"wide\">[^\n]*?"
        "</td><td class=\"n\">([0-9,]+)</td>[^\n]*");
    const auto number = [](std::string digits) {
      std::erase(digits, ',');
      return std::stoull(digits);
    };
    std::vector<Row> rows;
    for (std::sregex_iterator match(page.begin(), page.end(), row), end; match != end; ++match) {
      rows.push_back({number((*match)[1]), number((*match)[2])});
    }
    return rows;
  }

  /// Whether the kinds add up to the copies that the tool makes.
  void expectSums(const std::string& document) {
    const std::vector<Row> rows = rowsOf(pageOf(document));
    ASSERT_EQ(rows.size(), 8U);
    Row sum{};
    for (std::size_t i = 0; i < 7; ++i) {
      sum.text += rows[i].text;
      sum.binary += rows[i].binary;
    }
    EXPECT_EQ(sum, rows[7]);
    EXPECT_EQ(sum.text, run({"convert", "--to", "XML10", "-"}, document).out.size());
    EXPECT_EQ(sum.binary, run({"convert", "--to", "X891", "-"}, document).out.size());
  }
};

enum Kind { kNames, kValues, kText, kTyped, kTables, kStructure, kOther };

}  // namespace

// As XML text, names are 14 octets of the first tag, 4 of the tags of b and 1 of the last tag; 8
// and 7 octets are a comment and an instruction, the first 38 a declaration. Fast Infoset is
//   E000000100 E2 40 'c'                      of the document, as is the end: F0
//   78 CF 00 'p' 00 'u' F0 3C 00 'a' 78 00 'x' 41 '12' 7B 81 81 01 'yy' 40 '3' F0
//   3C 00 'b' 92 01 'text'                    of b; its end of a: F0
//   01 E1 00 'p' 40 'd' 92 01 'more'          of b; its end, and that of a: FF
// 81, 81 and 01 refer to tables.
TEST_F(StatPage, IsWholeForASmallDocument) {
  EXPECT_EQ(pageOf(kDocument), R"GOLDEN(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width,initial-scale=1">
<title>-: where the octets go</title>

</head>
<body>
<main>
<h1>-</h1>
<p>Where the octets go, as XML text and as Fast Infoset</p>
<div class="sizes">
<section><h2>The file</h2><b>72</b><span>octets of XML text</span></section>
<section><h2>As XML text</h2><b>110</b><span>octets</span></section>
<section><h2>As Fast Infoset</h2><b>57</b><span>octets, 51.8 % of the XML text</span></section>
</div>
<section>
<h2>By kind</h2>
<p>What the octets are for</p>
<h3>XML text</h3>
<div class="bar"><div class="k0" style="width:17.3%" title="names: 19 octets, 17.3 %"></div><div class="k1" style="width:2.7%" title="values of attributes: 3 octets, 2.7 %"></div><div class="k2" style="width:7.3%" title="text: 8 octets, 7.3 %"></div><div class="k5" style="width:59.1%" title="structure: 65 octets, 59.1 %"></div><div class="k6" style="width:13.6%" title="comments, instructions, document type: 15 octets, 13.6 %"></div></div>
<h3>Fast Infoset</h3>
<div class="bar"><div class="k0" style="width:6.4%" title="names: 7 octets, 12.3 %"></div><div class="k1" style="width:2.7%" title="values of attributes: 3 octets, 5.3 %"></div><div class="k2" style="width:7.3%" title="text: 8 octets, 14.0 %"></div><div class="k4" style="width:2.7%" title="references to tables: 3 octets, 5.3 %"></div><div class="k5" style="width:30.0%" title="structure: 33 octets, 57.9 %"></div><div class="k6" style="width:2.7%" title="comments, instructions, document type: 3 octets, 5.3 %"></div></div>
<div class="scroll"><table>
<thead><tr><th></th><th class="n" colspan="2">XML text</th><th class="wide"></th><th class="n" colspan="2">Fast Infoset</th><th class="wide"></th></tr></thead>
<tbody>
<tr><th><span class="swatch k0"></span>names</th><td class="n">19</td><td class="n share">17.3 %</td><td class="wide"><div class="track"><div class="k0" style="width:29.2%"></div></div></td><td class="n">7</td><td class="n share">12.3 %</td><td class="wide"><div class="track"><div class="k0" style="width:10.8%"></div></div></td></tr>
<tr><th><span class="swatch k1"></span>values of attributes</th><td class="n">3</td><td class="n share">2.7 %</td><td class="wide"><div class="track"><div class="k1" style="width:4.6%"></div></div></td><td class="n">3</td><td class="n share">5.3 %</td><td class="wide"><div class="track"><div class="k1" style="width:4.6%"></div></div></td></tr>
<tr><th><span class="swatch k2"></span>text</th><td class="n">8</td><td class="n share">7.3 %</td><td class="wide"><div class="track"><div class="k2" style="width:12.3%"></div></div></td><td class="n">8</td><td class="n share">14.0 %</td><td class="wide"><div class="track"><div class="k2" style="width:12.3%"></div></div></td></tr>
<tr><th><span class="swatch k3"></span>typed content</th><td class="n">0</td><td class="n share">0.0 %</td><td class="wide"><div class="track"><div class="k3" style="width:0.0%"></div></div></td><td class="n">0</td><td class="n share">0.0 %</td><td class="wide"><div class="track"><div class="k3" style="width:0.0%"></div></div></td></tr>
<tr><th><span class="swatch k4"></span>references to tables</th><td class="n">0</td><td class="n share">0.0 %</td><td class="wide"><div class="track"><div class="k4" style="width:0.0%"></div></div></td><td class="n">3</td><td class="n share">5.3 %</td><td class="wide"><div class="track"><div class="k4" style="width:4.6%"></div></div></td></tr>
<tr><th><span class="swatch k5"></span>structure</th><td class="n">65</td><td class="n share">59.1 %</td><td class="wide"><div class="track"><div class="k5" style="width:100.0%"></div></div></td><td class="n">33</td><td class="n share">57.9 %</td><td class="wide"><div class="track"><div class="k5" style="width:50.8%"></div></div></td></tr>
<tr><th><span class="swatch k6"></span>comments, instructions, document type</th><td class="n">15</td><td class="n share">13.6 %</td><td class="wide"><div class="track"><div class="k6" style="width:23.1%"></div></div></td><td class="n">3</td><td class="n share">5.3 %</td><td class="wide"><div class="track"><div class="k6" style="width:4.6%"></div></div></td></tr>
<tr><th>all</th><td class="n">110</td><td class="n"></td><td class="wide"></td><td class="n">57</td><td class="n"></td><td class="wide"></td></tr>
</tbody>
</table></div>
</section>
<section>
<h2>By element</h2>
<p>Areas are octets, and colours what they are for. Point at a box for its path.</p>
<h3>XML text</h3>
<div class="map">
<div class="box has" style="left:0.00%;top:0.00%;width:58.18%;height:100.00%" title="/a: 64 octets, 58.2 %"><b>a <i>58.2 %</i></b><div class="in">
<div class="box" style="left:0.00%;top:0.00%;width:54.69%;height:100.00%;background:linear-gradient(90deg,var(--k0) 0.0% 42.9%,var(--k1) 42.9% 51.4%,var(--k5) 51.4% 100.0%)" title="/a/(itself): 35 octets, 31.8 %"><b>(itself) <i>31.8 %</i></b></div>
<div class="box" style="left:54.69%;top:0.00%;width:45.31%;height:100.00%;background:linear-gradient(90deg,var(--k0) 0.0% 13.8%,var(--k2) 13.8% 41.4%,var(--k5) 41.4% 75.9%,var(--k6) 75.9% 100.0%)" title="/a/b: 29 octets, 26.4 %"><b>b <i>26.4 %</i></b></div>
</div></div>
<div class="box" style="left:58.18%;top:0.00%;width:41.82%;height:100.00%;background:linear-gradient(90deg,var(--k5) 0.0% 82.6%,var(--k6) 82.6% 100.0%)" title="/(outside of the root): 46 octets, 41.8 %"><b>(outside of the root) <i>41.8 %</i></b></div>
</div>
<h3>Fast Infoset</h3>
<div class="map">
<div class="box has" style="left:0.00%;top:0.00%;width:84.21%;height:100.00%" title="/a: 48 octets, 84.2 %"><b>a <i>84.2 %</i></b><div class="in">
<div class="box" style="left:0.00%;top:0.00%;width:56.25%;height:100.00%;background:linear-gradient(90deg,var(--k0) 0.0% 22.2%,var(--k1) 22.2% 33.3%,var(--k4) 33.3% 40.7%,var(--k5) 40.7% 100.0%)" title="/a/(itself): 27 octets, 47.4 %"><b>(itself) <i>47.4 %</i></b></div>
<div class="box" style="left:56.25%;top:0.00%;width:43.75%;height:100.00%;background:linear-gradient(90deg,var(--k0) 0.0% 4.8%,var(--k2) 4.8% 42.9%,var(--k4) 42.9% 47.6%,var(--k5) 47.6% 90.5%,var(--k6) 90.5% 100.0%)" title="/a/b: 21 octets, 36.8 %"><b>b <i>36.8 %</i></b></div>
</div></div>
<div class="box" style="left:84.21%;top:0.00%;width:15.79%;height:100.00%;background:linear-gradient(90deg,var(--k5) 0.0% 88.9%,var(--k6) 88.9% 100.0%)" title="/(outside of the root): 9 octets, 15.8 %"><b>(outside of the root) <i>15.8 %</i></b></div>
</div>
<ul class="key"><li><span class="swatch k0"></span>names</li><li><span class="swatch k1"></span>values of attributes</li><li><span class="swatch k2"></span>text</li><li><span class="swatch k3"></span>typed content</li><li><span class="swatch k4"></span>references to tables</li><li><span class="swatch k5"></span>structure</li><li><span class="swatch k6"></span>comments, instructions, document type</li></ul>
</section>
<section>
<h2>The elements that cost most</h2>
<p>Their tags, attributes and text, without the elements in them</p>
<div class="scroll"><table>
<thead><tr><th>path</th><th class="n">elements</th><th class="n" colspan="2">XML text</th><th class="n" colspan="2">Fast Infoset</th></tr></thead>
<tbody>
<tr><td><code>/a</code></td><td class="n">1</td><td class="n">35</td><td class="n share">31.8 %</td><td class="n">27</td><td class="n share">47.4 %</td></tr>
<tr><td><code>(outside of the root element)</code></td><td class="n">0</td><td class="n">46</td><td class="n share">41.8 %</td><td class="n">9</td><td class="n share">15.8 %</td></tr>
<tr><td><code>/a/b</code></td><td class="n">2</td><td class="n">29</td><td class="n share">26.4 %</td><td class="n">21</td><td class="n share">36.8 %</td></tr>
</tbody>
</table></div>
</section>
<section>
<h2>The strings that cost most</h2>
<p>All uses of a name, a value or a piece of text together, with delimiters or lengths of their own</p>
<div class="scroll"><table>
<thead><tr><th>string</th><th class="n">times</th><th class="n" colspan="2">XML text</th><th class="n" colspan="2">Fast Infoset</th></tr></thead>
<tbody>
<tr><td><span class="swatch k0" title="attribute"></span><code>p:yy</code> <span class="share">attribute</span></td><td class="n">1</td><td class="n">4</td><td class="n share">3.6 %</td><td class="n">6</td><td class="n share">10.5 %</td></tr>
<tr><td><span class="swatch k2" title="text"></span><code>&quot;more&quot;</code> <span class="share">text</span></td><td class="n">1</td><td class="n">4</td><td class="n share">3.6 %</td><td class="n">6</td><td class="n share">10.5 %</td></tr>
<tr><td><span class="swatch k2" title="text"></span><code>&quot;text&quot;</code> <span class="share">text</span></td><td class="n">1</td><td class="n">4</td><td class="n share">3.6 %</td><td class="n">6</td><td class="n share">10.5 %</td></tr>
<tr><td><span class="swatch k0" title="element"></span><code>b</code> <span class="share">element</span></td><td class="n">2</td><td class="n">4</td><td class="n share">3.6 %</td><td class="n">4</td><td class="n share">7.0 %</td></tr>
<tr><td><span class="swatch k1" title="value"></span><code>&quot;12&quot;</code> <span class="share">value</span></td><td class="n">1</td><td class="n">4</td><td class="n share">3.6 %</td><td class="n">3</td><td class="n share">5.3 %</td></tr>
<tr><td><span class="swatch k0" title="element"></span><code>a</code> <span class="share">element</span></td><td class="n">1</td><td class="n">2</td><td class="n share">1.8 %</td><td class="n">3</td><td class="n share">5.3 %</td></tr>
<tr><td><span class="swatch k1" title="value"></span><code>&quot;3&quot;</code> <span class="share">value</span></td><td class="n">1</td><td class="n">3</td><td class="n share">2.7 %</td><td class="n">2</td><td class="n share">3.5 %</td></tr>
<tr><td><span class="swatch k0" title="attribute"></span><code>x</code> <span class="share">attribute</span></td><td class="n">1</td><td class="n">1</td><td class="n share">0.9 %</td><td class="n">3</td><td class="n share">5.3 %</td></tr>
</tbody>
</table></div>
</section>
<footer><p>Measured on the copies that <code>tavrin convert</code> makes, octet by octet.</p></footer>
</main>
</body>
</html>
)GOLDEN");
}

TEST_F(StatPage, NeedsNothingElse) {
  const Result result = run({"stat", "--html", "-", "-"}, kDocument);
  for (const std::string outside :
       {"http:", "https:", "url(", "@import", "<script", "<link", "src="}) {
    EXPECT_EQ(result.out.find(outside), std::string::npos) << outside;
  }
  EXPECT_NE(result.out.find("prefers-color-scheme:dark"), std::string::npos);
}

TEST_F(StatPage, AddsUpToTheCopies) {
  expectSums("<a/>");
  expectSums(kDocument);
  expectSums(typed::document());
  expectSums(
      "<!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'f' NDATA n><!ENTITY e SYSTEM 'g'>"
      "<!--in--><?p in?>]><a b='&lt;&#10;'>&amp;<![CDATA[<>]]>&e;</a><!--behind--><?p?>");
  expectSums(
      "<?xml version='1.0' standalone='yes'?><a xmlns='u'><b xmlns=''><c xml:lang='en'/></b></a>");
}

TEST_F(StatPage, AddsUpForTheDocumentsOfTheMachine) {
  int count = 0;
  for (const std::string folder : {"/usr/share/X11/xkb/rules", "/usr/share/mime/packages",
                                   "/usr/share/xml", "/etc/xml", "/etc/fonts"}) {
    if (!std::filesystem::is_directory(folder)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const std::string name = entry.path();
      const bool isChosen = name.ends_with(".xml") && entry.is_regular_file() && count < 12;
      if (!isChosen || run({"check", name}).status != 0) continue;
      if (run({"convert", "--to", "X891", name, "copy.fi", "--force"}).status != 0) continue;
      SCOPED_TRACE(name);
      std::ifstream file(name, std::ios::binary);
      expectSums({std::istreambuf_iterator<char>(file), {}});
      expectSums(readFile("copy.fi"));
      ++count;
    }
  }
  if (count == 0) GTEST_SKIP() << "there are none";
}

// Every form of an index, and of a length: the octets are followed without a table.
TEST_F(StatPage, TellsKindsInEveryForm) {
  std::uint64_t names = 1, tables = 0, values = 0, text = 0;
  std::string document = "<r>";
  const auto sizeOf = [](std::uint64_t index, std::array<std::uint64_t, 2> bounds) {
    return index <= bounds[0] ? 1U : index <= bounds[1] ? 2U : 3U;
  };
  for (const int round : {1, 2}) {
    for (std::uint64_t i = 0; i < 3000; ++i) {
      document += "<n" + std::to_string(10000 + i) + "/>";
      if (round == 1) {
        names += 6;
      } else {
        tables += sizeOf(i + 2, {32, 2080});
      }
    }
  }
  for (const int round : {1, 2}) {
    for (std::uint64_t i = 0; i < 9000; ++i) {
      document += "<v w='" + std::to_string(10000 + i) + "'/>";
      if (round == 1 && i == 0) {
        names += 2;
      } else {
        tables += 3 + 1;  // The element is number 3002, the attribute number 1.
      }
      if (round == 1) {
        values += 5;
      } else {
        tables += sizeOf(i + 1, {64, 8256});
      }
    }
  }
  for (const int round : {1, 2}) {
    for (std::uint64_t i = 0; i < 2000; ++i) {
      document += std::to_string(10000 + i) + "<v/>";
      tables += 3;
      if (round == 1) {
        text += 5;
      } else {
        tables += sizeOf(i + 1, {16, 1040});
      }
    }
  }
  for (std::uint64_t size = 33; size < 700; ++size) {
    document += "<v w='" + std::string(size, 'x') + "'>" + std::string(size, 'y') + "</v>";
    tables += 3 + 1;
    values += size;
    text += size;
  }
  const std::string longest(1000, 'l');
  document += "<" + longest + "/><" + std::string(100, 'm') + "/></r>";
  names += 1100;
  const std::vector<Row> rows = rowsOf(pageOf(document, {"--property", "value-indexing=always"}));
  ASSERT_EQ(rows.size(), 8U);
  EXPECT_EQ(rows[kNames].binary, names);
  EXPECT_EQ(rows[kValues].binary, values);
  EXPECT_EQ(rows[kText].binary, text);
  EXPECT_EQ(rows[kTables].binary, tables);
  EXPECT_EQ(rows[kTyped], (Row{0, 0}));
  EXPECT_EQ(rows[kOther], (Row{0, 0}));
}

TEST_F(StatPage, TellsTypedContentInBoth) {
  const std::vector<Row> rows = rowsOf(pageOf(typed::document()));
  ASSERT_EQ(rows.size(), 8U);
  // The section is text. 4 octets of an int in the attribute, the others in the content.
  const std::uint64_t items = 4 + 8 + 8 + 1 + 16 + 16 + 3 + 3 + 4;
  EXPECT_EQ(rows[kTyped].binary, items);
  EXPECT_EQ(rows[kText].binary, 1U);
  EXPECT_EQ(rows[kValues], (Row{1, 1}));
}

TEST_F(StatPage, TakesDocumentsOfAFileTogether) {
  const std::string one = octets("E0 00 00 01 00 3C 00 'a' FF");
  const std::string page = pageOf(one + one + one);
  EXPECT_NE(page.find("<b>27</b><span>octets of Fast Infoset, 3 documents</span>"),
            std::string::npos)
      << page;
  EXPECT_EQ(rowsOf(page)[7].binary, 27U);
  EXPECT_EQ(rowsOf(page)[kNames], (Row{3, 3}));
}

TEST_F(StatPage, IsSafeFromNamesAndText) {
  const std::string page = pageOf(
      "<a "
      "b='&lt;script>&quot;&apos;&amp;'>&lt;/code>&lt;script>alert(1)&lt;/script>\xE2\x80\xAE</a>");
  EXPECT_EQ(page.find("<script"), std::string::npos);
  EXPECT_NE(page.find("<code>&quot;&lt;script&gt;&quot;&#39;&amp;&quot;</code>"), std::string::npos)
      << page;
  EXPECT_NE(
      page.find(
          "<code>&quot;&lt;/code&gt;&lt;script&gt;alert(1)&lt;/script&gt;\\u202E&quot;</code>"),
      std::string::npos)
      << page;
  writeFile("<i>&.xml", "<a/>");
  const std::string named = run({"stat", "--html", "-", "<i>&.xml"}).out;
  EXPECT_NE(named.find("<h1>&lt;i&gt;&amp;.xml</h1>"), std::string::npos);
  EXPECT_EQ(named.find("<i>&.xml"), std::string::npos);
}

// As many paths, levels and strings as are kept, and many more.
TEST_F(StatPage, IsBounded) {
  std::string document = "<r>", deep, end;
  for (int i = 0; i < 60000; ++i) {
    const std::string number = std::to_string(i);
    document += "<n" + number + ">" + number + "</n" + number + ">";
  }
  for (int i = 0; i < 100000; ++i) {
    deep += "<d>";
    end += "</d>";
  }
  document += deep + end + "</r>";
  const Result result =
      run({"stat", "--html", "-", "-"}, document, [] { limitMemory(rlim_t{160} << 20); });
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_LT(result.out.size(), 1000000U);
  EXPECT_NE(result.out.find("<code>/r/(others)</code>"), std::string::npos);
  EXPECT_NE(result.out.find("There are more different strings than are kept"), std::string::npos);
}

TEST_F(StatPage, AppearsWholeOrNotAtAll) {
  writeFile("in.xml", kDocument);
  writeFile("bad.xml", "<a>");
  EXPECT_EQ(run({"stat", "--html", "page.html", "bad.xml"}),
            (Result{1, "", "bad.xml:1:4: no element found: <a> of line 1 is not closed\n"}));
  EXPECT_EQ(files(), (Names{"bad.xml", "in.xml"}));
  EXPECT_EQ(run({"stat", "--html", "page.html", "in.xml"}), silent(0));
  const std::string page = readFile("page.html");
  EXPECT_EQ(run({"stat", "--html", "-", "in.xml"}), (Result{0, page, ""}));
  writeFile("page.html", "old");
  EXPECT_EQ(run({"stat", "--html", "page.html", "in.xml"}),
            (Result{2, "", "tavrin: page.html: already exists; --force replaces it\n"}));
  EXPECT_EQ(readFile("page.html"), "old");
  EXPECT_EQ(run({"stat", "--html", "page.html", "--force", "in.xml"}), silent(0));
  EXPECT_EQ(readFile("page.html"), page);
  EXPECT_EQ(run({"stat", "--html", "other.html", "in.xml", "in.xml"}),
            (Result{2, "", "tavrin: --html takes one FILE\n"}));
  EXPECT_EQ(run({"stat", "--html", "/dev/full", "in.xml"}),
            (Result{2, "", "tavrin: /dev/full: No space left on device\n"}));
}

TEST_F(StatPage, TellsWhyThereIsNoOtherForm) {
  const std::string reference = typed::element("C8 00 'e' 3C 00 'b' FF");
  const std::string page = pageOf(reference);
  EXPECT_NE(page.find("<section><h2>As XML text</h2><b>impossible</b><span>-: octet 11: The entity "
                      "&quot;e&quot; is not declared</span></section>"),
            std::string::npos)
      << page;
  EXPECT_NE(page.find("<h2>As Fast Infoset</h2><b>" + std::to_string(reference.size()) +
                      "</b><span>octets</span>"),
            std::string::npos)
      << page;
}
