#pragma once

#include <Tavrin/XMLReader_X891.h>

#include <string>

#include "ReaderSupport.h"

// Documents are written octet by octet from X.891, annex C, and what must be told of them by hand.

namespace x891_test {

using reader_test::bigEndian;
using reader_test::document;
using reader_test::documentOfContent;
using reader_test::fromComponents;
using reader_test::outcomeOf;
using reader_test::whole;
using reader_test::wholeContent;

using X891Reader = reader_test::ReaderWithLog<Tavrin::XMLReader_X891>;

/// What a new reader tells of a document.
std::string readNew(const std::string& octets);

/// What is told of a failure behind these events, when so many octets have been read.
std::string failure(const EventLog::Lines& events, const std::string& message,
                    std::size_t octetsRead);

/// What is told of a document, with the warning about its version of XML behind startDocument, when
/// so many octets have been read; there is none for 1.0.
std::string warned(const std::string& version, std::size_t octetsRead, const std::string& told);

/// Expects that a new reader refuses a document whose octets it reads up to `rest`.
/// @param events all of them, from startDocument on
void expectRefused(const std::string& read, const std::string& rest, const std::string& message,
                   const EventLog::Lines& events = {});

/// Likewise of a document without optional components that fails before its root element.
void expectPrologRefused(const std::string& read, const std::string& rest,
                         const std::string& message, const EventLog::Lines& events = {});

/// Likewise of one that fails in the content of the element `a`.
void expectContentRefused(const std::string& read, const std::string& rest,
                          const std::string& message, const EventLog::Lines& events = {});

}  // namespace x891_test
