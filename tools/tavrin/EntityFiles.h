#pragma once

#include <Tavrin/Handlers.h>

#include <istream>
#include <memory>
#include <string>

namespace tool {

/// Opens external entities that are local files. Relative identifiers count from the folder of the
/// document.
class EntityFiles : public Tavrin::EntityResolver {
 public:
  /// @param document the name of the document; "-" stands for one in the current folder
  explicit EntityFiles(const std::string& document);

  /// @throws Failure for an identifier that is not that of a file, and for a file that cannot be
  ///         opened
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

 private:
  std::string folder_;  // With a slash at its end, or empty.
};

}  // namespace tool
