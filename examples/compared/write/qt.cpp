// Writes a picture and a message: write svg "Fish & chips", write soap FISH
#include <QFile>
#include <QXmlStreamWriter>
#include <cstdio>
#include <iostream>
#include <string>

void writePicture(QXmlStreamWriter& writer, const QString& title) {
  const QString svg = "http://www.w3.org/2000/svg";
  writer.writeStartDocument();
  writer.writeDefaultNamespace(svg);
  writer.writeStartElement(svg, "svg");
  writer.writeAttribute("viewBox", "0 0 100 40");
  writer.writeTextElement(svg, "title", title);
  writer.writeComment(" Three plates ");
  for (const int x : {20, 50, 80}) {
    writer.writeEmptyElement(svg, "circle");
    writer.writeAttribute("cx", QString::number(x));
    writer.writeAttribute("cy", QString::number(20));
    writer.writeAttribute("r", QString::number(7.5));
  }
  writer.writeEndDocument();
}

void writeMessage(QXmlStreamWriter& writer, const QString& symbol) {
  const QString soap = "http://schemas.xmlsoap.org/soap/envelope/";
  const QString quotes = "urn:example:quotes";
  writer.writeStartDocument();
  writer.writeNamespace(soap, "e");
  writer.writeNamespace(quotes, "q");
  writer.writeStartElement(soap, "Envelope");
  writer.writeStartElement(soap, "Header");
  writer.writeStartElement(quotes, "token");
  writer.writeAttribute(soap, "mustUnderstand", "1");
  writer.writeCharacters("a<b");
  writer.writeEndElement();
  writer.writeEndElement();
  writer.writeStartElement(soap, "Body");
  writer.writeStartElement(quotes, "GetPrice");
  writer.writeTextElement(quotes, "symbol", symbol);
  writer.writeEndDocument();
}

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  QFile output;
  if (!output.open(stdout, QIODevice::WriteOnly)) {
    std::cerr << "The output cannot be opened\n";
    return 1;
  }
  QXmlStreamWriter writer(&output);
  if (argv[1] == std::string("svg")) {
    writePicture(writer, argv[2]);
  } else {
    writeMessage(writer, argv[2]);
  }
  if (output.flush() && !writer.hasError()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
