#pragma once

#include <Tavrin/Exceptions.h>

#include <stdexcept>
#include <string>

/// What an action throws: the name of the exception's class, a colon and the message, such as
/// `SAXException: no such thing`; or `nothing`. An exception of any other class passes on.
template <typename Action>
std::string thrown(Action action) {
  try {
    action();
  } catch (const Tavrin::SAXParseException& e) {
    return "SAXParseException: " + e.getMessage() + " (" + std::to_string(e.getLineNumber()) + ":" +
           std::to_string(e.getColumnNumber()) + ")";
  } catch (const Tavrin::SAXNotRecognizedException& e) {
    return "SAXNotRecognizedException: " + e.getMessage();
  } catch (const Tavrin::SAXException& e) {
    return "SAXException: " + e.getMessage();
  } catch (const Tavrin::EncodingAlgorithmException& e) {
    return "EncodingAlgorithmException: " + e.getMessage();
  } catch (const Tavrin::FastInfosetException& e) {
    return "FastInfosetException: " + e.getMessage();
  } catch (const std::out_of_range& e) {
    return std::string("std::out_of_range: ") + e.what();
  }
  return "nothing";
}
