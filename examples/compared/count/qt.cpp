// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <QFile>
#include <QXmlStreamReader>
#include <cstdio>
#include <iostream>

int main() {
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) {
    std::cerr << "The input cannot be read\n";
    return 1;
  }
  QXmlStreamReader reader(&input);
  unsigned long elements = 0;
  while (!reader.atEnd() && !reader.hasError()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
  }
  if (reader.hasError()) {
    std::cerr << reader.lineNumber() << ':' << reader.columnNumber() + 1 << ": "
              << reader.errorString().toStdString() << '\n';
    return 1;
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
