// Copies a document with meals in place of dishes: rename < document.xml
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cstdio>
#include <iostream>

// The namespaces are written first, because the writer makes up prefixes that it does not know yet.
void copyStart(const QXmlStreamReader& reader, QXmlStreamWriter& writer) {
  const bool isDish = reader.qualifiedName() == QStringLiteral("dish");
  for (const QXmlStreamNamespaceDeclaration& declaration : reader.namespaceDeclarations()) {
    const QString uri = declaration.namespaceUri().toString();
    if (declaration.prefix().isEmpty()) {
      writer.writeDefaultNamespace(uri);
    } else {
      writer.writeNamespace(uri, declaration.prefix().toString());
    }
  }
  writer.writeStartElement(reader.namespaceUri().toString(),
                           isDish ? "meal" : reader.name().toString());
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
  while (!reader.atEnd() && !reader.hasError()) {
    reader.readNext();
    if (reader.hasError()) continue;
    if (reader.isStartElement()) {
      copyStart(reader, writer);
    } else {
      writer.writeCurrentToken(reader);
    }
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
