#include "Trace.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "Trap.h"

using trap::Place;

// --- Trace ---

void Trace::add(std::string_view octets) {
  if (octets.size() > octets_.size() - size_) std::abort();  // The test is too large.
  std::memcpy(octets_.data() + size_, octets.data(), octets.size());
  size_ += octets.size();
}

void Trace::begin(std::string_view event) {
  const bool isText = event == "characters";
  if (!isText || !inText_) {
    add("\n");
    add(event);
    add(" ");
  }
  inText_ = isText;
}

void Trace::argument(std::string_view text) {
  add(text);
  if (!inText_) add("|");
}

// --- TracingHandler ---

void TracingHandler::begin(std::string_view event) {
  isSilent_ = mayGoOn_ && trap::hasSprung();
  trap::throwsOrEnds(Place::handler);
  if (!isSilent_) trace_.begin(event);
}

void TracingHandler::argument(std::string_view text) {
  if (!isSilent_) trace_.argument(text);
}

void TracingHandler::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Tavrin::Attributes& attributes) {
  add("startElement", uri, localName, qName);
  for (int i = 0; i < attributes.getLength(); ++i) {
    argument(attributes.getURI(i));
    argument(attributes.getQName(i));
    argument(attributes.getType(i));
    argument(attributes.getValue(i));
  }
}

void TracingHandler::booleans(const std::vector<bool>& data) {
  add("booleans");
  for (const bool item : data) argument(item ? "1" : "0");
}

// --- TrappedInput ---

std::streambuf::int_type TrappedInput::underflow() {
  if (position_ == octets_.size()) return traits_type::eof();
  if (!isAsked_ && trap::throwsOrEnds(Place::input)) {
    octets_ = octets_.substr(0, position_);
    return traits_type::eof();
  }
  isAsked_ = true;
  return traits_type::to_int_type(octets_[position_]);
}

std::streambuf::int_type TrappedInput::uflow() {
  const int_type octet = underflow();
  if (octet == traits_type::eof()) return octet;
  isAsked_ = false;
  ++position_;
  return octet;
}

std::streamsize TrappedInput::xsgetn(char* target, std::streamsize count) {
  for (std::streamsize i = 0; i < count; ++i) {
    const int_type octet = uflow();
    if (octet == traits_type::eof()) return i;
    target[i] = traits_type::to_char_type(octet);
  }
  return count;
}

// --- TrappedOutput ---

std::streambuf::int_type TrappedOutput::overflow(int_type octet) {
  if (trap::throwsOrEnds(Place::output)) return traits_type::eof();
  const char c = traits_type::to_char_type(octet);
  trace_.add({&c, 1});
  return octet;
}

std::streamsize TrappedOutput::xsputn(const char* octets, std::streamsize count) {
  for (std::streamsize i = 0; i < count; ++i) {
    if (overflow(traits_type::to_int_type(octets[i])) == traits_type::eof()) return i;
  }
  return count;
}
