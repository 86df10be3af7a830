#include "options/Vocabularies.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLWriter_X891.h>

#include <CLI/CLI.hpp>
#include <list>

#include "files/Failure.h"
#include "files/VocabularyFile.h"

namespace tool {

const char kVocabularyOptionsHelp[] =
    R"(  --vocabulary FILE
                    names and strings that documents in Fast Infoset refer to by a URI
  --uri URI         that URI; both may stand several times (see tavrin vocabulary --help)
)";

struct Vocabularies::Loaded {
  struct Entry {
    std::string uri;  // Empty for an initial vocabulary.
    Tavrin::OwnedVocabulary vocabulary;
  };
  std::vector<Entry> entries;

  // The same for readers that know the property alone. They change nothing in it.
  std::vector<std::shared_ptr<const Tavrin::ExternalVocabulary>> tables;
  std::list<Tavrin::ExternalVocabulary> structures;
  mutable Tavrin::ExternalVocabularyMap byURI;

  void add(const std::string& file, const std::string& uri) {
    if (byURI.contains(uri)) throw Failure::usage("--uri " + uri + ": it stands twice");
    entries.push_back({uri, readVocabulary(file)});
    if (uri.empty()) return;
    tables.push_back(entries.back().vocabulary.tables());
    byURI[uri] = &structures.emplace_back(*tables.back());
  }
};

void Vocabularies::load(const std::vector<std::string>& files, const std::vector<std::string>& uris,
                        VocabularyUse use) {
  const std::size_t needed = files.size() - (use == VocabularyUse::Copying ? 1 : 0);
  if (uris.size() < needed) {
    throw Failure::usage("--vocabulary " + files[uris.size()] +
                         ": documents refer to it by a URI (see --uri)");
  }
  if (uris.size() > files.size()) {
    throw Failure::usage("--uri " + uris[files.size()] + ": it belongs to no --vocabulary");
  }
  auto loaded = std::make_shared<Loaded>();
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (files[i] == "-") {
      throw Failure::usage("--vocabulary -: standard input may be a document, and no vocabulary");
    }
    if (i < uris.size() && uris[i].empty()) throw Failure::usage("--uri: the URI is empty");
    loaded->add(files[i], i < uris.size() ? uris[i] : std::string());
  }
  loaded_ = std::move(loaded);
}

std::shared_ptr<const Tavrin::ExternalVocabulary> Vocabularies::find(const std::string& uri) const {
  if (!loaded_) return nullptr;
  for (const auto& [known, vocabulary] : loaded_->entries) {
    if (known == uri && !uri.empty()) return vocabulary.tables();
  }
  return nullptr;
}

void Vocabularies::applyTo(Tavrin::XMLReader& reader) const {
  if (!loaded_) return;
  if (auto* const known = dynamic_cast<Tavrin::XMLReader_X891*>(&reader)) {
    for (const auto& [uri, vocabulary] : loaded_->entries) {
      if (!uri.empty()) known->addExternalVocabulary(uri, vocabulary);
    }
    return;
  }
  try {
    reader.setProperty(Tavrin::properties::externalVocabularies, &loaded_->byURI);
  } catch (const Tavrin::SAXNotRecognizedException&) {
    // XML text has no vocabularies.
  }
}

void Vocabularies::applyTo(Tavrin::XMLWriter& writer) const {
  if (!loaded_) return;
  const auto& [uri, vocabulary] = loaded_->entries.back();
  if (auto* const known = dynamic_cast<Tavrin::XMLWriter_X891*>(&writer)) {
    if (uri.empty()) {
      known->setInitialVocabulary(vocabulary);
    } else {
      known->setExternalVocabulary(uri, vocabulary);
    }
  } else if (uri.empty()) {
    throw Failure::usage(
        "--vocabulary without --uri: only a copy by the writer X891 begins with a vocabulary");
  }
}

std::string Vocabularies::withOption(const std::string& message) {
  const std::string told = " (add it to the property external-vocabularies)";
  const std::size_t begin = message.find(told);
  if (begin == std::string::npos) return message;
  return std::string(message).replace(begin, told.size(), " (see --vocabulary and --uri)");
}

void addVocabularyOptions(CLI::App& command, Vocabularies& vocabularies, VocabularyUse use) {
  // The values of an option that was added first are there when the other takes its own.
  const auto uris = std::make_shared<std::vector<std::string>>();
  CLI::Option* const uri =
      command.add_option("--uri", *uris)->type_name("URI")->allow_extra_args(false);
  CLI::Option* const vocabulary =
      command
          .add_option_function<std::vector<std::string>>(
              "--vocabulary",
              [&vocabularies, uris, use](const std::vector<std::string>& files) {
                vocabularies.load(files, *uris, use);
              })
          ->type_name("FILE")
          ->allow_extra_args(false);
  uri->needs(vocabulary);
}

}  // namespace tool
