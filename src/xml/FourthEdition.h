#pragma once

namespace Tavrin::xml {

/// Where a character beyond ASCII may stand in a name.
enum class NamePlace { none, afterFirst, anywhere };

/// What XML 1.0 says up to its fourth edition (productions 4 and 5, appendix B), whose names expat
/// takes. A later edition allows more.
NamePlace namePlace(char32_t character);

}  // namespace Tavrin::xml
