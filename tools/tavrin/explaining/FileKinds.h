#pragma once

#include <string>
#include <string_view>

namespace tool {

/// A kind of file that is given to XML tools now and then, and is no document of theirs.
struct FileKind {
  enum class Certainty {
    Sure,     ///< No document of XML or Fast Infoset begins so.
    Probable  ///< It may be one nevertheless, so what is wrong with it counts.
  };

  const char* name;  ///< As in "This is NAME"; where that is not sure, a remark on the failure.
  Certainty certainty;
  bool (*isOne)(std::string_view firstOctets);
};

/// The kind of a file by its first octets, at least a hundred unless it has less.
/// @return null for a document of XML or Fast Infoset, and for what nobody knows
const FileKind* kindOf(std::string_view firstOctets);

/// Says that a file is of a kind that is sure, instead of what a reader says of some place in it.
/// @param kind null does nothing, as one that is only probable
/// @throws Failure
void refuseKind(const FileKind* kind, const std::string& file);
/// What a reader says of a file, with a remark on the kind if there is one.
std::string withKind(const FileKind* kind, const std::string& message);

}  // namespace tool
