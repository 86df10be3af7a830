#pragma once

#include <string>

#include "HexOctets.h"
#include "Workplace.h"

class Inspecting : public Workplace {
 protected:
  /// What inspect prints of octets that it finds nothing wrong with; assemble makes the octets of
  /// it.
  void expectText(const std::string& document, const std::string& text,
                  ToolProcess::Arguments options = {}) const {
    writeFile("in.fi", document);
    options.insert(options.begin(), "inspect");
    options.emplace_back("in.fi");
    EXPECT_EQ(run(options), (Result{0, text, ""}));
    EXPECT_EQ(run({"assemble"}, text), (Result{0, document, ""}));
  }

  /// What it prints of octets with which something is wrong.
  void expectFailure(const std::string& document, const std::string& text,
                     const std::string& message) const {
    writeFile("in.fi", document);
    EXPECT_EQ(run({"inspect", "in.fi"}), (Result{1, text, "in.fi: " + message + "\n"}));
    EXPECT_EQ(run({"assemble"}, text), (Result{0, document, ""}));
  }
};

inline const std::string kHeader =
    "00000000: e0 00 00 01              # Fast Infoset (12.6, 12.7), version 1 of the standard\n";
inline const std::string kRoot =
    kHeader +
    "00000004: 00                       # document (C.2)\n"
    "00000005: 3c                       #   element (C.3, C.18), with a "
    "literal name\n"
    "00000006: 00 61                    #     local name (C.13, C.22): \"a\" "
    "-> LOCAL NAME[1] -> ELEMENT NAME[1]  /a\n";
