#pragma once

#include <memory>

#include "Trace.h"

/// A reader or writer that does the same work any number of times. What comes of it is in a trace:
/// the events, or the octets.
class Subject {
 public:
  virtual ~Subject() = default;
  /// Reads or writes a document that has everything.
  virtual void run(Trace& trace) = 0;
  /// What a program does after a failure, before it begins again.
  virtual void recover() {}
};

struct SubjectKind {
  const char* name;
  bool isText;  ///< XML text, of which a beginning may be read in another way than the whole.
  std::unique_ptr<Subject> (*make)();
};

std::ostream& operator<<(std::ostream& out, const SubjectKind& kind);

/// Each type of reader, each way of feeding it, with typed content as such and as text.
std::vector<SubjectKind> readers();
/// Each type of writer, with streams that throw and with streams that do not.
std::vector<SubjectKind> writers();
/// Those types that are sound after a failure, or say that they are not. These do not give up: an
/// event that failed comes again.
std::vector<SubjectKind> persistentWriters();
