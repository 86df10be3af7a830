// Copies a document with meals in place of dishes: rename < document.xml
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cstdio>
#include <iostream>

void copyToken(const QXmlStreamReader& reader, QXmlStreamWriter& writer) {
  if (!reader.isStartElement() || reader.qualifiedName() != QStringLiteral("dish")) {
    writer.writeCurrentToken(reader);
    return;
  }
  writer.writeStartElement(reader.namespaceUri().toString(), QStringLiteral("meal"));
  for (const QXmlStreamNamespaceDeclaration& declaration : reader.namespaceDeclarations()) {
    writer.writeNamespace(declaration.namespaceUri().toString(), declaration.prefix().toString());
  }
  writer.writeAttributes(reader.attributes());
}

int main() {
  QFile input;
  QFile output;
  if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
    std::cerr << "The input or the output cannot be opened\n";
    return 1;
  }
  QXmlStreamReader reader(&input);
  QXmlStreamWriter writer(&output);
  while (!reader.atEnd()) {
    reader.readNext();
    if (!reader.hasError()) copyToken(reader, writer);
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
