// Writes an array of floats as Fast Infoset, where they stay floats, and reads it back.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

std::string write(const std::vector<float>& numbers) {
  std::ostringstream stream;
  Tavrin::XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  Tavrin::DocumentWriter document(writer);
  document.element("points", numbers);
  document.endDocument();
  return stream.str();
}

std::vector<float> read(const std::string& document) {
  Tavrin::MemoryStream stream(document);
  Tavrin::PullReader reader(stream);
  std::vector<float> numbers;
  while (reader.next()) {
    if (const auto* values = reader.value<std::vector<float>>()) {
      numbers.insert(numbers.end(), values->begin(), values->end());
    }
  }
  return numbers;
}

int main() {
  std::vector<float> numbers;
  for (int i = 0; i < 1000; ++i) numbers.push_back(static_cast<float>(i) / 3);
  try {
    if (read(write(numbers)) == numbers) {
      std::cout << numbers.size() << " floats came back\n";
      return 0;
    }
    std::cerr << "Other floats came back\n";
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
  }
  return 1;
}
