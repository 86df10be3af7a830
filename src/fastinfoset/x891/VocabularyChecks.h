#pragma once

#include <cstddef>
#include <string>

#include "../format/Tables.h"

/// What a document can use as entries of its tables (X.891, clause 8). Each check throws a
/// SAXException with the reason.
namespace Tavrin::fastinfoset {

/// An entry of a table of strings.
void checkEntry(unsigned table, const std::string& entry);

/// The parts of a name, each by itself.
void checkNameParts(const NameParts& name);

/// An entry of a table of names, as an element or attribute could use it where its prefix is
/// declared.
/// @param qName its spelling
void checkName(unsigned table, const NameParts& name, const std::string& qName);

/// The number of positions that a table has, with those that are built in; of alphabets and
/// algorithms without them.
void checkPositions(unsigned table, std::size_t positions);

void checkURI(const std::string& uri);

}  // namespace Tavrin::fastinfoset
