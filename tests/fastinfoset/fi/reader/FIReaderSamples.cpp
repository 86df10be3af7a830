#include "FIReaderSamples.h"

namespace reader_test {

namespace {

const char* const kTexts[] = {"urn:reversed", nullptr, "third"};
const char* const kNames[][3] = {{"p", "u", "l"}, {nullptr, nullptr, "m"}};

std::string typedChunks() {
  std::string chunks;
  for (const TypedValue& value : typedValues()) chunks += octets(value.chunk);
  return chunks;
}

std::string typedAttributes() {
  std::string attributes;
  for (const TypedValue& value : typedValues()) {
    attributes += octets("78 00 'b'") + octets(value.attributeValue);
  }
  return attributes;
}

std::vector<Sample> makeSamples() {
  return {
      {"empty", document("F0")},
      {"components", fromComponents("7F 02 00 'i' 00 'd' 04 'urn:x' 01 'dd' "
                                    "00 64 01 03 'name' 01 02 'uri' 01 05 'string' "
                                    "C2 80 80 C1 00 'n' 00 'p' C3 81 81 80 C0 00 'm' F0 "
                                    "D0 00 'e' 80 81 D1 00 'f' 00 's' 00 'p' 80 F0 "
                                    "04 'UTF-8' 01 42 '1.0' E2 80 E2 81 F0")},
      {"vocabulary",
       fromComponents("20 0F FF 02 02 'abc' FF 01 0B 'urn:reversed' 01 00 'p' 01 00 'u' "
                      "02 00 'l' 00 'm' 01 00 't' 01 00 's' 02 00 'v' 01 'ww' 02 00 'x' 01 'yy' "
                      "01 00 'c' 02 00 80 03 01 01 81 02 00 81 01 01 80 "
                      "C6 80 F0 E1 80 80 E2 80 78 CF 80 80 F0 01 00 80 01 81 F0 "
                      "A0 A1 8C 82 00 'abc' 00 FF F0")},
      {"external vocabulary",
       fromComponents("20 14 00 0D 'urn:vocabulary' 01 02 'own' 3C 00 'a' 40 00 80 01 81 FF "
                      "8C 80 'x' 8C 84 'y' 8C 8C 'z' FF")},
      {"document type",
       document("E2 00 '1' C7 02 'sys' 02 'pub' E1 00 't' 00 'd' E1 80 FF F0 E1 80 40 'e' "
                "3C 00 'a' F0 E2 80 E1 80 80 F0")},
      {"document type alone", document("C5 00 'p' E1 00 't' 00 'd' FF")},
      {"namespaces",
       document("38 CF 00 'p' 01 'u1' CD 01 'u2' CC CE 00 'q' F0 3F 01 01 00 'a' "
                "78 CF 80 81 F0 3D 02 80 7B 01 01 00 'b' 00 '1' 7B 00 00 03 'lang' 01 'en' F0 "
                "38 F0 3F 00 00 81 FF 38 CD 80 F0 01 F0 FF")},
      {"attributes",
       document("7C 00 'a' 78 00 'b' 00 'x' 78 00 'c' 47 '12345678' 00 80 01 FF 00 10 01 20 "
                "00 08 04 'thirteen more' F0 40 00 80 FF 40 F0 FF F0")},
      {"typed attributes", withAlgorithmURI("7C 00 'a'") + typedAttributes() + octets("FF F0")},
      {"chunks", document("3C 00 'a' 80 'x' 91 'yz' 82 05 'abcdefgh' A0 84 88 00 94 98 00 A1 A2 "
                          "83 00 00 00 01") +
                     std::string(260, 'x') + octets("FF")},
      {"typed content", withAlgorithmURI("3C 00 'a'") + typedChunks() + octets("FF")},
      {"unknown algorithms",
       withAlgorithmURI("3C 00 'a' 8C 20 'x' 8C 7E 02 'abcde' 8C 81 'yx' 8D 00 'y' FF")},
      {"comments and instructions",
       documentOfContent("E2 00 'c' E2 40 'd' E2 80 E2 FF E2 10 E2 20 E1 00 't' 00 'd' E1 80 80 "
                         "E1 80 FF E1 80 10 E1 80 30")},
      {"entity references",
       documentOfContent("C8 00 'e' C9 80 00 'p' CA 00 'f' 00 's' 80 'x' CB 81 80 81")},
      {"terminators",
       document("3C 00 'a' 3C 00 'b' 3C 00 'c' FF 7C 00 'd' 78 00 'b' 00 'x' FF 43 00 00 'y' F0 "
                "80 'z' FF F0")},
      {"many names", document("3C 00 'a'") + manyNames('a') + octets("FF")},
      {"many chunks", document("3C 00 'a'") + manyChunks() + octets("FF")},
  };
}

}  // namespace

const std::vector<Sample>& samples() {
  static const std::vector<Sample> made = makeSamples();
  return made;
}

SampleReader::SampleReader() {
  log.attachPrimitiveTypesTo(reader);
  log.attachAlgorithmsTo(reader);
  vocabulary_.encodingAlgorithms = {kTexts, 2, 3};
  vocabulary_.attributeValues = {kTexts, 3, 3};
  vocabulary_.elementNameSurrogates = {kNames, 2, 4};
  vocabulary_.attributeNameSurrogates = {kNames, 2, 4};
  reader.setProperty(Tavrin::properties::externalVocabularies, &vocabularies_);
}

}  // namespace reader_test
