#include <Tavrin/Connect.h>
#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "CopiedDocuments.h"
#include "EventLog.h"

namespace {

using namespace Tavrin;

/// The handlers of a reader that has all properties for them, in the order of HandlerSet.
struct HandlerRecord : XMLReader {
  using XMLReader::parse;
  void parse(std::istream&) override {}
  void setProperty(const std::string& name, void* value) override { handlers[name] = value; }

  std::vector<void*> all() {
    return {contentHandler_,
            dtdHandler_,
            handlers[properties::declarationHandler],
            handlers[properties::lexicalHandler],
            errorHandler_,
            entityResolver_,
            handlers[properties::primitiveTypeContentHandler],
            handlers[properties::encodingAlgorithmContentHandler]};
  }

  std::map<std::string, void*> handlers;
};

template <typename Interface, typename Object>
void* as(Object& object) {
  return static_cast<Interface*>(&object);
}

using Handlers = std::vector<void*>;

template <typename Object>
Handlers allOf(Object& object) {
  return {as<ContentHandler>(object),
          as<DTDHandler>(object),
          as<DeclHandler>(object),
          as<LexicalHandler>(object),
          as<ErrorHandler>(object),
          as<EntityResolver>(object),
          as<PrimitiveTypeContentHandler>(object),
          as<EncodingAlgorithmContentHandler>(object)};
}

TEST(ConnectedWriter, CopiesAsOneWhoseHandlersAreSetOneByOne) {
  copies::expectCopies([](XMLReader& reader, XMLWriter& writer, std::istream& stream) {
    connect(reader, writer);
    reader.parse(stream);
  });
}

TEST(ConnectedWriter, KeepsTheTypesOfContent) {
  const std::string document = copies::documentsFor("X891").front();
  const copies::Copy copy = copies::copyOf(document, "X891", "X891",
                                           [](auto& reader, auto& writer, std::istream& stream) {
                                             connect(reader, writer);
                                             reader.parse(stream);
                                           });
  EXPECT_EQ((copies::Copy{"nothing", document}), copy);
}

TEST(ConnectedWriter, IsFoundByTheInterfaceOfAnyOfItsClasses) {
  XMLWriter_X891 writer;
  XMLWriter& base = writer;
  const Handlers expected = {as<ContentHandler>(writer),
                             as<DTDHandler>(writer),
                             as<DeclHandler>(writer),
                             as<LexicalHandler>(writer),
                             nullptr,
                             nullptr,
                             nullptr,
                             as<EncodingAlgorithmContentHandler>(writer)};
  HandlerRecord first;
  connect(first, writer);
  EXPECT_EQ(expected, first.all());
  HandlerRecord second;
  connect(second, base);
  EXPECT_EQ(expected, second.all());
  HandlerRecord third;
  connect(third, static_cast<ContentHandler&>(writer));
  EXPECT_EQ(expected, third.all());
}

TEST(ConnectedWriter, TakesOffOtherHandlersOfTheDocument) {
  EventLog log;
  XMLWriter_XML10 writer;
  HandlerRecord reader;
  connect(reader, log);
  connect(reader, writer);
  EXPECT_EQ((Handlers{as<ContentHandler>(writer), as<DTDHandler>(writer), as<DeclHandler>(writer),
                      as<LexicalHandler>(writer), as<ErrorHandler>(log), as<EntityResolver>(log),
                      nullptr, nullptr}),
            reader.all());
}

TEST(ConnectedWriter, IsNoErrorHandlerAndNoResolverWhateverItsClass) {
  struct Writer : XMLWriter, ErrorHandler, EntityResolver {
  } writer;
  HandlerRecord reader;
  connect(reader, writer);
  EXPECT_EQ((Handlers{as<ContentHandler>(writer), as<DTDHandler>(writer), as<DeclHandler>(writer),
                      as<LexicalHandler>(writer), nullptr, nullptr, nullptr, nullptr}),
            reader.all());
}

TEST(ConnectedWriter, TakesPrimitiveTypesWhereItHasNoAlgorithms) {
  struct Writer : XMLWriter, PrimitiveTypeContentHandler {
  } writer;
  HandlerRecord reader;
  connect(reader, writer);
  EXPECT_EQ((Handlers{as<ContentHandler>(writer), as<DTDHandler>(writer), as<DeclHandler>(writer),
                      as<LexicalHandler>(writer), nullptr, nullptr,
                      as<PrimitiveTypeContentHandler>(writer), nullptr}),
            reader.all());
}

TEST(ConnectedObject, IsSetForAllOfItsInterfaces) {
  EventLog log;
  HandlerRecord reader;
  connect(reader, log);
  EXPECT_EQ(allOf(log), reader.all());
}

TEST(ConnectedObject, IsSetForThoseThatOnlyItsOwnClassHas) {
  EventLog log;
  HandlerRecord reader;
  connect(reader, static_cast<ErrorHandler&>(log));
  EXPECT_EQ(allOf(log), reader.all());
}

TEST(ConnectedObject, ThatIsADefaultHandlerGetsTypedContentAsObjects) {
  DefaultHandler handler;
  HandlerRecord reader;
  connect(reader, handler);
  Handlers expected = allOf(handler);
  expected[6] = nullptr;
  EXPECT_EQ(expected, reader.all());
}

TEST(ConnectedObject, LeavesTheHandlersOfOtherInterfaces) {
  EventLog log;
  struct Two : LexicalHandler, EncodingAlgorithmContentHandler {
  } two;
  HandlerRecord reader;
  connect(reader, log);
  connect(reader, two);
  Handlers expected = allOf(log);
  expected[3] = as<LexicalHandler>(two);
  expected[7] = as<EncodingAlgorithmContentHandler>(two);
  EXPECT_EQ(expected, reader.all());
}

TEST(ConnectedObject, WithoutAnyInterfaceChangesNothing) {
  struct Other {
    virtual ~Other() = default;
  } other;
  EventLog log;
  HandlerRecord reader;
  connect(reader, log);
  connect(reader, other);
  EXPECT_EQ(allOf(log), reader.all());
}

TEST(ConnectedObject, IsNotSetForEventsThatTheReaderDoesNotHave) {
  EventLog log;
  XMLReader_XML10 reader;
  connect(reader, log);
  std::istringstream stream("<!DOCTYPE a [<!ELEMENT a ANY>]><a><!--c--></a>");
  reader.parse(stream);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\nelementDecl(a, ANY)\nendDTD()\n"
      "startElement(, a, a, [])\ncomment(c)\nendElement(, a, a)\nendDocument()\n",
      log.text());
}

TEST(ConnectedSet, IsWhatTheProgramMadeOfIt) {
  EventLog log;
  HandlerSet handlers(log);
  handlers.dtd = nullptr;
  handlers.primitiveTypes = nullptr;
  HandlerRecord reader;
  connect(reader, handlers);
  Handlers expected = allOf(log);
  expected[1] = nullptr;
  expected[6] = nullptr;
  EXPECT_EQ(expected, reader.all());
}

/// A failure that is not about the property's name is no reason to pass over a handler.
TEST(Connect, PassesOnOtherRefusals) {
  struct Refusing : HandlerRecord {
    void setProperty(const std::string&, void*) override { throw SAXException("not now"); }
  } reader;
  XMLWriter_XML10 writer;
  EXPECT_EQ("SAXException: not now", thrown([&] { connect(reader, writer); }));
}

}  // namespace
