#pragma once

#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// What a command does with the vocabularies of its command line.
enum class VocabularyUse {
  Reading,  ///< It reads documents that refer to them.
  Copying   ///< It also writes documents with the last of them.
};

/// The vocabularies that the command line names, and the URIs by which documents refer to them. All
/// that have one are known to readers. Writers use the last: as an external vocabulary if it has a
/// URI, as the initial one of each document otherwise.
///
/// Copies share what was read, and readers must not outlive all of them. Any number of threads may
/// use one at a time.
class Vocabularies {
 public:
  /// Reads them all.
  /// @param uris the first is that of the first file, and so on; only the last file may be without
  /// @throws Failure when one cannot be read, or when files and URIs do not fit each other or the
  ///         use
  void load(const std::vector<std::string>& files, const std::vector<std::string>& uris,
            VocabularyUse use);
  /// The entries of the one that has a URI, or null. They live as long as the pointer.
  std::shared_ptr<const Tavrin::ExternalVocabulary> find(const std::string& uri) const;
  /// Makes them known to a reader of Fast Infoset. Others have no use for them.
  void applyTo(Tavrin::XMLReader& reader) const;
  /// @throws Failure when there is one without a URI, which the writer has no form for
  void applyTo(Tavrin::XMLWriter& writer) const;

  /// The message of a failure and, where a vocabulary is missing, how to give it.
  static std::string withOption(const std::string& message);

 private:
  struct Loaded;
  std::shared_ptr<const Loaded> loaded_;
};

/// Adds --vocabulary and --uri.
void addVocabularyOptions(CLI::App& command, Vocabularies& vocabularies, VocabularyUse use);

/// What these options are, for help texts.
extern const char kVocabularyOptionsHelp[];

}  // namespace tool
