#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "../format/Dialect.h"

/// What the writer "X891" refuses in strings, whatever event brings them. Each throws a
/// SAXException that names the reason.
namespace Tavrin::fastinfoset {

/// The longest string there is (X.891, C.22 to C.24).
inline constexpr std::uint64_t kLongestString = kDialectX891.longestStringWritten;

/// @param where what the text stands in, with its article
void checkText(const std::string& text, const char* where);
/// A name without a colon (Namespaces in XML, production 4).
void checkNCName(std::string_view name);
void checkTarget(const std::string& target);
/// The text of a comment (XML 1.0, production 15).
void checkComment(const std::string& text);
/// The data of a processing instruction (XML 1.0, production 16).
void checkInstructionData(const std::string& data);
/// Identifiers of an external entity or a notation (XML 1.0, productions 11 and 12); an empty one
/// is absent.
void checkIdentifiers(const std::string& publicId, const std::string& systemId);
void checkIntegers(const std::vector<long>& integers);

}  // namespace Tavrin::fastinfoset
