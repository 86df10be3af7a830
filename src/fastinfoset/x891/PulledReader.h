#pragma once

#include <Tavrin/XMLReader_X891.h>

#include "../../sax/DrivenReader.h"
#include "X891Decoder.h"

namespace Tavrin {

/// A property of XMLReader_X891 for the library itself: its decoder.
inline constexpr char kDecoderProperty[] = "http://tavrin/parser/properties/decoder";

/// A reader whose documents are pulled from its decoder.
class TAVRIN_LOCAL PulledReader_X891 final : public DrivenReader<XMLReader_X891> {
 public:
  fastinfoset::X891Decoder& decoder() {
    return *static_cast<fastinfoset::X891Decoder*>(getProperty(kDecoderProperty));
  }
};

}  // namespace Tavrin
