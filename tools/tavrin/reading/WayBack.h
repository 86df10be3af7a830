#pragma once

#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace tool {

/// Sees which references of a document of XML text could not be XML text again once they are Fast
/// Infoset, where a reference has identifiers, and nothing else is left of a declaration. No rule
/// of the text stands here: its writer is asked, with a small document for each entity.
class WayBack {
 public:
  /// @param reader of the document; asked for what that states of itself
  explicit WayBack(Tavrin::XMLReader& reader) : reader_(reader) {}

  void startDTD(const std::string& publicId, const std::string& systemId);
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName);
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId);
  /// @return why the reference has no way back; nothing where it has one, or the entity was asked
  ///         for before
  std::string skippedEntity(const std::string& name);

 private:
  using Declaration = std::function<void(Tavrin::XMLWriter&)>;

  Tavrin::XMLReader& reader_;
  std::string publicId_;
  std::string systemId_;
  std::unordered_map<std::string, Declaration> declarations_;  // What is left of them.
  std::unordered_set<std::string> asked_;
};

}  // namespace tool
