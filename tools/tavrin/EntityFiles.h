#pragma once

#include <Tavrin/Handlers.h>

#include <exception>
#include <istream>
#include <memory>
#include <string>

namespace tool {

/// Opens external entities that are local files. Relative identifiers count from the folder of the
/// document.
///
/// Readers may keep the exceptions of a resolver to themselves, and take a failed read for the end
/// of an entity, so the first failure is kept here. The streams must not outlive this object.
class EntityFiles : public Tavrin::EntityResolver {
 public:
  /// @param document the name of the document; "-" stands for one in the current folder
  explicit EntityFiles(const std::string& document);

  /// @throws Failure for an identifier that is not that of a file, and for a file that cannot be
  ///         opened
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;
  /// @throws Failure when an entity could not be opened, or not be read to its end
  void check() const;

 private:
  class File;

  std::string pathOf(const std::string& systemId) const;
  /// Keeps the exception that is being handled, unless it is not the first.
  void keepFailure();

  std::string folder_;  // With a slash at its end, or empty.
  std::exception_ptr failure_;
};

}  // namespace tool
