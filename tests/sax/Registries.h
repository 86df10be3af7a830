#pragma once

#include <Tavrin/Factories.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <istream>
#include <memory>
#include <string>
#include <vector>

// The two registries under common names, so that every test of one is a test of the other.

struct Readers {
  using Base = Tavrin::XMLReader;
  using Type = Tavrin::XMLReaderType;
  using Factory = Tavrin::XMLReaderFactory;

  static constexpr char defaultName[] = "Expat";
  static constexpr const char* defaultSpellings[] = {"Expat", "expat", "EXPAT", "eXpAt"};

  /// Does nothing. The number tells one type of such readers from another.
  template <int number>
  class Sample : public Base {
   public:
    using Base::parse;
    void parse(std::istream&) override {}
  };

  static std::unique_ptr<Base> create(const std::string& name) {
    return Factory::createXMLReader(name);
  }
  static std::unique_ptr<Base> createDefault() { return Factory::createXMLReader(); }
  static std::string unknown(const std::string& name) {
    return "SAXException: Unknown XML Reader: \"" + name + "\"";
  }
};

struct Writers {
  using Base = Tavrin::XMLWriter;
  using Type = Tavrin::XMLWriterType;
  using Factory = Tavrin::XMLWriterFactory;

  static constexpr char defaultName[] = "XML";
  static constexpr const char* defaultSpellings[] = {"XML", "xml", "Xml", "xMl"};

  /// Does nothing. The number tells one type of such writers from another.
  template <int number>
  class Sample : public Base {};

  static std::unique_ptr<Base> create(const std::string& name) {
    return Factory::createXMLWriter(name);
  }
  static std::unique_ptr<Base> createDefault() { return Factory::createXMLWriter(); }
  static std::string unknown(const std::string& name) {
    return "SAXException: Unknown XML Writer: \"" + name + "\"";
  }
};

/// Creates the sample of a number; to be used as a record's create function.
template <typename Registry, int number>
std::unique_ptr<typename Registry::Base> makeSample() {
  return std::make_unique<typename Registry::template Sample<number>>();
}

/// The number of the sample that a name gives: 1 to 3, 0 for anything else.
template <typename Registry>
int sampleOf(const std::unique_ptr<typename Registry::Base>& made) {
  if (dynamic_cast<typename Registry::template Sample<1>*>(made.get()) != nullptr) return 1;
  if (dynamic_cast<typename Registry::template Sample<2>*>(made.get()) != nullptr) return 2;
  if (dynamic_cast<typename Registry::template Sample<3>*>(made.get()) != nullptr) return 3;
  return 0;
}

template <typename Registry>
int sampleNamed(const std::string& name) {
  return sampleOf<Registry>(Registry::create(name));
}
