#pragma once

#include <string>
#include <vector>

#include "FIReaderSupport.h"
#include "TypedValues.h"

namespace reader_test {

/// One of each algorithm; that of the application is the first of the document's URIs.
inline const std::vector<TypedValue>& typedValues() {
  static const std::vector<TypedValue> values = commonValuesAnd({
      {"float", 6, "8C 1A 05 3F C0 00 00 C0 10 00 00", "30 67 3F C0 00 00 C0 10 00 00", "1.5 -2.25",
       "floats(1.5 -2.25)", "FloatData{1.5 -2.25}"},
      {"double", 7, "8C 1E 05 3F D5 55 55 55 55 55 55", "30 77 3F D5 55 55 55 55 55 55",
       "0.333333333333", "doubles(0.33333333333333331)", "DoubleData{0.333333333333}"},
      {"cdata", 9, "8C 26 00 'x<y'", "30 92 'x<y'", "x<y", "bytes(78 3C 79)", "CDATAData{x<y}"},
      {"application", 32, "8C 82 00 'abc'", "32 02 'abc'", "cba", "", "EncodedData{cba}"},
  });
  return values;
}

/// A document whose initial vocabulary has the URI of the application's algorithm alone.
inline std::string withAlgorithmURI(const std::string& written) {
  return fromComponents("20 04 00 01 0B 'urn:reversed' " + written);
}

using TypedReader = ReaderOfReversed<Tavrin::XMLReader_FI>;

}  // namespace reader_test
