#pragma once

#include <string>
#include <vector>

#include "FIReaderValues.h"

namespace reader_test {

/// A document that is read to its end.
struct Sample {
  const char* name;
  std::string octets;
};

/// Documents in which every kind of item stands, for tests that cut, change or interrupt them.
const std::vector<Sample>& samples();

/// A reader that knows what the samples refer to, and a log of all that it tells. In it, typed
/// content reaches the handler of encoding algorithms where that of primitive types does not take
/// it.
class SampleReader : public TypedReader {
 public:
  SampleReader();

 private:
  Tavrin::ExternalVocabulary vocabulary_;
  Tavrin::ExternalVocabularyMap vocabularies_ = {{"urn:vocabulary", &vocabulary_}};
};

}  // namespace reader_test
