// A filter of lines for engines that give each worker the names of documents: it reads names from
// standard input, and prints a line for each with a tab between name and result.
// find archive -name '*.fi' | count_elements
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

struct Counter : Tavrin::DefaultHandler {
  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& /*qName*/,
                    const Tavrin::Attributes& /*attributes*/) override {
    ++elements;
  }
  unsigned long elements = 0;
};

int main() {
  std::ios::sync_with_stdio(false);
  for (std::string name; std::getline(std::cin, name);) {
    Counter counter;
    try {
      Tavrin::parseFile(name, counter);
      std::cout << name << '\t' << counter.elements << '\n';
    } catch (const Tavrin::SAXException& failure) {
      // One document that fails is a result like others: it must not end the work on all.
      std::cout << name << '\t' << "failed: " << failure.getMessage() << '\n';
    }
  }
  return std::cout.flush() ? 0 : 1;
}
