#include "X891ReaderSamples.h"

namespace x891_test {

namespace {

const char* const kTexts[] = {"p", "q"};
const char* const kAlphabets[] = {"ab", "xyz"};
const char* const kURIs[] = {"u", "urn:reversed"};
const char* const kNames[][3] = {{"p", "u", "l"}, {nullptr, nullptr, "m"}};

std::string typedChunks() {
  std::string chunks;
  for (const TypedValue& value : kTypedValues) chunks += octets(value.chunk);
  return chunks + octets("8C 26 00 'x<y' 9C 24 'z'");
}

std::string typedAttributes() {
  std::string attributes;
  char name = 'b';
  for (const TypedValue& value : kTypedValues) {
    attributes += octets("78 00") + name++ + octets(value.attributeValue);
  }
  return attributes;
}

std::vector<std::string> makeSamples() {
  return {
      document("3C 00 'a' FF"),
      "<?xml version='1.0' encoding='finf' standalone='yes'?>" + document("3C 00 'a' FF"),
      // All components.
      fromComponents("7F 00 00 'i' 00 'd' 00 04 00 00 'x' C2 00 'n' 00 's' C1 00 'o' 00 't' F0 "
                     "D0 00 'e' 00 'f' 80 D1 00 'g' 80 81 81 F0 04 'UTF-8' 01 02 '1.1' "
                     "E2 00 'c' C7 80 81 E1 00 'q' FF F0 38 CF 00 'p' 00 'u' F0 "
                     "3F 81 81 00 'a' 38 CE 81 F0 3C 00 'b' E2 80 FF F0"),
      // A whole initial vocabulary, all of it in use.
      fromComponents("20 1F FF 00 'v' 01 01 'ab' 02 'xyz' 00 0B 'urn:reversed' 01 00 'r' 00 's' "
                     "01 00 'w' 00 'x' 01 00 'd' 00 'e' 00 00 't' 00 00 'y' 01 00 'v' 11 00 'z' "
                     "01 01 'vw' 20 00 12 00 30 00 A1 01 00 02 03 03 03 02 01 00 03 00 00 "
                     "C6 82 E1 80 80 F0 78 CF 81 81 CF 83 83 F0 3F 81 81 80 "
                     "00 80 03 83 F0 A0 A2 A3 88 3C 1F 88 44 1F 8C 7C 'a' 8C 80 'b' 8C 84 'd' "
                     "00 F0 03 F0 04 F0 E2 82 FF"),
      // Namespaces, declared again and undeclared inside.
      document("78 CF 00 'p' 00 'u' CD 81 F0 3D 81 00 'a' 7B 81 81 00 'b' 40 'x' "
               "7B 80 80 03 'lang' 41 'en' F0 38 CF 81 00 'w' CC F0 3C 00 'c' F0 "
               "40 00 80 FF 38 CD 82 F0 3D 82 80 FF F0"),
      // Strings in all formats, with and without the bit that adds.
      document("7C 00 'a' 78 00 'b' 48 00 '123456789' 78 00 'c' 51 00 'v' 78 00 'd' 60 01 12 C5 "
               "78 00 'e' 80 78 00 'f' FF F0 82 00 'x' C3 A9 96 01 D8 34 DD 1E 98 01 12 3F "
               "88 06 02 20 03 A0 2A 03 A0 A1 E2 43 'note' E2 80 E1 00 't' 11 00 'w' E1 80 80 "
               "C8 00 'e' CB 81 00 's' 00 'i' FF"),
      withAlgorithmURI("7C 00 'a'") + typedAttributes() + octets("F0") + typedChunks() +
          octets("FF"),
      // Elements in a row and in each other, with all numbers of terminators.
      document("3C 00 'a' 3C 00 'b' F0 00 00 00 01 FF FF 01 FF F0"),
      document("3C 00 'a' F0 E2 00 'c' E1 00 'p' FF F0"),
      document("3C 00 'a'") + reader_test::manyNames('b') + octets("FF"),
      document("3C 00 'a'") + reader_test::manyChunks() + octets("FF"),
      document("3C 40 00") + std::string(65, 'n') + octets("83 00 00 00 00") +
          std::string(259, 't') + octets("E2 0C 00 00 00 00") + std::string(265, 'c') +
          octets("FF"),
  };
}

}  // namespace

const std::vector<std::string>& samples() {
  static const std::vector<std::string> made = makeSamples();
  return made;
}

SampleReader::SampleReader() {
  log.attachAlgorithmsTo(reader);
  vocabulary_.restrictedAlphabets = {kAlphabets, 2, 2};
  vocabulary_.encodingAlgorithms = {kURIs, 2, 2};
  vocabulary_.prefixes = {kTexts, 2, 2};
  vocabulary_.namespaceNames = {kURIs, 2, 2};
  vocabulary_.localNames = {kTexts, 2, 2};
  vocabulary_.otherNCNames = {kTexts, 2, 3};
  vocabulary_.otherURIs = {kURIs, 2, 2};
  vocabulary_.attributeValues = {kTexts, 2, 3};
  vocabulary_.contentCharacterChunks = {kTexts, 2, 2};
  vocabulary_.otherStrings = {kTexts, 2, 2};
  vocabulary_.elementNameSurrogates = {kNames, 2, 3};
  vocabulary_.attributeNameSurrogates = {kNames, 2, 3};
  reader.setProperty(Tavrin::properties::externalVocabularies, &vocabularies_);
}

}  // namespace x891_test
