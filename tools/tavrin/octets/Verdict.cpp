#include "octets/Verdict.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace tool::octets {

namespace {

std::string withOptions(const std::string& message) {
  return Vocabularies::withOption(Limits::withOption(message));
}

}  // namespace

Verdict::Verdict(const Vocabularies& vocabularies, const Limits& limits) {
  Tavrin::XMLReader_X891::Limits usual = reader_.getLimits();
  usual.maximumLiteralOctets = std::numeric_limits<std::uint64_t>::max();  // See stop.
  reader_.setLimits(usual);
  limits.applyTo(reader_, false);
  vocabularies.applyTo(reader_);
  reader_.setContentHandler(&end_);
  reader_.setProperty(Tavrin::properties::encodingAlgorithmContentHandler, &anyAlgorithm_);
}

void Verdict::read(std::string_view block) {
  const std::uint64_t before = read_;
  read_ += block.size();
  for (std::string_view left = block; !left.empty() && !isOver_;) {
    parse(left, false);
    if (!std::exchange(end_.isReached, false)) return;
    left = left.substr(left.size() - reader_.unusedOctets());
    documentStart_ = before + (block.size() - left.size());
  }
}

void Verdict::end() {
  if (!isOver_ && documentStart_ < read_) parse({}, true);
}

void Verdict::parse(std::string_view block, bool isFinal) {
  const auto refuse = [this](std::uint64_t octet, const std::string& message) {
    isOver_ = true;
    refusal_ = {octet, message};
  };
  try {
    reader_.parse(block.data(), block.size(), isFinal);
  } catch (const Tavrin::SAXParseException& exception) {
    // Readers count octets as columns, and no further than fits.
    const std::int32_t column = exception.getColumnNumber();
    const bool isCounted = column < std::numeric_limits<std::int32_t>::max();
    refuse(isCounted ? documentStart_ + static_cast<std::uint64_t>(std::max(column, 0)) : read_,
           withOptions(exception.getMessage()));
  } catch (const Tavrin::SAXException& exception) {
    refuse(read_, withOptions(exception.getMessage()));
  } catch (const Tavrin::FastInfosetException& exception) {
    refuse(read_, withOptions(exception.getMessage()));
  }
}

}  // namespace tool::octets
