#include "FIReaderSupport.h"

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

LoggedReader::LoggedReader() {
  log.mergeCharacters = false;
  log.showAlgorithms = true;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
}

std::string LoggedReader::read(const std::string& octets) {
  log.clear();
  std::istringstream stream(octets);
  {
    const CapturedOutput output;
    outcome = outcomeOf([&] { reader.parse(stream); });
    printed = output.text();
  }
  std::string told = log.text();
  if (!printed.empty()) told += "printed(" + EventLog::show(printed) + ")\n";
  if (outcome != "done") return told + outcome + "\n";
  const std::size_t left = octets.size() - static_cast<std::size_t>(stream.tellg());
  if (left > 0) told += std::to_string(left) + " octets left\n";
  return told;
}

std::string readNew(const std::string& octets) { return LoggedReader().read(octets); }

std::string whole(const EventLog::Lines& events) {
  return "startDocument()\n" + join(events) + "endDocument()\n";
}

std::string wholeContent(const EventLog::Lines& events) {
  return "startDocument()\nstartElement(, a, a, [])\n" + join(events) +
         "endElement(, a, a)\nendDocument()\n";
}

std::string failed(const EventLog::Lines& events, const std::string& message) {
  return "startDocument()\n" + join(events) + "SAXException: " + message + "\n";
}

std::string failedContent(const EventLog::Lines& events, const std::string& message) {
  return "startDocument()\nstartElement(, a, a, [])\n" + join(events) + "SAXException: " + message +
         "\n";
}

std::string bigEndian(unsigned long number, int octetCount) {
  std::string result;
  for (int i = octetCount; i-- > 0;) result += static_cast<char>(number >> (8 * i));
  return result;
}

}  // namespace reader_test
