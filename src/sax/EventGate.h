#pragma once

#include <Tavrin/Attributes.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "HandlerPlaces.h"

namespace Tavrin {

/// What stands between a reader and the application's handlers where events must not go straight
/// through: while text is coalesced, where the document was stopped, and for what still comes after
/// a pause. At other times the reader's places lead past it.
///
/// - Stopped, it lets nothing through.
/// - Paused, it keeps a copy of each event, until `resume`.
/// - Open, it puts pieces of text together, and reports them before the next event that a handler
///   of the application receives.
class EventGate final : private ContentHandler,
                        private ErrorHandler,
                        private DTDHandler,
                        private DeclHandler,
                        private LexicalHandler,
                        private PrimitiveTypeContentHandler,
                        private EncodingAlgorithmContentHandler {
 public:
  /// Ends the document with a failure, by throwing.
  using Fail = std::function<void(const std::string& message)>;

  /// @param handlers the reader's, which outlive this object
  /// @param kept     called after an event was kept
  EventGate(
      HandlerPlaces& handlers, Fail fail, std::function<void()> kept = [] {});
  EventGate(const EventGate&) = delete;
  EventGate& operator=(const EventGate&) = delete;

  /// Opens, for another document.
  /// @param maximum of octets that are put together; it outlives the document
  void begin(bool coalesces, const std::uint64_t& maximum);
  /// Frees what waits. A stopped gate stays stopped.
  void end();
  /// Lets nothing through any more.
  void stop();
  /// Keeps what comes.
  void pause();
  /// Opens, and delivers what has waited; a handler may pause or stop again.
  /// @return whether it is open still, so that the document goes on
  /// @throws what a handler throws, and the exception that `absorbs` has kept
  bool resume();

  bool isOpen() const { return state_ == State::open; }
  bool isPaused() const { return state_ == State::paused; }
  bool isStopped() const { return state_ == State::stopped; }

  /// To be called before something may throw that is no handler of an event: where the gate is not
  /// open, the handler that closed it has returned.
  void settle() { isSettled_ = true; }
  /// To be called before a failure is reported. What was put together comes first.
  void prepareFailure();
  /// Decides about the exception that is being handled, with which the document has ended. What a
  /// handler throws that has stopped or paused leaves at once. What comes later is nothing to the
  /// application after a stop, and is thrown by `resume` after a pause.
  /// @return whether it does not leave now
  bool absorbs();

 private:
  enum class State : std::uint8_t { open, paused, stopped };

  void close(State state);
  void setPlaces(bool areGated);
  void reportText();
  /// Whether an event goes through now. Otherwise it is dropped, or kept as the call that repeats
  /// it.
  template <typename Handler, typename MakeCall>
  bool passes(const HandlerPlace<Handler>& handler, MakeCall makeCall);
  void keep(std::function<void()> call);
  template <typename Handler, typename... Parameters, typename... Arguments>
  void report(const HandlerPlace<Handler>& handler, void (Handler::*operation)(Parameters...),
              const Arguments&... arguments);

  void setDocumentLocator(const Locator* locator) override;
  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;

  void warning(const SAXParseException& exception) override;
  void error(const SAXParseException& exception) override;
  void fatalError(const SAXParseException& exception) override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;

  void elementDecl(const std::string& name, const std::string& model) override;
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const EncodedData& data) override;

  HandlerPlaces& handlers_;
  const Fail fail_;
  const std::function<void()> afterKeeping_;
  State state_ = State::open;
  bool isSettled_ = false;
  bool coalesces_ = false;
  const std::uint64_t* maximum_ = nullptr;
  std::string text_;  // What has been put together.

  // What came after a pause.
  std::vector<std::function<void()>> kept_;
  std::size_t delivered_ = 0;  // How many of them were delivered since.
  bool isDelivering_ = false;
  std::exception_ptr failure_;
};

}  // namespace Tavrin
