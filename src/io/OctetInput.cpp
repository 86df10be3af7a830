#include "OctetInput.h"

namespace Tavrin {

/// There is no next octet: the stream is at its end, or not good.
int OctetInput::setEnd() {
  expect(1);
  stream_->setstate(state_->good() ? std::ios_base::eofbit | std::ios_base::failbit
                                   : std::ios_base::failbit);
  return kEnd;
}

/// The buffer threw. A stream keeps that to itself, unless it is asked not to. To be called from
/// the handler of the exception.
int OctetInput::setBroken() {
  const bool throws = stream_->exceptions() & std::ios_base::badbit;
  try {
    stream_->setstate(std::ios_base::badbit | std::ios_base::failbit);
  } catch (const std::ios_base::failure&) {
    if (!throws) throw;
  }
  if (throws) throw;
  return kEnd;
}

}  // namespace Tavrin
