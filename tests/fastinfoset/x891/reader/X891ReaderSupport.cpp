#include "X891ReaderSupport.h"

#include <gtest/gtest.h>

namespace x891_test {

std::string readNew(const std::string& octets) { return X891Reader().read(octets); }

std::string failure(const EventLog::Lines& events, const std::string& message,
                    std::size_t octetsRead) {
  const std::string column = std::to_string(octetsRead);
  return join(events) + "fatalError(" + EventLog::show(message) + ", -1, " + column + ")\n" +
         "SAXParseException: " + message + " (-1:" + column + ")\n";
}

std::string warned(const std::string& version, std::size_t octetsRead, const std::string& told) {
  if (version == "1.0") return told;
  const std::string warning = "warning(XML " + version + " is read by the rules of XML 1.0, -1, " +
                              std::to_string(octetsRead) + ")\n";
  return std::string(told).insert(told.find('\n') + 1, warning);
}

void expectRefused(const std::string& read, const std::string& rest, const std::string& message,
                   const EventLog::Lines& events) {
  EXPECT_EQ(failure(events, message, read.size()), readNew(read + rest))
      << EventLog::showOctets((read + rest).substr(0, 200));
}

namespace {

EventLog::Lines behind(EventLog::Lines first, const EventLog::Lines& events) {
  first.insert(first.end(), events.begin(), events.end());
  return first;
}

}  // namespace

void expectPrologRefused(const std::string& read, const std::string& rest,
                         const std::string& message, const EventLog::Lines& events) {
  expectRefused(document(read), octets(rest), message, behind({"startDocument()"}, events));
}

void expectContentRefused(const std::string& read, const std::string& rest,
                          const std::string& message, const EventLog::Lines& events) {
  expectRefused(document("3C 00 'a' " + read), octets(rest), message,
                behind({"startDocument()", "startElement(, a, a, [])"}, events));
}

}  // namespace x891_test
