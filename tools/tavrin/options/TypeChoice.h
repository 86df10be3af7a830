#pragma once

#include <Tavrin/Factories.h>

#include <memory>
#include <string>
#include <string_view>

namespace tool {

/// The type of writer for XML text.
inline constexpr char kTextWriter[] = "XML10";

/// The type of writer for a file of this name; "-" is standard output.
std::string writerTypeFor(std::string_view fileName);

/// A reader or writer of a type that the user has named. Where there is none of that name, the
/// failure lists those that there are.
std::unique_ptr<Tavrin::XMLReader> createReader(const std::string& type);
std::unique_ptr<Tavrin::XMLWriter> createWriter(const std::string& type);

}  // namespace tool
