#include "measuring/MeasuredConversion.h"

#include "files/Listener.h"
#include "measuring/Timing.h"
#include "options/TypeChoice.h"
#include "printing/Quantities.h"
#include "printing/Text.h"
#include "reading/ReadThrough.h"

namespace tool {

CopiedOctets convertMeasured(const ConversionOptions& options, const std::string& in,
                             const std::string& out) {
  const Stopwatch stopwatch;
  const CopiedOctets octets = convertFile(options, in, out);
  const double seconds = stopwatch.seconds();
  if (!options.timing.isAsked()) return octets;
  say(escaped(in) + ": copied " + std::to_string(octets.read) + " octets to " +
      std::to_string(octets.written) + " in " + milliseconds(seconds) + ", " +
      rate(octets.read, seconds) + "\n");
  if (options.timing.repeat == 0) return octets;

  measure(in, "reading", options.timing.repeat, octets.read,
          [&] { readThrough(in, options.reading); });
  ConversionOptions toNowhere = options;
  // The name of the copy tells nothing there.
  toNowhere.usualType = writerTypeFor(out);
  toNowhere.compression.chosen = options.compression.choiceFor(out);
  measure(in, "copying", options.timing.repeat, octets.read,
          [&] { convertFile(toNowhere, in, "/dev/null"); });
  return octets;
}

}  // namespace tool
