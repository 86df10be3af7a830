// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <Tavrin/Tavrin.h>

#include <iostream>

int main() {
  std::ios::sync_with_stdio(false);
  unsigned long elements = 0;
  try {
    Tavrin::PullReader reader(std::cin);
    while (reader.nextElement()) {
      if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
    }
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // What the stream's buffer throws.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
