#include "TypeChoice.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

struct Choice {
  std::string_view mark;
  const char* type;
};

constexpr const char* kFastInfoset = "X891";

/// Readers by the octets that a document begins with. The first match counts; any document matches
/// the last one, text.
constexpr Choice kReaders[] = {
    {"\xE0\0"sv, kFastInfoset},
    {"<?xml encoding='finf'"sv, kFastInfoset},
    {"<?xml version='1.0' encoding='finf'"sv, kFastInfoset},
    {"<?xml version='1.1' encoding='finf'"sv, kFastInfoset},
    {""sv, "XML10"},
};

/// Writers by the ending of the file's name. The first match counts; any name matches the last one,
/// text.
constexpr Choice kWriters[] = {
    {".fi"sv, kFastInfoset}, {".finf"sv, kFastInfoset}, {".x3db"sv, kFastInfoset},
    {".xml"sv, "XML10"},     {""sv, "XML10"},
};

}  // namespace

std::string readerTypeFor(std::string_view firstOctets) {
  const Choice* choice = kReaders;
  while (!firstOctets.starts_with(choice->mark)) ++choice;
  return choice->type;
}

bool isFastInfoset(std::string_view readerType) { return readerType == kFastInfoset; }

std::string writerTypeFor(std::string_view fileName) {
  const Choice* choice = kWriters;
  while (!fileName.ends_with(choice->mark)) ++choice;
  return choice->type;
}

}  // namespace tool
