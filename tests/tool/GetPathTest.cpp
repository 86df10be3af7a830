#include "Workplace.h"

namespace {

/// Paths that are none, and namespaces.
class GetPath : public Workplace {
 protected:
  Result get(const Names& arguments) const {
    Names all = {"get"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.push_back("-");
    return run(all, "<p:a xmlns:p='u' xmlns='v'><b/></p:a>");
  }
};

Result refused(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }

Result printed(const std::string& text) { return {0, text, ""}; }

}  // namespace

TEST_F(GetPath, IsRefusedWithTheColumn) {
  const std::string kStep = "a name, *, @NAME or text() is expected";
  const std::string kPredicate =
      "a predicate is @NAME, @NAME='VALUE', a number or position()=NUMBER";
  const struct {
    std::string path;
    int column;
    std::string message;
    std::string shown;
  } cases[] = {
      {"", 1, "a path is expected", "^"},
      {"a", 1, "a path begins with / or //", "^a"},
      {" .", 2, "a path begins with / or //", " ^."},
      {"/", 2, kStep, "/^"},
      {"//", 3, kStep, "//^"},
      {"///a", 3, kStep, "//^/a"},
      {"/a/", 4, kStep, "/a/^"},
      {"/a|", 4, "a path is expected", "/a|^"},
      {"/a|b", 4, "a path begins with / or //", "/a|^b"},
      {"/a b", 4, "a path ends with a step, a predicate or |", "/a ^b"},
      {"/a]", 3, "a path ends with a step, a predicate or |", "/a^]"},
      {"/1", 2, "\"1\" is not a name", "/^1"},
      {"/a/-b", 4, "\"-b\" is not a name", "/a/^-b"},
      {"/\u00d7", 2, "\"\u00d7\" is not a name", "/^\u00d7"},
      {"/\u00e4/\u00e4[x]", 6, kPredicate, "/\u00e4/\u00e4[^x]"},
      {"/a/..", 4, "a step to the parent is not supported", "/a/^.."},
      {"/a/.", 4, "a step to the node itself is not supported", "/a/^."},
      {"/child::a", 2, "the axis child:: is not supported; there are / and //", "/^child::a"},
      {"/node()", 2, "node() is not supported here", "/^node()"},
      {"/p:a", 2, "the prefix \"p\" is not bound (see --ns)", "/^p:a"},
      {"/a[@p:x]", 5, "the prefix \"p\" is not bound (see --ns)", "/a[@^p:x]"},
      {"/@", 3, "the name of an attribute is expected", "/@^"},
      {"/*:", 4, "a name is expected", "/*:^"},
      {"/@x/a", 4, "an attribute ends a path", "/@x^/a"},
      {"/a/text()//b", 10, "text() ends a path", "/a/text()^//b"},
      {"//comment()/b", 12, "comment() ends a path", "//comment()^/b"},
      {"//processing-instruction('x')/b", 30, "processing-instruction() ends a path",
       "//processing-instruction('x')^/b"},
      {"//processing-instruction(x)", 26, "the target in quotes, or ) is expected",
       "//processing-instruction(^x)"},
      {"//processing-instruction('x'", 29, ") is expected", "//processing-instruction('x'^"},
      {"/a[", 4, kPredicate, "/a[^"},
      {"/a[]", 4, kPredicate, "/a[^]"},
      {"/a[b]", 4, kPredicate, "/a[^b]"},
      {"/a[last()]", 4, "last() is not supported: what comes later is not known yet",
       "/a[^last()]"},
      {"/a[last ( )]", 4, "last() is not supported: what comes later is not known yet",
       "/a[^last ( )]"},
      {"/a[1.5]", 4, "a whole number is expected", "/a[^1.5]"},
      {"/a[1", 5, "] is expected", "/a[1^"},
      {"/a[-1]", 4, kPredicate, "/a[^-1]"},
      {"/a[position()]", 14, "a comparison such as = is expected", "/a[position()^]"},
      {"/a[position()=last()]", 15, "last() is not supported: what comes later is not known yet",
       "/a[position()=^last()]"},
      {"/a[position()=x]", 15, "a whole number is expected", "/a[position()=^x]"},
      {"/a[@x=1]", 7, "a value in quotes is expected", "/a[@x=^1]"},
      {"/a[@x='v]", 7, "the closing quote is missing", "/a[@x=^'v]"},
      {"/a[@x<'v']", 6, "values of attributes are compared by = or != only", "/a[@x^<'v']"},
      {"/a[@x and @y]", 7, "and, or are not supported; [...][...] asks for both", "/a[@x ^and @y]"},
      {"/a[@x", 6, "] is expected", "/a[@x^"},
      {"/text()[@x]", 9, "only elements have attributes", "/text()[^@x]"},
      {"/@x[1]", 4, "attributes have no order", "/@x^[1]"},
  };
  for (const auto& [path, column, message, shown] : cases) {
    SCOPED_TRACE(path);
    EXPECT_EQ(get({path}),
              refused("path, column " + std::to_string(column) + ": " + message + ": " + shown));
  }
}

TEST_F(GetPath, IsShownAroundWhatIsWrong) {
  std::string path;
  for (int i = 0; i < 100; ++i) path += "/aaa";
  EXPECT_EQ(get({path + "/1" + path}),
            refused("path, column 402: \"1\" is not a name: ..." + path.substr(361) + "/^1" +
                    path.substr(0, 39) + "..."));
}

TEST_F(GetPath, MayBeLong) {
  std::string path;
  for (int i = 0; i < 1000; ++i) path += "//*";
  EXPECT_EQ(get({path}), silent(1));
  std::string document;
  for (int i = 0; i < 1001; ++i) document += "<a>";
  document += "x";
  for (int i = 0; i < 1001; ++i) document += "</a>";
  EXPECT_EQ(run({"get", "--text", path, "-"}, document), printed("x\nx\n"));
  EXPECT_EQ(get({path + "//*"}).status, 2);
  std::string predicates = "//*";
  for (int i = 0; i < 1000; ++i) predicates += "[1]";
  EXPECT_EQ(run({"get", "--count", predicates, "-"}, document), printed("1001\n"));
  EXPECT_EQ(get({predicates + "[1]"}).status, 2);
  std::string alternatives = "/a";
  for (int i = 0; i < 999; ++i) alternatives += "|//a[@x" + std::to_string(i) + "]";
  EXPECT_EQ(run({"get", "--count", alternatives, "-"}, document), printed("1\n"));
}

TEST_F(GetPath, HasPrefixesOfItsOwn) {
  EXPECT_EQ(get({"--count", "/a"}), (Result{1, "0\n", ""}));
  EXPECT_EQ(get({"--count", "--ns", "p=u", "/p:a"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "--ns", "q=u", "--ns", "r=v", "/q:a/r:b"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "--ns", "p=v", "/p:a"}), (Result{1, "0\n", ""}));
  EXPECT_EQ(get({"--count", "--ns", "p=u", "/p:*"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "--ns", "=v", "//b"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "--ns", "=u", "/a"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "//*:b"}), printed("1\n"));
  EXPECT_EQ(get({"--count", "--ns=p=u", "--ns", "p=u", "/p:a"}), printed("1\n"));
}

TEST_F(GetPath, IsRefusedNamespacesThatCannotBe) {
  EXPECT_EQ(get({"--ns", "p", "/a"}), refused("--ns \"p\": PREFIX=URI is expected"));
  EXPECT_EQ(get({"--ns", "p=", "/a"}), refused("--ns \"p=\": there is no namespace name"));
  EXPECT_EQ(get({"--ns", "=", "/a"}), refused("--ns \"=\": there is no namespace name"));
  EXPECT_EQ(get({"--ns", "1=u", "/a"}), refused("--ns \"1=u\": \"1\" is not a prefix"));
  EXPECT_EQ(get({"--ns", "a:b=u", "/a"}), refused("--ns \"a:b=u\": \"a:b\" is not a prefix"));
  EXPECT_EQ(get({"--ns", "xmlns=u", "/a"}),
            refused("--ns \"xmlns=u\": this prefix cannot be bound"));
  EXPECT_EQ(get({"--ns", "xml=u", "/a"}),
            refused("--ns \"xml=u\": the prefix is bound to "
                    "\"http://www.w3.org/XML/1998/namespace\" already"));
  EXPECT_EQ(get({"--ns", "p=u", "--ns", "p=v", "/a"}),
            refused("--ns \"p=v\": the prefix is bound to \"u\" already"));
  EXPECT_EQ(get({"--ns", "=u", "--ns", "=v", "/a"}),
            refused("--ns \"=v\": the default is bound to \"u\" already"));
}

TEST_F(GetPath, NeedsAFile) {
  EXPECT_EQ(run({"get", "/a"}), refused("FILE is required (see tavrin get --help)"));
  EXPECT_EQ(run({"get", "--max", "0", "/a", "-"}).status, 2);
  EXPECT_EQ(run({"get", "--max", "-1", "/a", "-"}).status, 2);
}
