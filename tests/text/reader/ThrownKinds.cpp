#include "ThrownKinds.h"

#include <new>
#include <stdexcept>

#include "TextReaderSupport.h"

const std::vector<Thrown>& thrownKinds() {
  static const std::vector<Thrown> kinds = {
      {"SAXException", [] { throw Tavrin::SAXException("m"); }, "SAXException(m)", true},
      {"SAXNotRecognizedException", [] { throw Tavrin::SAXNotRecognizedException("m"); },
       "SAXException(m)", true},
      {"ApplicationException", [] { throw ApplicationException("m"); }, "SAXException(m)", true},
      {"SAXParseException", [] { throw Tavrin::SAXParseException("m", 7, 9); },
       "SAXParseException(m, 7, 9)", true},
      {"ApplicationParseException", [] { throw ApplicationParseException("m", -1, 0); },
       "SAXParseException(m, -1, 0)", true},
      {"FastInfosetException", [] { throw Tavrin::FastInfosetException("m"); },
       "FastInfosetException(m)", false},
      {"EncodingAlgorithmException", [] { throw Tavrin::EncodingAlgorithmException("m"); },
       "EncodingAlgorithmException(m)", false},
      {"std::runtime_error", [] { throw std::runtime_error("m"); }, "std::runtime_error(m)", false},
      {"std::bad_alloc", [] { throw std::bad_alloc(); }, "std::exception(std::bad_alloc)", false},
      {"int", [] { throw 42; }, "int(42)", false},
      {"const char*", [] { throw "m"; }, "const char*(m)", false},
  };
  return kinds;
}
