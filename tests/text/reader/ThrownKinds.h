#pragma once

#include <string>
#include <vector>

/// An exception that a handler or a stream may throw.
struct Thrown {
  const char* name;
  void (*raise)();
  /// What outcomeOf tells of it where it leaves `parse`.
  std::string leavesAs;
  /// Whether it is a SAXException, after which the reader is idle.
  bool isSAX;
};

/// One of every kind that the reader treats in a way of its own, and some more.
const std::vector<Thrown>& thrownKinds();
