#pragma once

#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <string>

#include "WriterProbe.h"
#include "WriterWithOutput.h"

/// What a text writer is told before it is used.
struct Settings {
  bool indent = false;
  bool emptyTags = true;
  bool declaration = false;
};

/// A writer of XML text with its settings.
template <typename Writer>
class WriterWithSettings : public WriterWithOutput<Probe<Writer>> {
 public:
  explicit WriterWithSettings(Settings settings = {}) {
    this->setFeature(Tavrin::features::autoIndent, settings.indent);
    this->setFeature(Tavrin::features::emptyTags, settings.emptyTags);
    this->setFeature(Tavrin::features::xmlDeclaration, settings.declaration);
  }
};

using TextWriter = WriterWithSettings<Tavrin::XMLWriter_XML>;

inline const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
