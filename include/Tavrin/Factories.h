/// @file
/// The registries of readers and writers by name. This header alone is enough to create and use
/// them.
///
/// Names match without regard to the case of ASCII letters, whatever the locale. The library
/// registers the readers "Expat", "FI", "X891" and "XML10" and the writers "FI", "X891", "XML" and
/// "XML10"; an application adds a type of its own by a static XMLReaderType or XMLWriterType.
///
/// Any number of threads may create readers and writers, and get names, at the same time. Nothing
/// is locked, so no type may be registered or removed while another thread uses the factory of its
/// kind: that is meant for static initialisation and the end of the program. A library with types
/// of its own must be loaded and unloaded while no other thread creates objects.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Registers a type of reader for as long as the record lives.
class TAVRIN_API XMLReaderType {
 public:
  /// Creates a reader, which the caller owns.
  using CreateFunction = std::unique_ptr<XMLReader> (*)();

  /// Registers the type. A type registered earlier under the same name is replaced.
  XMLReaderType(const std::string& name, CreateFunction create);
  /// Removes the name from the registry, also where a later record has replaced this one.
  ~XMLReaderType();
  XMLReaderType(const XMLReaderType&) = delete;
  XMLReaderType& operator=(const XMLReaderType&) = delete;

  const std::string& getName() const { return name_; }  ///< As it was given.

 private:
  friend class XMLReaderFactory;

  std::string name_;
  CreateFunction create_;
};

/// Creates readers by the name of their type.
class TAVRIN_API XMLReaderFactory {
 public:
  XMLReaderFactory() = delete;

  static void addType(const XMLReaderType* type);     ///< Called by the record's constructor.
  static void removeType(const XMLReaderType* type);  ///< Called by the record's destructor.

  /// A new reader of the named type.
  /// @throws SAXException when no such type is registered
  static std::unique_ptr<XMLReader> createXMLReader(const std::string& name);
  static std::unique_ptr<XMLReader> createXMLReader();  ///< A new reader of the type "Expat".

  /// The registered names as their records spell them, ordered by their lower-case form.
  static std::vector<std::string> getTypeNames();

 private:
  TAVRIN_LOCAL static std::map<std::string, const XMLReaderType*>* typeMap_;
};

/// Registers a type of writer for as long as the record lives.
class TAVRIN_API XMLWriterType {
 public:
  /// Creates a writer, which the caller owns.
  using CreateFunction = std::unique_ptr<XMLWriter> (*)();

  /// Registers the type. A type registered earlier under the same name is replaced.
  XMLWriterType(const std::string& name, CreateFunction create);
  /// Removes the name from the registry, also where a later record has replaced this one.
  ~XMLWriterType();
  XMLWriterType(const XMLWriterType&) = delete;
  XMLWriterType& operator=(const XMLWriterType&) = delete;

  const std::string& getName() const { return name_; }  ///< As it was given.

 private:
  friend class XMLWriterFactory;

  std::string name_;
  CreateFunction create_;
};

/// Creates writers by the name of their type.
class TAVRIN_API XMLWriterFactory {
 public:
  XMLWriterFactory() = delete;

  static void addType(const XMLWriterType* type);     ///< Called by the record's constructor.
  static void removeType(const XMLWriterType* type);  ///< Called by the record's destructor.

  /// A new writer of the named type.
  /// @throws SAXException when no such type is registered
  static std::unique_ptr<XMLWriter> createXMLWriter(const std::string& name);
  static std::unique_ptr<XMLWriter> createXMLWriter();  ///< A new writer of the type "XML".

  /// The registered names as their records spell them, ordered by their lower-case form.
  static std::vector<std::string> getTypeNames();

 private:
  TAVRIN_LOCAL static std::map<std::string, const XMLWriterType*>* typeMap_;
};

}  // namespace Tavrin
