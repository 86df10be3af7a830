#include "reading/Losses.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <utility>

#include "files/Failure.h"
#include "reading/Reading.h"

namespace tool {

Losses::Losses(Tavrin::XMLReader& reader, const Input& input, Report report, Warnings warnings)
    : reader_(reader), input_(input), report_(std::move(report)), warnings_(warnings) {
  try {
    count();
    reader.setErrorHandler(this);
  } catch (const Tavrin::SAXNotRecognizedException&) {
    if (warnings == Warnings::All && followsStandard(reader)) reader.setErrorHandler(this);
  }
}

std::uint64_t Losses::count() const {
  return *static_cast<const std::uint64_t*>(reader_.getProperty(Tavrin::properties::lossCount));
}

void Losses::warning(const Tavrin::SAXParseException& exception) {
  if (warnings_ == Warnings::OfLosses) {
    if (count() == told_) return;
    told_ = count();
  }
  // A binary format has no lines.
  const std::int32_t line = exception.getLineNumber();
  report_(line < 0 ? placeReached(input_, nullptr)
                   : placeIn(input_.name(), line, exception.getColumnNumber()),
          exception.getMessage());
}

}  // namespace tool
