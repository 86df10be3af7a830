#include "FIWriterProbe.h"

namespace writer_test {

using namespace Tavrin;

std::string hex(const std::string& notation) { return EventLog::showOctets(::octets(notation)); }

std::string document(const std::string& body) { return hex("E0 00 00 01 00" + body); }

std::string textOf(std::size_t length) {
  std::string text(length, 'x');
  for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>('a' + i % 26);
  return text;
}

std::string shortText(std::size_t number) {
  std::string text;
  do {
    text += static_cast<char>('a' + number % 26);
    number /= 26;
  } while (number > 0);
  return text;
}

}  // namespace writer_test
