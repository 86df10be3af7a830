#include "TypeChoice.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

struct Choice {
  std::string_view mark;
  const char* type;
};

/// Readers by the octets that a document begins with. The first match counts; any document matches
/// the last one, text.
constexpr Choice kReaders[] = {
    {"\xE0\0"sv, "FI"},
    {""sv, "Expat"},
};

/// Writers by the ending of the file's name. The first match counts; any name matches the last one,
/// text.
constexpr Choice kWriters[] = {
    {".fi"sv, "FI"},
    {".finf"sv, "FI"},
    {".xml"sv, "XML"},
    {""sv, "XML"},
};

}  // namespace

std::string readerTypeFor(std::string_view firstOctets) {
  const Choice* choice = kReaders;
  while (!firstOctets.starts_with(choice->mark)) ++choice;
  return choice->type;
}

std::string writerTypeFor(std::string_view fileName) {
  const Choice* choice = kWriters;
  while (!fileName.ends_with(choice->mark)) ++choice;
  return choice->type;
}

}  // namespace tool
