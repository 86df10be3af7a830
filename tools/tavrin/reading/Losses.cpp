#include "reading/Losses.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <utility>

#include "files/Failure.h"

namespace tool {

Losses::Losses(Tavrin::XMLReader& reader, const Input& input, Report report)
    : reader_(reader), input_(input), report_(std::move(report)) {
  try {
    count();
    reader.setErrorHandler(this);
  } catch (const Tavrin::SAXNotRecognizedException&) {
    // What it tells is not of losses.
  }
}

std::uint64_t Losses::count() const {
  return *static_cast<const std::uint64_t*>(reader_.getProperty(Tavrin::properties::lossCount));
}

// Readers warn of other things, too.
void Losses::warning(const Tavrin::SAXParseException& exception) {
  if (count() == told_) return;
  told_ = count();
  report_(placeIn(input_.name(), exception.getLineNumber(), exception.getColumnNumber()),
          exception.getMessage());
}

}  // namespace tool
