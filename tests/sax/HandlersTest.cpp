#include <Tavrin/Handlers.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "VirtualSlot.h"

namespace {

using namespace Tavrin;

/// An interface with a virtual destructor and no data, of which a default object can be made.
template <typename Handler>
constexpr bool isDefaultedInterface =
    !std::is_abstract_v<Handler> && std::has_virtual_destructor_v<Handler> &&
    std::is_default_constructible_v<Handler> && sizeof(Handler) == sizeof(void*);

static_assert(isDefaultedInterface<ContentHandler>);
static_assert(isDefaultedInterface<DTDHandler>);
static_assert(isDefaultedInterface<DeclHandler>);
static_assert(isDefaultedInterface<LexicalHandler>);
static_assert(isDefaultedInterface<ErrorHandler>);
static_assert(isDefaultedInterface<EntityResolver>);

/// An interface whose every operation has to be provided.
template <typename Interface>
constexpr bool isPureInterface =
    std::is_abstract_v<Interface>&& std::has_virtual_destructor_v<Interface> &&
    sizeof(Interface) == sizeof(void*);

static_assert(isPureInterface<Locator>);
static_assert(isPureInterface<Attributes>);

/// A locator that must not be asked.
class UntouchedLocator : public Locator {
 public:
  std::string getPublicId() const override { return asked<std::string>(); }
  std::string getSystemId() const override { return asked<std::string>(); }
  std::int32_t getLineNumber() const override { return asked<std::int32_t>(); }
  std::int32_t getColumnNumber() const override { return asked<std::int32_t>(); }

 private:
  template <typename Result>
  static Result asked() {
    ADD_FAILURE() << "The locator was asked.";
    return {};
  }
};

/// A list that must not be read.
class UntouchedAttributes : public Attributes {
 public:
  int getLength() const override { return static_cast<int>(read().size()); }
  const std::string& getURI(int) const override { return read(); }
  const std::string& getLocalName(int) const override { return read(); }
  const std::string& getQName(int) const override { return read(); }
  const std::string& getType(int) const override { return read(); }
  const std::string& getValue(int) const override { return read(); }
  int getIndex(const std::string&, const std::string&) const override { return getLength(); }
  int getIndex(const std::string&) const override { return getLength(); }
  const std::string& getType(const std::string&, const std::string&) const override {
    return read();
  }
  const std::string& getType(const std::string&) const override { return read(); }
  const std::string& getValue(const std::string&, const std::string&) const override {
    return read();
  }
  const std::string& getValue(const std::string&) const override { return read(); }

 private:
  const std::string& read() const {
    ADD_FAILURE() << "The attribute list was read.";
    return text_;
  }

  std::string text_;
};

void sendEveryEvent(ContentHandler& handler, const std::string& s) {
  const UntouchedLocator locator;
  handler.setDocumentLocator(&locator);
  handler.setDocumentLocator(nullptr);
  handler.startDocument();
  handler.startPrefixMapping(s, s);
  handler.startElement(s, s, s, UntouchedAttributes());
  handler.characters(s);
  handler.ignorableWhitespace(s);
  handler.processingInstruction(s, s);
  handler.skippedEntity(s);
  handler.endElement(s, s, s);
  handler.endPrefixMapping(s);
  handler.endDocument();
}

void sendEveryEvent(DTDHandler& handler, const std::string& s) {
  handler.notationDecl(s, s, s);
  handler.unparsedEntityDecl(s, s, s, s);
}

void sendEveryEvent(DeclHandler& handler, const std::string& s) {
  handler.elementDecl(s, s);
  handler.attributeDecl(s, s, s, s, s);
  handler.internalEntityDecl(s, s);
  handler.externalEntityDecl(s, s, s);
}

void sendEveryEvent(LexicalHandler& handler, const std::string& s) {
  handler.startDTD(s, s, s);
  handler.endDTD();
  handler.startEntity(s);
  handler.endEntity(s);
  handler.startCDATA();
  handler.endCDATA();
  handler.comment(s);
}

void sendEveryEvent(ErrorHandler& handler, const std::string& s) {
  handler.warning(SAXParseException(s, 1, 1));
  handler.error(SAXParseException(s, 0, -1));
  handler.fatalError(SAXParseException(s, 2, 3));
}

template <typename Handler>
class HandlerByDefault : public testing::Test {};

using HandlerTypes =
    testing::Types<ContentHandler, DTDHandler, DeclHandler, LexicalHandler, ErrorHandler>;
TYPED_TEST_SUITE(HandlerByDefault, HandlerTypes);

TYPED_TEST(HandlerByDefault, AcceptsEveryEventSilently) {
  class OverridesNothing : public TypeParam {};
  TypeParam plain;
  OverridesNothing derived;
  const std::string texts[] = {"", "text", std::string("\0]]>-->\xFF", 8),
                               std::string(1'000'000, 'x')};
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  for (const std::string& text : texts) {
    EXPECT_NO_THROW(sendEveryEvent(plain, text));
    EXPECT_NO_THROW(sendEveryEvent(derived, text));
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TYPED_TEST(HandlerByDefault, AcceptsEventsInAnyOrderAndTwice) {
  TypeParam handler;
  EXPECT_NO_THROW(sendEveryEvent(handler, "a"));
  EXPECT_NO_THROW(sendEveryEvent(handler, "b"));
}

TEST(DefaultEntityResolver, GivesNoStreamForAnyIdentifiers) {
  class OverridesNothing : public EntityResolver {};
  OverridesNothing derived;
  EntityResolver& resolver = derived;
  const std::string identifiers[] = {"", "p", "http://example.com/a.dtd", std::string("\0", 1)};
  for (const std::string& publicId : identifiers) {
    for (const std::string& systemId : identifiers) {
      EXPECT_EQ(resolver.resolveEntity(publicId, systemId), nullptr);
    }
  }
}

TEST(HandlerThatOverridesOneEvent, HearsThatEventOnly) {
  class CommentCounter : public LexicalHandler {
   public:
    void comment(const std::string& text) override { comments.push_back(text); }
    std::vector<std::string> comments;
  };
  CommentCounter counter;
  sendEveryEvent(counter, "one");
  sendEveryEvent(counter, "two");
  EXPECT_EQ(counter.comments, (std::vector<std::string>{"one", "two"}));
}

TEST(HandlerDeletedThroughItsInterface, IsDestroyedWhole) {
  class Counted : public ErrorHandler {
   public:
    explicit Counted(int* destroyed) : destroyed_(destroyed) {}
    ~Counted() override { ++*destroyed_; }

   private:
    int* destroyed_;
  };
  int destroyed = 0;
  std::unique_ptr<ErrorHandler> handler = std::make_unique<Counted>(&destroyed);
  handler.reset();
  EXPECT_EQ(destroyed, 1);
}

using Slots = std::vector<std::ptrdiff_t>;

TEST(VirtualTable, OfContentHandlerKeepsItsOrder) {
  EXPECT_EQ((Slots{
                slotOf(&ContentHandler::setDocumentLocator),
                slotOf(&ContentHandler::startDocument),
                slotOf(&ContentHandler::endDocument),
                slotOf(&ContentHandler::startPrefixMapping),
                slotOf(&ContentHandler::endPrefixMapping),
                slotOf(&ContentHandler::startElement),
                slotOf(&ContentHandler::endElement),
                slotOf(&ContentHandler::characters),
                slotOf(&ContentHandler::ignorableWhitespace),
                slotOf(&ContentHandler::processingInstruction),
                slotOf(&ContentHandler::skippedEntity),
            }),
            (Slots{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST(VirtualTable, OfDTDHandlerKeepsItsOrder) {
  EXPECT_EQ((Slots{slotOf(&DTDHandler::notationDecl), slotOf(&DTDHandler::unparsedEntityDecl)}),
            (Slots{2, 3}));
}

TEST(VirtualTable, OfDeclHandlerKeepsItsOrder) {
  EXPECT_EQ(
      (Slots{slotOf(&DeclHandler::elementDecl), slotOf(&DeclHandler::attributeDecl),
             slotOf(&DeclHandler::internalEntityDecl), slotOf(&DeclHandler::externalEntityDecl)}),
      (Slots{2, 3, 4, 5}));
}

TEST(VirtualTable, OfLexicalHandlerKeepsItsOrder) {
  EXPECT_EQ((Slots{slotOf(&LexicalHandler::startDTD), slotOf(&LexicalHandler::endDTD),
                   slotOf(&LexicalHandler::startEntity), slotOf(&LexicalHandler::endEntity),
                   slotOf(&LexicalHandler::startCDATA), slotOf(&LexicalHandler::endCDATA),
                   slotOf(&LexicalHandler::comment)}),
            (Slots{2, 3, 4, 5, 6, 7, 8}));
}

TEST(VirtualTable, OfErrorHandlerKeepsItsOrder) {
  EXPECT_EQ((Slots{slotOf(&ErrorHandler::warning), slotOf(&ErrorHandler::error),
                   slotOf(&ErrorHandler::fatalError)}),
            (Slots{2, 3, 4}));
}

TEST(VirtualTable, OfEntityResolverHasOneOperation) {
  EXPECT_EQ(slotOf(&EntityResolver::resolveEntity), 2);
}

TEST(VirtualTable, OfLocatorKeepsItsOrder) {
  EXPECT_EQ((Slots{slotOf(&Locator::getPublicId), slotOf(&Locator::getSystemId),
                   slotOf(&Locator::getLineNumber), slotOf(&Locator::getColumnNumber)}),
            (Slots{2, 3, 4, 5}));
}

}  // namespace
