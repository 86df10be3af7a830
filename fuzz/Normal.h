#pragma once

#include "Recording.h"

/// What a document keeps in an encoding (docs/conversion.md), each event as a line. Two documents
/// that differ only in what is lost have the same lines.
std::vector<std::string> inFastInfoset(const Events& events);
std::vector<std::string> inXMLText(const Events& events);
/// The same of a copy of another document: its sections count where the writer did not have to
/// split those of the original.
std::vector<std::string> inXMLText(const Events& events, const Events& original);

/// Ends the program, so that the fuzzer keeps the input, where two documents differ.
void expectEqual(const char* what, const std::vector<std::string>& expected,
                 const std::vector<std::string>& found);

/// Ends the program with a message.
[[noreturn]] void finding(const std::string& what);
