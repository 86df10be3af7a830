#pragma once

#include <Tavrin/Tavrin.h>

#include <memory>
#include <string>
#include <vector>

/// A document of the suite, as its catalog describes it.
struct SuiteDocument {
  std::string id;      ///< The catalog and the name in it, such as "xmltest/valid-sa-001".
  std::string type;    ///< "valid", "invalid", "not-wf" or "error".
  std::string path;    ///< Of the document.
  std::string output;  ///< Path of its canonical form, empty where there is none.
  bool namespaces;     ///< Whether it may be read with namespaces.
};

/// The documents of all catalogs, read with "XML10".
/// @param folder the suite's
std::vector<SuiteDocument> readCatalogs(const std::string& folder);

/// The octets of a file. The test fails where it cannot be read.
std::string contentOf(const std::string& path);

/// Opens external entities by their system identifiers, which are paths of files.
class FileResolver : public Tavrin::EntityResolver {
 public:
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;
};
