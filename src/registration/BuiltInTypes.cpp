#include "../sax/BuiltInTypes.h"

#include <Tavrin/XMLReader_Expat.h>
#include <Tavrin/XMLReader_FI.h>
#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLReader_XML10.h>
#include <Tavrin/XMLWriter_FI.h>
#include <Tavrin/XMLWriter_X891.h>
#include <Tavrin/XMLWriter_XML.h>
#include <Tavrin/XMLWriter_XML10.h>

namespace Tavrin {

// The type information of each stands in the object file that registers it.
const std::type_info* const builtInTypes[] = {&typeid(XMLReader_Expat), &typeid(XMLReader_FI),
                                              &typeid(XMLReader_X891),  &typeid(XMLReader_XML10),
                                              &typeid(XMLWriter_FI),    &typeid(XMLWriter_X891),
                                              &typeid(XMLWriter_XML),   &typeid(XMLWriter_XML10)};

}  // namespace Tavrin
