#pragma once

#include <typeinfo>

namespace Tavrin {

/// All types that the library registers itself. A static library gives a program those object files
/// alone that it refers to: who refers to this gets all types, as from a shared library. The
/// registries stand below the types and may not name them, so the list is defined above both.
extern const std::type_info* const builtInTypes[];

}  // namespace Tavrin
