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

  /// Sets itself as the error handler of a reader that knows losses.
  Losses(Tavrin::XMLReader& reader, const Input& input, Report report);

  void warning(const Tavrin::SAXParseException& exception) override;

 private:
  std::uint64_t count() const;

  Tavrin::XMLReader& reader_;
  const Input& input_;
  Report report_;
  std::uint64_t told_ = 0;
};

}  // namespace tool
