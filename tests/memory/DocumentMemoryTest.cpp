#include <Allocations.h>
#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

// How much memory documents may take at a time, as a multiple of their own size, beside what the
// smallest document takes. The bounds are those of today and a third: a reader or writer that
// begins to keep what it does not need, or to grow by leaps, must be noticed. A hostile document
// belongs here as soon as one is known: a line of the table, with a name that tells what is hostile
// about it.

namespace {

// --- Documents ---

/// A piece of a document again and again, numbered where it has a sign `#`.
std::string repeated(std::size_t count, const std::string& piece) {
  const std::size_t sign = piece.find('#');
  std::string result;
  for (std::size_t i = 0; i < count; ++i) {
    result.append(piece, 0, sign);
    if (sign == std::string::npos) continue;
    result += std::to_string(100000 + i);
    result.append(piece, sign + 1);
  }
  return result;
}

std::string within(const std::string& content) { return "<a>" + content + "</a>"; }

/// Elements in each other.
std::string nested(std::size_t count) { return repeated(count, "<n>") + repeated(count, "</n>"); }

std::string inSubset(const std::string& declarations) {
  return "<!DOCTYPE a [" + declarations + "]><a/>";
}

// --- What they take ---

/// Whatever is to be heard, heard and not kept.
struct Listener : Tavrin::ContentHandler,
                  Tavrin::LexicalHandler,
                  Tavrin::DeclHandler,
                  Tavrin::DTDHandler {
  void attachTo(Tavrin::XMLReader& reader) {
    reader.setContentHandler(this);
    reader.setDTDHandler(this);
    reader.setProperty(Tavrin::properties::lexicalHandler,
                       static_cast<Tavrin::LexicalHandler*>(this));
    reader.setProperty(Tavrin::properties::declarationHandler,
                       static_cast<Tavrin::DeclHandler*>(this));
  }
};

/// The same document as Fast Infoset, written with "X891". All values are in tables, so that a
/// reader needs the most.
std::string binary(const std::string& text) {
  std::istringstream in(text);
  std::ostringstream out;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter("X891");
  std::string indexing = "always";
  writer->setProperty(Tavrin::properties::valueIndexing, &indexing);
  writer->setOutputStream(&out);
  reader->setContentHandler(writer.get());
  reader->setDTDHandler(writer.get());
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(writer.get()));
  reader->parse(in);
  return out.str();
}

std::size_t ofReading(const std::string& type, const std::string& document) {
  std::istringstream in(document);
  return allocations::peakOf([&] {
    Listener listener;
    const auto reader = Tavrin::XMLReaderFactory::createXMLReader(type);
    listener.attachTo(*reader);
    reader->parse(in);
  });
}

/// Takes octets and keeps none.
class Sink : public std::streambuf {
 protected:
  int_type overflow(int_type c) override { return traits_type::not_eof(c); }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

/// Of reading and writing, in which reading has the same part as in ofReading.
std::size_t ofConverting(const std::string& type, const std::string& document) {
  std::istringstream in(document);
  Sink sink;
  std::ostream out(&sink);
  return allocations::peakOf([&] {
    const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
    const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
    writer->setOutputStream(&out);
    reader->setContentHandler(writer.get());
    reader->setDTDHandler(writer.get());
    reader->setProperty(Tavrin::properties::lexicalHandler,
                        static_cast<Tavrin::LexicalHandler*>(writer.get()));
    reader->setProperty(Tavrin::properties::declarationHandler,
                        static_cast<Tavrin::DeclHandler*>(writer.get()));
    reader->parse(in);
  });
}

struct Row {
  std::string what;
  std::string document;
  /// The most that it may take, as multiples of the document: of the text for reading and writing
  /// it with "XML10" and for writing it with "X891", of the Fast Infoset for reading that. What
  /// reading with "XML10" takes is expat's for the most part: releases of it that count what they
  /// allocate take some octets more for each allocation.
  struct Multiples {
    double readingXML10;
    double readingX891;
    double writingXML10;
    double writingX891;
  } most;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.what; }

std::vector<Row> rows() {
  constexpr std::size_t kMany = 20000;
  const std::string text(2000000, 'x');
  const auto many = [](const char* piece) { return repeated(kMany, piece); };
  return {
      {"LongText", within(text), {1.5, 1.5, 0.2, 3}},
      {"LongValue", "<a b='" + text + "'/>", {4, 1.5, 1.5, 0.2}},
      {"LongComment", within("<!--" + text + "-->"), {5, 1.5, 5, 0.2}},
      {"LongInstruction", within("<?t " + text + "?>"), {5, 1.5, 5, 0.2}},
      {"LongName", "<" + text + "/>", {8, 5, 5, 7}},
      {"LongNamespaceName", "<a xmlns='" + text + "'/>", {7.1, 6, 6, 9}},
      {"TheSameItems",
       within(many("<i k='12345678'>some text<b/>more &amp; more</i>")),
       {0.3, 0.2, 0.2, 0.2}},
      {"OtherTexts", within(many("<i>#</i>")), {0.8, 11, 0.2, 2.6}},
      {"OtherValues", within(many("<i k='#'/>")), {0.7, 11, 0.2, 2.3}},
      {"OtherElementNames", within(many("<i#/>")), {14, 54, 17, 49}},
      {"OtherAttributeNames", within(many("<i k#=''/>")), {7, 64, 26, 50}},
      {"OtherNamespaces", within(many("<i xmlns='u#'/>")), {0.6, 33, 0.2, 29}},
      {"OtherPrefixes", within(many("<i xmlns:p#='u'/>")), {8, 16, 7, 14}},
      {"AttributesOfOneElement", "<a" + many(" b#=''") + "/>", {69, 105, 20, 54}},
      {"DeclarationsOfOneElement", "<a" + many(" xmlns:p#='u'") + "/>", {20, 50, 30, 38}},
      {"NestedElements", nested(kMany), {27, 88, 28, 23}},
      {"Entities", inSubset(many("<!ENTITY e# 'v'>")), {15, 18, 5, 0.2}},
      {"DeclaredElements", inSubset(many("<!ELEMENT e# ANY>")), {7, 18, 0.2, 0.2}},
      // expat compares each with all others, so these are few.
      {"DeclaredAttributes",
       inSubset(repeated(4000, "<!ATTLIST a b# CDATA 'd'>")),
       {32, 105, 8, 20}},
      {"Notations", inSubset(many("<!NOTATION n# SYSTEM 's'>")), {0.6, 29, 0.2, 14}},
  };
}

class DocumentMemory : public testing::TestWithParam<Row> {
 protected:
  void SetUp() override {
    if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  }
};

/// What `peak` is beyond `least`, as a multiple of the size of a document.
double multiple(std::size_t peak, std::size_t least, const std::string& document) {
  return (static_cast<double>(peak) - static_cast<double>(least)) /
         static_cast<double>(document.size());
}

TEST_P(DocumentMemory, IsInProportion) {
  const std::string& text = GetParam().document;
  const Row::Multiples& most = GetParam().most;
  const std::string infoset = binary(text);
  const std::size_t reading = ofReading("XML10", text);
  EXPECT_GE(most.readingXML10, multiple(reading, ofReading("XML10", "<a/>"), text));
  EXPECT_GE(most.readingX891,
            multiple(ofReading("X891", infoset), ofReading("X891", binary("<a/>")), infoset));
  EXPECT_GE(most.writingXML10, multiple(ofConverting("XML10", text), reading, text));
  EXPECT_GE(most.writingX891, multiple(ofConverting("X891", text), reading, text));
}

INSTANTIATE_TEST_SUITE_P(Of, DocumentMemory, testing::ValuesIn(rows()),
                         [](const auto& test) { return test.param.what; });

}  // namespace
