#pragma once

#include <Tavrin/XMLWriter.h>

#include <cstdint>
#include <memory>
#include <string>

#include "measuring/Timing.h"
#include "options/CanonicalOptions.h"
#include "options/CompressionOptions.h"
#include "options/LayoutOptions.h"
#include "options/ReadingOptions.h"
#include "options/TypingOptions.h"

namespace tool {

/// What the command line says about copying a document.
struct ConversionOptions {
  std::string to;         ///< The type of writer; empty to go by the name of the copy.
  std::string usualType;  ///< If not empty, that without `to`, whatever the name of the copy.
  bool noDeclaration = false;
  std::string encoding;  ///< Of text; empty for UTF-8.
  bool force = false;
  bool makesFolders = false;  ///< That of the copy is made where it is not there.
  bool lossy = false;
  std::uint64_t document = 0;  ///< The one to copy, counted from 1; 0 for all.
  LayoutOptions layout;
  CanonicalOptions canonical;
  ReadingOptions reading = ReadingOptions(Properties::Owners::ReadersAndWriters);
  TypingOptions typing;
  CompressionOptions compression;
  TimingOptions timing;
};

/// A writer for a copy, as the options want it.
/// @param out the name of the copy, which may tell the type
/// @throws Tavrin::SAXException when there is no such type, or an option is none of its
std::unique_ptr<Tavrin::XMLWriter> createWriterFor(const std::string& out,
                                                   const ConversionOptions& options);

/// Refuses what readers and writers of this kind would refuse for every document.
/// @throws Tavrin::SAXException, Failure likewise
void checkOptions(const std::string& out, const ConversionOptions& options);

/// Whether a writer writes Fast Infoset: it takes typed content.
bool writesFastInfoset(Tavrin::XMLWriter& writer);

/// How many octets went in and out.
struct CopiedOctets {
  std::uint64_t read = 0;
  std::uint64_t written = 0;
};

/// Copies the documents of a file to another, each with a writer of its own.
/// @param in, out names of files; "-" is standard input or output
/// @throws Failure when the copy cannot be made; Tavrin::SAXException when there is no such type
CopiedOctets convertFile(const ConversionOptions& options, const std::string& in,
                         const std::string& out);

}  // namespace tool
