#pragma once

#include <Tavrin/Handlers.h>

#include <exception>
#include <istream>
#include <memory>
#include <set>
#include <string>

namespace tool {

/// Which external entities are read.
enum class EntityAccess {
  None,
  Folder,  ///< Those that are files in the folder of the document, or below it.
  Any      ///< Those that are files.
};

/// Opens external entities that are local files. Relative identifiers count from the folder of the
/// document.
///
/// An identifier that is not that of a file is passed over: the reader takes the entity for one
/// that is not read. So is a file that is not there, that is no regular file, or that is outside of
/// the folder, behind symbolic links, with one warning for each identifier.
///
/// Readers take a failed read for the end of an entity, so the first failure is kept here. The
/// streams must not outlive this object.
class EntityFiles : public Tavrin::EntityResolver {
 public:
  /// @param document the name of the document; "-" stands for one in the current folder
  EntityFiles(const std::string& document, EntityAccess access);

  /// Itself, or null where no entities are read: the resolver for a reader.
  Tavrin::EntityResolver* resolver() { return access_ == EntityAccess::None ? nullptr : this; }

  /// Null for an entity that is passed over.
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;
  /// @throws Failure when an entity could not be read to its end
  void check() const;

 private:
  class File;

  std::unique_ptr<std::istream> open(const std::string& systemId, const std::string& name);
  std::unique_ptr<std::istream> passOver(const std::string& systemId, const std::string& reason);

  std::string document_;
  EntityAccess access_;
  std::string folder_;                // As it is named, with a slash at its end, or empty.
  std::set<std::string> passedOver_;  // With a warning.
  std::exception_ptr failure_;
};

}  // namespace tool
