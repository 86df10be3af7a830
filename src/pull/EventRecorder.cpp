#include "EventRecorder.h"

namespace Tavrin {

void EventRecorder::attachTo(XMLReader& reader) {
  reader.setContentHandler(this);
  reader.setDTDHandler(this);
  reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(this));
  reader.setProperty(properties::declarationHandler, static_cast<DeclHandler*>(this));
}

EventPosition EventRecorder::positionHere() const {
  if (locator_ == nullptr) return {};
  // The readers that are pulled from have such locators.
  const auto& locator = static_cast<const OctetLocator&>(*locator_);
  return {locator.getLineNumber(), locator.getColumnNumber(), locator.getOctetOffset()};
}

}  // namespace Tavrin
