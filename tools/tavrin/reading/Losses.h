#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <functional>
#include <string>

#include "files/Input.h"

namespace tool {

/// Hears of what a document holds and its reader cannot tell by any event.
class Losses : public Tavrin::ErrorHandler {
 public:
  /// What is done about a loss: its place and what is lost.
  using Report = std::function<void(const std::string& place, const std::string& message)>;

  /// What of a reader's warnings is reported.
  enum class Warnings {
    OfLosses,
    All,  ///< Also that a version of XML is read by the rules of another.
  };

  /// Sets itself as the error handler of a reader that knows losses, or that warns of other things.
  Losses(Tavrin::XMLReader& reader, const Input& input, Report report,
         Warnings warnings = Warnings::OfLosses);

  void warning(const Tavrin::SAXParseException& exception) override;

 private:
  std::uint64_t count() const;

  Tavrin::XMLReader& reader_;
  const Input& input_;
  Report report_;
  Warnings warnings_;
  std::uint64_t told_ = 0;
};

}  // namespace tool
