#include <Tavrin/DefaultHandler.h>
#include <Tavrin/EncodingAlgorithms.h>

#include "ExactNumbers.h"

namespace Tavrin {

namespace {

void reportText(ContentHandler& handler, const EncodedData& value) {
  const std::string text = value.toString();
  if (!text.empty()) handler.characters(text);
}

/// @param value what the list may be the content of: its text is that of the reader, and tells the
///              kind of octets
/// @tparam Holder gives any other list its text
template <typename Holder, typename List>
void reportList(ContentHandler& handler, const EncodedData* value, const List& list) {
  const auto* const holder = dynamic_cast<const EncodedDataTemplate<List>*>(value);
  if (holder != nullptr && &holder->data_ == &list) {
    reportText(handler, *holder);
  } else {
    reportText(handler, Holder(list));
  }
}

/// Keeps the value that is being reported, also where a handler throws.
class ValueScope {
 public:
  ValueScope(const EncodedData*& place, const EncodedData& value) : place_(place), before_(place) {
    place = &value;
  }
  ~ValueScope() { place_ = before_; }
  ValueScope(const ValueScope&) = delete;
  ValueScope& operator=(const ValueScope&) = delete;

 private:
  const EncodedData*& place_;
  const EncodedData* const before_;
};

/// Whether PrimitiveTypeContentHandler has an operation for the values of an algorithm.
bool isPrimitive(const std::string& uri, int index) {
  return uri.empty() && (index < algorithms::uuid || index == algorithms::cdata);
}

}  // namespace

DefaultHandler::~DefaultHandler() = default;
void DefaultHandler::fatalError(const SAXParseException& exception) { throw exception; }

void DefaultHandler::bytes(const std::string& data) { reportList<Base64Data>(*this, value_, data); }
void DefaultHandler::shorts(const std::vector<short>& data) {
  reportList<ExactShortData>(*this, value_, data);
}
void DefaultHandler::ints(const std::vector<long>& data) {
  reportList<ExactIntData>(*this, value_, data);
}
void DefaultHandler::longs(const std::vector<long>& data) {
  reportList<ExactLongData>(*this, value_, data);
}
void DefaultHandler::booleans(const std::vector<bool>& data) {
  reportList<BooleanData>(*this, value_, data);
}
void DefaultHandler::floats(const std::vector<float>& data) {
  reportList<ExactFloatData>(*this, value_, data);
}
void DefaultHandler::doubles(const std::vector<double>& data) {
  reportList<ExactDoubleData>(*this, value_, data);
}

void DefaultHandler::object(const std::string& uri, int index, const EncodedData& data) {
  if (!isPrimitive(uri, index)) return reportText(*this, data);
  const ValueScope scope(value_, data);
  data.callContentHandler(*this);
}

void DefaultHandler::octets(const std::string& /*uri*/, int /*index*/, const std::string& data) {
  reportText(*this, RawData(data));
}

}  // namespace Tavrin
