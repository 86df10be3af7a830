// Text as values of all types, and back; and under the type `auto`, which must not change it.
#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Normal.h"

namespace {

using namespace Tavrin;

/// What is parsed prints as text that is parsed to the same value.
void parse(int algorithm, const std::string& text) {
  try {
    const std::string printed = encodedDataFromText(algorithm, text)->toString();
    if (encodedDataFromText(algorithm, printed)->toString() != printed) {
      finding("algorithm " + std::to_string(algorithm) + " prints " + printed);
    }
  } catch (const EncodingAlgorithmException&) {
    // A refusal is an answer.
  }
}

struct Text : DefaultHandler {
  void characters(const std::string& more) override { text += more; }
  void object(const std::string& /*uri*/, int /*index*/, const EncodedData& data) override {
    text += data.toString();
  }
  std::string text;
};

void filter(const std::string& text) {
  Text heard;
  TypingRules rules;
  rules.add("*", "auto");
  TypedContentFilter typed(rules);
  typed.setContentHandler(&heard);
  typed.setProperty(properties::encodingAlgorithmContentHandler,
                    static_cast<EncodingAlgorithmContentHandler*>(&heard));
  typed.startDocument();
  typed.startElement("", "a", "a", AttributesImpl());
  typed.characters(text);
  typed.endElement("", "a", "a");
  if (heard.text != text) finding("the text is now " + heard.text);
}

void read(const std::string& text) {
  try {
    MemoryStream stream(text);
    TypingRules::read(stream);
  } catch (const SAXException&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (int algorithm = 0; algorithm <= algorithms::cdata; ++algorithm) parse(algorithm, text);
  filter(text);
  read(text);
  return 0;
}
