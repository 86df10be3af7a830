// Writes an array of floats as text, with the digits that keep them, and reads it back.
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <iostream>
#include <stdexcept>
#include <vector>

QByteArray write(const std::vector<float>& numbers) {
  QByteArray document;
  QXmlStreamWriter writer(&document);
  writer.writeStartDocument();
  writer.writeStartElement("points");
  for (const float number : numbers) writer.writeCharacters(QString::number(number, 'g', 9) + ' ');
  writer.writeEndDocument();
  return document;
}

std::vector<float> read(const QByteArray& document) {
  QXmlStreamReader reader(document);
  reader.readNextStartElement();
  const QString text = reader.readElementText();
  while (!reader.atEnd() && !reader.hasError()) reader.readNext();
  if (reader.hasError()) throw std::runtime_error(reader.errorString().toStdString());
  std::vector<float> numbers;
  for (const QString& number : text.split(' ', Qt::SkipEmptyParts)) {
    numbers.push_back(number.toFloat());
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
  } catch (const std::runtime_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
