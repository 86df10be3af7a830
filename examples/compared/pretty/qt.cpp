// Indents a document by two spaces for each level: pretty < document.xml
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cstdio>
#include <iostream>

int main() {
  QFile input;
  QFile output;
  if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
    std::cerr << "The input or the output cannot be opened\n";
    return 1;
  }
  QXmlStreamReader reader(&input);
  QXmlStreamWriter writer(&output);
  writer.setAutoFormatting(true);
  writer.setAutoFormattingIndent(2);
  while (!reader.atEnd()) {
    reader.readNext();
    if (reader.hasError() || reader.isWhitespace()) continue;
    writer.writeCurrentToken(reader);
  }
  if (reader.hasError()) {
    std::cerr << reader.lineNumber() << ':' << reader.columnNumber() + 1 << ": "
              << reader.errorString().toStdString() << '\n';
    return 1;
  }
  if (output.flush() && !writer.hasError()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
