#pragma once

#include <string>
#include <vector>

#include "X891ReaderValues.h"

namespace x891_test {

/// Documents that use all that there is in X.891, for tests that cut or change them.
const std::vector<std::string>& samples();

/// A reader that reads each of them: it knows an application's algorithm and a vocabulary.
class SampleReader : public TypedReader {
 public:
  SampleReader();

 private:
  Tavrin::ExternalVocabulary vocabulary_;
  Tavrin::ExternalVocabularyMap vocabularies_ = {{"v", &vocabulary_}};
};

}  // namespace x891_test
