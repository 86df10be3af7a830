#include "explaining/Explaining.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

namespace tool {

namespace {

constexpr int kUsualWidth = 80;
constexpr int kLeastWidth = 40;

bool isAskedFor = false;

}  // namespace

void alwaysExplain() { isAskedFor = true; }

bool explains() { return isAskedFor || isatty(STDERR_FILENO) == 1; }

int explanationWidth() {
  winsize size{};
  const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? std::max<int>(size.ws_col, kLeastWidth) : kUsualWidth;
}

}  // namespace tool
