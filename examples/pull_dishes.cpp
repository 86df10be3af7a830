// Prints the dishes of a menu, be it XML text or Fast Infoset: pull_dishes < menu.xml
#include <Tavrin/Tavrin.h>

#include <iostream>

void printDishes(Tavrin::PullReader& menu) {
  while (menu.nextElement()) {
    if (menu.localName() == "dish") {
      std::cout << menu.attribute("name").value_or("?") << '\n';
    } else if (menu.localName() == "price") {
      std::cout << "  " << menu.attribute("currency").value_or("?") << ' ' << menu.readText()
                << '\n';
    }
  }
}

int main() {
  std::ios::sync_with_stdio(false);
  try {
    Tavrin::PullReader reader(std::cin);
    printDishes(reader);
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // Of the input: a directory is none.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
