#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "WhatIsThrown.h"
#include "WriterProbe.h"

/// What every event does in every place, as one line an event: its name and a cell a place.
///
/// A cell is `!` for a refused event, or the number of the state behind an accepted one; then what
/// became of the flag for content (`+` it is set, `-` it is cleared, nothing: it is as before, `~`
/// it is the opposite); then the elements that are open behind an accepted event. A refused event
/// that changed the state or the elements shows as `?`.
///
/// @param makeWriter gives a new probe
/// @param send       sends an event to a probe
template <typename MakeWriter, typename Send>
std::vector<std::string> eventTable(MakeWriter makeWriter, Send send) {
  const auto cell = [&](Event event, Place place) {
    std::string result;
    std::string flag;
    for (const bool content : {false, true}) {
      const auto writer = makeWriter();
      bringTo(place, *writer);
      writer->hasContent_ = content;
      const auto state = writer->state_;
      const std::string open = writer->openElements();
      const bool accepted = thrown([&] { send(event, *writer); }) == "nothing";
      const bool changed = writer->state_ != state || writer->openElements() != open;
      std::string effect = accepted ? std::to_string(writer->state_) : changed ? "?" : "!";
      effect += "#" + (accepted ? writer->openElements() : std::string());
      // Both ways must end alike, whatever the flag was before.
      result = result.empty() || result == effect ? effect : "differs";
      flag += writer->hasContent_ ? '1' : '0';
    }
    const char* const shown = flag == "01" ? "" : flag == "11" ? "+" : flag == "00" ? "-" : "~";
    const std::size_t mark = result.find('#');
    return mark == std::string::npos ? result : result.replace(mark, 1, shown);
  };

  std::vector<std::string> lines;
  for (const auto& event : kEvents) {
    std::string line = event.name;
    for (const auto& place : kPlaces) line += " " + cell(event.event, place.place);
    lines.push_back(line);
  }
  return lines;
}

/// The lines with each run of spaces made one, so that a table may be written with columns.
inline std::vector<std::string> squeezed(std::vector<std::string> lines) {
  for (std::string& line : lines) {
    for (std::size_t at; (at = line.find("  ")) != std::string::npos;) line.erase(at, 1);
  }
  return lines;
}
