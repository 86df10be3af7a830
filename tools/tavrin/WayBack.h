#pragma once

#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace tool {

/// Sees what of a document of XML text could not be XML text again once it is Fast Infoset, where a
/// reference has identifiers and nothing else of a declaration is left. No rule of the text stands
/// here: its writer is asked, with a small document for each entity and notation.
///
/// Operations that return a text return why there is no way back, or nothing where there is one.
class WayBack {
 public:
  /// @param reader of the document; asked for what that states of itself
  explicit WayBack(Tavrin::XMLReader& reader) : reader_(reader) {}

  void startDTD(const std::string& publicId, const std::string& systemId);
  std::string notationDecl(const std::string& name, const std::string& publicId,
                           const std::string& systemId);
  std::string unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId, const std::string& notationName);
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId);
  /// Also returns nothing for an entity that it was asked for before.
  std::string skippedEntity(const std::string& name);

 private:
  using Events = std::function<void(Tavrin::XMLWriter&)>;

  static void nothing(Tavrin::XMLWriter& /*writer*/) {}
  std::string whyRefused(const Events& declaration, const Events& content = nothing) const;

  Tavrin::XMLReader& reader_;
  std::string publicId_;
  std::string systemId_;
  std::unordered_map<std::string, Events> declarations_;  // Of entities, as the copy has them.
  std::unordered_set<std::string> asked_;
};

}  // namespace tool
