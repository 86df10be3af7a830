#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/XMLReader_X891.h>

#include "X891Decoder.h"

namespace Tavrin {

/// A reader whose documents are pulled from its decoder.
class TAVRIN_LOCAL PulledReader_X891 final : public XMLReader_X891 {
 public:
  fastinfoset::X891Decoder& decoder();

  void parse(std::istream&) override { refuse(); }
  void parse(const void*, unsigned long, bool) override { refuse(); }

 private:
  [[noreturn]] static void refuse() {
    throw SAXException("parse called of a pull reader's reader");
  }
};

}  // namespace Tavrin
