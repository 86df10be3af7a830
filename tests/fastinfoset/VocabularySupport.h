#pragma once

#include <Tavrin/OwnedVocabulary.h>

#include <sstream>
#include <string>

/// What the tests of OwnedVocabulary share.
namespace vocabulary_test {

/// The document that holds a vocabulary.
inline std::string fileOf(const Tavrin::OwnedVocabulary& vocabulary) {
  std::ostringstream stream;
  vocabulary.write(stream);
  return stream.str();
}

inline Tavrin::OwnedVocabulary readFrom(const std::string& document) {
  std::istringstream stream(document);
  return Tavrin::OwnedVocabulary::read(stream);
}

/// One entry in each table, and what the names need.
inline Tavrin::OwnedVocabulary oneOfEach() {
  Tavrin::OwnedVocabulary vocabulary;
  vocabulary.addRestrictedAlphabet("01");
  vocabulary.addEncodingAlgorithm("u:a");
  vocabulary.addOtherNCName("n");
  vocabulary.addOtherURI("s");
  vocabulary.addAttributeValue("v");
  vocabulary.addCharacters("c");
  vocabulary.addOtherString("t");
  vocabulary.addElementName("u", "l", "p:l");
  vocabulary.addAttributeName("", "b");
  return vocabulary;
}

/// The document that holds it, in the notation of HexOctets.h.
inline constexpr char kFileOfOneOfEach[] =
    "E0 00 00 01 20 0F FF 00 01 '01' 00 02 'u:a' 00 00 'p' 00 00 'u' 01 00 'l' 00 'b'"
    "00 00 'n' 00 00 's' 00 00 'v' 00 00 'c' 00 00 't' 00 03 01 01 00 00 00 01"
    "38 CF 81 81 F0 00 FF";

}  // namespace vocabulary_test
