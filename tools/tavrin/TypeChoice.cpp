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
    {"\xE0\0"sv, "X891"},
    {"<?xml encoding='finf'"sv, "X891"},
    {"<?xml version='1.0' encoding='finf'"sv, "X891"},
    {"<?xml version='1.1' encoding='finf'"sv, "X891"},
    {""sv, "XML10"},
};

/// Writers by the ending of the file's name. The first match counts; any name matches the last one,
/// text.
constexpr Choice kWriters[] = {
    {".fi"sv, "X891"},   {".finf"sv, "X891"}, {".x3db"sv, "X891"},
    {".xml"sv, "XML10"}, {""sv, "XML10"},
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
