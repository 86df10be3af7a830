#include "Workplace.h"

namespace {

using VocabularyHelp = Workplace;

constexpr char kVocabulary[] =
    R"(Makes and shows vocabularies: names and strings that documents in Fast Infoset have in common.

Usage: tavrin vocabulary COMMAND [OPTIONS] ...

Commands:
  learn        choose the entries of a vocabulary by what they save in samples
  show         list the entries of a vocabulary
  header       make C++ code of a vocabulary

Options:
  -h, --help   print this help; after a command, the help of that command

A vocabulary is kept in a file that is a Fast Infoset document itself: the vocabulary that it begins
with, and one empty element. Any document in Fast Infoset serves as such a file.

All commands that read documents take --vocabulary FILE --uri URI: a document that refers to a
vocabulary by that URI is read with it. With the same options, tavrin convert writes documents that
refer to it, so that they hold numbers in place of names and frequent strings. With --vocabulary
alone, its copy in Fast Infoset begins with the vocabulary, and any reader understands it.

Both options may stand several times: the first URI is that of the first FILE, and so on. All are
for reading; convert writes with the last, which may be without a URI.

The position of an entry is its number, so a vocabulary that documents refer to must never change:
give one that has other entries another URI.

Example:
  tavrin vocabulary learn -o orders.fi order-*.xml
  tavrin convert --vocabulary orders.fi --uri urn:o:1 order-1.xml order-1.fi
  tavrin events --vocabulary orders.fi --uri urn:o:1 order-1.fi
)";

constexpr char kShow[] =
    R"(Lists the entries of a vocabulary.

Usage: tavrin vocabulary show [OPTIONS] FILE

  FILE              a vocabulary, or any document in Fast Infoset: the vocabulary that it begins
                    with is shown, and the rest not read; - is standard input

Options:
  -h, --help        print this help

Below the number of entries stands each table that has some, with a line for each entry: its index,
and the string in quotes. An entry of the two tables of names is a name with its prefix, and the
namespace name in quotes if it has one. Characters that would break the line or control the terminal
stand as \uXXXX.

Indexes are those of X.891, clause 7.2, which count built-in entries: prefixes and namespace names
begin at 2, restricted alphabets at 16, encoding algorithms at 32.

Example:
  tavrin vocabulary show orders.fi
)";

constexpr char kHeader[] =
    R"(Makes C++ code of a vocabulary: a header with a function that returns it.

Usage: tavrin vocabulary header [OPTIONS] FILE

  FILE              a vocabulary, or any document in Fast Infoset: the vocabulary that it begins
                    with is taken; - is standard input

Options:
  -o OUT            where to write it; - or nothing is standard output
  --force           replace OUT if it exists
  --name NAME       the name of the function, with namespaces if it has any, such as
                    shop::makeOrders; makeVocabulary without this option
  --uri URI         also define the URI by which documents refer to the vocabulary, as a constant
                    with the name of the function and URI behind it
  -h, --help        print this help

The code needs libTavrin and C++17. The function returns a Tavrin::OwnedVocabulary, for
XMLWriter_X891::setExternalVocabulary and XMLReader_X891::addExternalVocabulary. OUT appears when it
is complete, and not at all if the work fails.

Example:
  tavrin vocabulary header --name shop::makeOrders --uri urn:o:1 -o Orders.h orders.fi
)";

constexpr char kLearnBegin[] =
    R"(Makes a vocabulary of what samples have in common, and tells what it saves.

Usage: tavrin vocabulary learn [OPTIONS] SAMPLE...

  SAMPLE            a file; each of its documents, in XML text or in Fast Infoset, is a sample;
                    - is standard input

Options:
  -o OUT            where to write the vocabulary; - is standard output, and nothing is told there
                    then; without -o it is not written
  --force           replace OUT if it exists
  --initial         make a vocabulary that documents begin with, instead of one that they refer to:
                    each of its entries saves more than it takes in every document
  --maximum-entries N
                    at most so many entries, those that save most
  --longest N       octets of the longest string that may be an entry (1024)
  --memory N        octets that strings of the samples may take in memory, about, maybe with K, M
                    or G behind it (512M)
)";

constexpr char kLearnMiddle[] =
    R"(  --from TYPE       the type of reader, instead of going by the first octets of SAMPLE
  -h, --help        print this help

Entries are names of elements and attributes with what these need, attribute values, runs of
character data, namespaces, and the strings of comments, instructions and the document type. Each
saves octets: used as often as in the samples, its number takes fewer than the writer X891 spends
without it. Of several samples, only what two of them have in common is an entry. What is used most
has the lowest numbers, which take one octet.

What the vocabulary comes to is printed, in octets, as the writer X891 has counted them:

  samples
  entries                    in all tables
  octets of the vocabulary   of the file
  as Fast Infoset            all samples without a vocabulary
  with the vocabulary        all samples, and what is left of their size
  with one of the others     each sample with a vocabulary that was learned without it; of more than
                             10 samples, without every tenth from it on. So much is left of a
                             document that is not among the samples

In the last two, a sample refers to the vocabulary by a URI of 16 octets; one that is shorter or
longer by an octet makes each document so. With --initial the vocabulary is in the sample.

All samples are read several times. Memory grows with their distinct strings: of those that are
longer than --longest nothing is kept, and where the others take more than --memory, the half that
takes the fewest octets in the samples is forgotten.

)";

constexpr char kLearnEnd[] =
    R"(
Example:
  tavrin vocabulary learn -o orders.fi order-*.xml
)";

/// The part of a text from one mark to the next.
std::string between(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t begin = text.find(from);
  if (begin == std::string::npos) throw std::runtime_error("no " + from);
  const std::size_t end = text.find(to, begin);
  if (end == std::string::npos) throw std::runtime_error("no " + to);
  return text.substr(begin, end - begin);
}

}  // namespace

TEST_F(VocabularyHelp, TellsOfTheCommandsForVocabularies) {
  for (const std::string flag : {"-h", "--help"}) {
    SCOPED_TRACE(flag);
    EXPECT_EQ(run({"vocabulary", flag}), (Result{0, kVocabulary, ""}));
    EXPECT_EQ(run({"vocabulary", "show", flag}), (Result{0, kShow, ""}));
    EXPECT_EQ(run({"vocabulary", "header", flag}), (Result{0, kHeader, ""}));
  }
}

// learn reads as all other commands do.
TEST_F(VocabularyHelp, TellsOfLearningWithTheOptionsForReading) {
  const std::string check = run({"check", "--help"}).out;
  const std::string options = between(check, "  --entities  ", "  --from TYPE");
  const std::string limits = between(check, "With --entities, ", "\nExample:");
  const std::string learn = kLearnBegin + options + kLearnMiddle + limits + kLearnEnd;
  EXPECT_EQ(run({"vocabulary", "learn", "--help"}), (Result{0, learn, ""}));
  EXPECT_EQ(run({"vocabulary", "learn", "-h"}), (Result{0, learn, ""}));
}

TEST_F(VocabularyHelp, FitsAPageOf100Columns) {
  for (const std::string& text : {std::string(kVocabulary), std::string(kShow),
                                  std::string(kHeader), run({"vocabulary", "learn", "-h"}).out}) {
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.find('\n', begin);
      ASSERT_NE(end, std::string::npos);
      EXPECT_LE(end - begin, 100U) << text.substr(begin, end - begin);
      begin = end + 1;
    }
  }
}

TEST_F(VocabularyHelp, IsNamedWhereACommandIsMisused) {
  const struct {
    ToolProcess::Arguments arguments;
    const char* message;
  } cases[] = {
      {{"vocabulary"}, "a command is required (see tavrin vocabulary --help)"},
      {{"vocabulary", "bogus"}, "unknown command \"bogus\" (see tavrin vocabulary --help)"},
      {{"vocabulary", "show"}, "FILE is required (see tavrin vocabulary show --help)"},
      {{"vocabulary", "header"}, "FILE is required (see tavrin vocabulary header --help)"},
      {{"vocabulary", "learn"}, "SAMPLE is required (see tavrin vocabulary learn --help)"},
      {{"vocabulary", "show", "a", "b"},
       "unexpected argument \"b\" (see tavrin vocabulary show --help)"},
      {{"vocabulary", "header", "a", "--name", "1x"},
       "--name: \"1x\" is not the name of a function (see tavrin vocabulary header --help)"},
      {{"vocabulary", "header", "a", "--name", "a::"},
       "--name: \"a::\" is not the name of a function (see tavrin vocabulary header --help)"},
      {{"vocabulary", "header", "a", "--name", "a::new"},
       "--name: \"a::new\" is not the name of a function (see tavrin vocabulary header --help)"},
      {{"vocabulary", "learn", "a", "--maximum-entries", "0"},
       "--maximum-entries: \"0\" is not a number of at least 1 (see tavrin vocabulary learn "
       "--help)"},
      {{"check", "a", "--uri", "u"}, "--uri requires --vocabulary (see tavrin check --help)"},
  };
  for (const auto& [arguments, message] : cases) {
    SCOPED_TRACE(message);
    EXPECT_EQ(run(arguments), (Result{2, "", "tavrin: " + std::string(message) + "\n"}));
  }
}
