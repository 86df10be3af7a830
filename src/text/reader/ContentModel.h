#pragma once

#include <expat.h>

#include <string>

namespace Tavrin {

/// The text of an element's content model (XML 1.0, section 3.2), without blanks.
std::string contentModelText(const XML_Content& model);

}  // namespace Tavrin
