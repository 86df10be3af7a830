#include "ReaderSupport.h"

#include <WhatIsThrown.h>

#include <exception>
#include <new>

namespace reader_test {

std::string outcomeOf(const std::function<void()>& call) {
  try {
    const std::string what = thrown(call);
    return what == "nothing" ? "done" : what;
  } catch (const std::ios_base::failure&) {
    return "std::ios_base::failure";
  } catch (const std::bad_alloc&) {
    return "std::bad_alloc";
  } catch (const std::exception& exception) {
    return std::string("std::exception: ") + exception.what();
  }
}

std::string fromComponents(const std::string& written) {
  return octets("E0 00 00 01") + octets(written);
}

std::string document(const std::string& written) { return fromComponents("00 " + written); }

std::string documentOfContent(const std::string& written) {
  return document("3C 00 'a' " + written + " FF");
}

std::string whole(const EventLog::Lines& events) {
  return "startDocument()\n" + join(events) + "endDocument()\n";
}

std::string wholeContent(const EventLog::Lines& events) {
  return "startDocument()\nstartElement(, a, a, [])\n" + join(events) +
         "endElement(, a, a)\nendDocument()\n";
}

std::string bigEndian(unsigned long number, int octetCount) {
  std::string result;
  for (int i = octetCount; i-- > 0;) result += static_cast<char>(number >> (8 * i));
  return result;
}

std::string manyNames(char first) {
  std::string children;
  for (char c = 'A'; c <= 'Z'; ++c) children += octets("3C 00") + c + octets("F0");
  for (char c = first; c <= 'z'; ++c) children += octets("3C 00") + c + octets("F0");
  return children + octets("00 F0 1F F0 20 00 F0 20 13 F0 3C 80 F0 3C B3 F0");
}

std::string manyChunks() {
  std::string chunks;
  for (char c = 'a'; c <= 'z'; ++c) chunks += octets("90") + c;
  return chunks + octets("A0 AF B0 00 B0 09");
}

}  // namespace reader_test
