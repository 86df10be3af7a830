#pragma once

#include <Tavrin/Tavrin.h>

#include <cstdint>

/// Random documents, the same for the same seed wherever they are made.
namespace agreement {

/// Where a run over random documents begins: what the environment variable TAVRIN_SEED says, or 1.
std::uint64_t firstSeed();

/// Whoever receives a document: a writer, or a model of one.
struct Receiver {
  Tavrin::ContentHandler& content;
  Tavrin::LexicalHandler& lexical;
  Tavrin::DTDHandler& dtd;
  Tavrin::DeclHandler& declarations;
  Tavrin::PrimitiveTypeContentHandler& primitives;
  Tavrin::EncodingAlgorithmContentHandler& algorithms;
};

/// One that is all of these handlers.
template <typename Handlers>
Receiver receiverOf(Handlers& all) {
  return {all, all, all, all, all, all};
}

/// Sends a random document that the writer accepts and that can be read back: elements deep and
/// wide, with namespaces, attributes of text and of every type, text of every class of length,
/// CDATA sections, comments, processing instructions, typed content, and what leaves no trace.
///
/// It never repeats a short text that sixteen others came before.
/// @param copyable without what a copy of the document, made by reading and writing, does not keep:
///                 a bit of an unknown algorithm's field that is not read; sections and typed
///                 content that are empty, which end a text and fill up a terminator; and sections
///                 made as typed content, which do not take in the text in front of them
void sendRandomDocument(std::uint64_t seed, const Receiver& receiver, bool copyable = false);

}  // namespace agreement
