// Everything that may fail does, one after the other: nothing is lost of the memory, what came of
// it so far is the beginning of what should come, and the reader or writer works again. Without
// tests/support/Allocations.h at work, as under valgrind, allocations succeed.

#include <gtest/gtest.h>

#include <algorithm>
#include <ios>
#include <new>
#include <string_view>

#include "Allocations.h"
#include "Subjects.h"
#include "Trap.h"

namespace {

using trap::Kind;
using trap::Place;

Trace trace;  // Too large for the stack.

enum class Outcome { done, outOfMemory, refused, failedStream, foreign, other };

const char* nameOf(Outcome outcome) {
  static constexpr const char* names[] = {"done",         "std::bad_alloc",
                                          "SAXException", "std::ios_base::failure",
                                          "Foreign",      "another exception"};
  return names[static_cast<std::size_t>(outcome)];
}

/// Of the last refusal. It has room beforehand, so that it is no leak.
std::string message(1000, ' ');

Outcome outcomeOf(Subject& subject) {
  trace.clear();
  try {
    subject.run(trace);
    return Outcome::done;
  } catch (const std::bad_alloc&) {
    return Outcome::outOfMemory;
  } catch (const Tavrin::SAXException& exception) {
    message = exception.getMessage();
    return Outcome::refused;
  } catch (const std::ios_base::failure&) {
    return Outcome::failedStream;
  } catch (const trap::Foreign&) {
    return Outcome::foreign;
  } catch (...) {
    return Outcome::other;
  }
}

bool isBeginning(std::string_view text, std::string_view whole) {
  return whole.substr(0, text.size()) == text;
}

/// Where two texts begin to differ, with what stands around there.
std::string difference(std::string_view found, std::string_view whole) {
  std::size_t i = 0;
  while (i < std::min(found.size(), whole.size()) && found[i] == whole[i]) ++i;
  const std::size_t begin = i > 40 ? i - 40 : 0;
  return "octet " + std::to_string(i) + ": \"" + std::string(found.substr(begin, 80)) +
         "\" instead of \"" + std::string(whole.substr(begin, 80)) + '"';
}

void checkEvery(const SubjectKind& kind, Place place, Kind what,
                std::initializer_list<Outcome> allowed) {
  // What is made once, when it is needed first, is no leak.
  const auto first = kind.make();
  ASSERT_EQ(Outcome::done, outcomeOf(*first)) << message;
  const std::string whole(trace.text());
  ASSERT_GT(whole.size(), 100U);

  const auto subject = kind.make();
  for (std::size_t number = 0;; ++number) {
    trap::set(place, number, what);
    const Outcome outcome = outcomeOf(*subject);
    const bool sprung = trap::clear();
    SCOPED_TRACE("number " + std::to_string(number) + ": " + nameOf(outcome));
    const bool isCut = kind.isText && place == Place::input && what == Kind::endOfStream;
    if (outcome == Outcome::done) {
      // Of memory that is a convenience only, or of a stream that does not throw.
      const bool isSilent = place == Place::output || place == Place::input;
      ASSERT_TRUE(isSilent || trace.text() == whole) << difference(trace.text(), whole);
    } else {
      ASSERT_NE(allowed.end(), std::find(allowed.begin(), allowed.end(), outcome));
    }
    ASSERT_TRUE(isCut || isBeginning(trace.text(), whole)) << difference(trace.text(), whole);
    subject->recover();
    ASSERT_EQ(Outcome::done, outcomeOf(*subject));
    ASSERT_TRUE(trace.text() == whole) << difference(trace.text(), whole);
    if (!sprung) break;
  }
}

/// An event that failed comes again: either it does what it would have done, or it is refused.
void checkRetries(const SubjectKind& kind, Place place, Kind what) {
  const auto subject = kind.make();
  ASSERT_EQ(Outcome::done, outcomeOf(*subject)) << message;
  const std::string whole(trace.text());
  ASSERT_GT(whole.size(), 100U);
  for (std::size_t number = 0;; ++number) {
    trap::set(place, number, what);
    const Outcome outcome = outcomeOf(*subject);
    const bool sprung = trap::clear();
    SCOPED_TRACE("number " + std::to_string(number) + ": " + nameOf(outcome));
    if (outcome == Outcome::done) {
      ASSERT_TRUE(trace.text() == whole) << difference(trace.text(), whole);
    } else {
      ASSERT_STREQ(nameOf(Outcome::refused), nameOf(outcome));
      ASSERT_EQ("The document cannot go on after a failure: the writer must be reset", message);
      ASSERT_TRUE(isBeginning(trace.text(), whole)) << difference(trace.text(), whole);
    }
    subject->recover();
    ASSERT_EQ(Outcome::done, outcomeOf(*subject)) << message;
    ASSERT_TRUE(trace.text() == whole) << difference(trace.text(), whole);
    if (!sprung) break;
  }
}

/// After a run of its own, nothing is left of a subject.
void checkLeaks(const SubjectKind& kind, Place place, Kind what) {
  const auto once = [&](std::size_t number) {
    const auto subject = kind.make();
    trap::set(place, number, what);
    outcomeOf(*subject);
    return trap::clear();
  };
  once(1U << 30U);
  const std::size_t live = allocations::live();
  for (std::size_t number = 0; once(number); ++number) {
    ASSERT_EQ(live, allocations::live()) << "number " << number;
  }
  ASSERT_EQ(live, allocations::live());
}

class Robustness : public testing::TestWithParam<SubjectKind> {
 protected:
  void TearDown() override { trap::clear(); }

  void check(Place place, Kind what, std::initializer_list<Outcome> allowed) {
    checkEvery(GetParam(), place, what, allowed);
    // What a stream does costs the most time, and is as an event or an allocation to the rest.
    if (place != Place::input && place != Place::output) checkLeaks(GetParam(), place, what);
  }
};

std::string nameOfParam(const testing::TestParamInfo<SubjectKind>& info) { return info.param.name; }

class Readers : public Robustness {};
class Writers : public Robustness {};
class PersistentWriters : public Robustness {};
INSTANTIATE_TEST_SUITE_P(Of, Readers, testing::ValuesIn(readers()), nameOfParam);
INSTANTIATE_TEST_SUITE_P(Of, Writers, testing::ValuesIn(writers()), nameOfParam);
INSTANTIATE_TEST_SUITE_P(Of, PersistentWriters, testing::ValuesIn(persistentWriters()),
                         nameOfParam);

TEST_P(Readers, BearThatAnyAllocationFails) {
  // expat tells of it as of a failure of the document.
  check(Place::allocation, Kind::foreign, {Outcome::outOfMemory, Outcome::refused});
}

TEST_P(Readers, BearThatAnyEventThrows) {
  check(Place::handler, Kind::foreign, {Outcome::foreign, Outcome::refused});
  check(Place::handler, Kind::saxException, {Outcome::refused});
}

TEST_P(Readers, BearAlgorithmsThatThrow) {
  check(Place::algorithm, Kind::foreign, {Outcome::foreign});
  check(Place::algorithm, Kind::saxException, {Outcome::refused});
}

TEST_P(Readers, BearThatTheirStreamThrows) {
  check(Place::input, Kind::foreign, {Outcome::foreign, Outcome::refused, Outcome::failedStream});
}

TEST_P(Readers, BearThatTheirStreamEnds) {
  check(Place::input, Kind::endOfStream, {Outcome::refused, Outcome::failedStream});
}

TEST_P(Writers, BearThatAnyAllocationFails) {
  check(Place::allocation, Kind::foreign, {Outcome::outOfMemory});
}

TEST_P(Writers, BearAttributesThatThrow) {
  check(Place::attributes, Kind::foreign, {Outcome::foreign});
  check(Place::attributes, Kind::saxException, {Outcome::refused});
}

TEST_P(Writers, BearAlgorithmsThatThrow) {
  check(Place::algorithm, Kind::foreign, {Outcome::foreign});
  check(Place::algorithm, Kind::saxException, {Outcome::refused});
}

TEST_P(Writers, BearThatTheirStreamThrows) {
  check(Place::output, Kind::foreign, {Outcome::foreign});
}

TEST_P(Writers, BearThatTheirStreamIsFull) {
  check(Place::output, Kind::endOfStream, {Outcome::failedStream});
}

TEST_P(PersistentWriters, AreSoundOrRefuseAfterAFailure) {
  checkRetries(GetParam(), Place::allocation, Kind::foreign);
  checkRetries(GetParam(), Place::attributes, Kind::foreign);
  checkRetries(GetParam(), Place::attributes, Kind::saxException);
  checkRetries(GetParam(), Place::algorithm, Kind::foreign);
  checkRetries(GetParam(), Place::output, Kind::foreign);
  checkRetries(GetParam(), Place::output, Kind::endOfStream);
}

}  // namespace
