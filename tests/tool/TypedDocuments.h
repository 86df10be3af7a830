#pragma once

#include <string>

#include "HexOctets.h"

/// Fast Infoset documents for the tests of the tool, octet by octet.
namespace typed {

inline const std::string kHeader = "E0 00 00 01 00 ";

/// An element `a` with content.
inline std::string element(const std::string& content) {
  return octets(kHeader + "3C 00 'a' " + content + " FF");
}

/// One chunk of every kind of typed content that has an algorithm.
inline const std::string kContents =
    "8C 0A 01 0001 FFFE "                            // shorts
    "8C 0E 05 00000001 FFFFFFFF "                    // ints
    "8C 12 05 FFFFFFFFFFFFFFFF "                     // longs
    "8C 14 1A "                                      // booleans
    "8C 1A 0D 3DCCCCCD 7FC00000 7F800000 FF800000 "  // floats
    "8C 1E 0D 3FB999999999999A C000000000000000 "    // doubles
    "8C 02 00 010203 "                               // hexadecimal
    "8C 06 00 FF00FE "                               // base64
    "8C 24 '<' ";                                    // CDATA
inline const std::string kContentsAsText =
    "1 -2"
    "1 -1"
    "-1"
    "true false true"
    "0.1 NaN INF -INF"
    "0.1 -2"
    "010203"
    "/wD+"
    "<![CDATA[<]]>";

/// All of it, in an element whose attributes are a typed value (the int 7) and a text.
inline std::string document() {
  return octets(kHeader + "7C 00 'a' 78 00 'x' 30 33 00000007 78 00 'y' 40 '1' F0 " + kContents +
                "FF");
}
inline const std::string kDocumentAsText = "<a x='7' y='1'>" + kContentsAsText + "</a>";

/// The content of an algorithm that the standard numbers and the types "FI" do not have: uuid.
inline std::string unknownBuiltIn(const std::string& octet = "AB") {
  return element("8C 20 " + octet);
}

/// The content of an application's algorithm: number 31, "urn:u" in the document's table.
inline std::string unknownOfApplication(const std::string& value = "ABCD") {
  return octets("E0 00 00 01 20 04 00 00 04 'urn:u' 3C 00 'a' 8C 7D " + value + " FF");
}

}  // namespace typed
