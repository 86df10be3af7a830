#pragma once

#include <EventLog.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

/// What tests of stopping, pausing and coalescing share between readers.
namespace flow {

/// How documents come: 0 for a stream, or in blocks of a size.
inline const std::vector<std::size_t> kWays = {0, 1, 2, 3, 7, 64, 100000};

/// Calls resume until the document has gone on to its end, to the end of the block, or was stopped.
template <typename Reader>
void resumeAll(Reader& reader) {
  while (reader.isPaused()) reader.resume();
}

/// Reads a document. Each block is gone before the reader is resumed.
/// @param endsByItself whether the last octets end the document; otherwise an empty block does
template <typename Reader>
void readThrough(Reader& reader, const std::string& octets, std::size_t way, bool endsByItself) {
  if (way == 0) {
    std::istringstream stream(octets);
    reader.parse(stream);
    return resumeAll(reader);
  }
  std::size_t begin = 0;
  do {
    const std::size_t size = std::min(way, octets.size() - begin);
    const bool isLast = begin + size == octets.size();
    {
      const std::vector<char> block(octets.data() + begin, octets.data() + begin + size);
      reader.parse(block.data(), block.size(), isLast && endsByItself);
    }
    begin += size;
    resumeAll(reader);
    if (reader.isStopped()) return;
  } while (begin < octets.size());
  if (endsByItself) return;
  reader.parse(nullptr, 0, true);
  resumeAll(reader);
}

/// What came of a document: the events and how the call ended.
struct Outcome {
  EventLog::Lines events;
  std::string end;

  bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << '\n' << join(outcome.events) << outcome.end;
}

/// What handlers receive; a resolver is asked while entities are read, be the reader paused or not.
inline EventLog::Lines withoutResolver(EventLog::Lines lines) {
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("resolveEntity("); });
  return lines;
}

/// @param read reads the document with the log's reader, and returns how that ended
inline Outcome outcomeOf(EventLog& log, const std::function<std::string()>& read) {
  log.clear();
  const std::string end = read();
  return {log.lines(), end};
}

/// Stops at each event in turn, and expects no other event, and that the reader is as good as new.
template <typename Reader>
void expectStopsAtEachEvent(Reader& reader, EventLog& log,
                            const std::function<std::string()>& read) {
  log.beforeEvent = nullptr;
  const Outcome whole = outcomeOf(log, read);
  ASSERT_EQ(whole.events.size(), log.eventCount());
  for (std::size_t at = 0; at < whole.events.size(); ++at) {
    SCOPED_TRACE("stopped at " + whole.events[at]);
    log.beforeEvent = [&](std::size_t number) {
      EXPECT_FALSE(reader.isStopped());
      if (number == at) reader.stop();
    };
    // After a failure nothing is left to be stopped.
    const bool isFailure = whole.events[at].starts_with("fatalError(");
    const auto end = whole.events.begin() + static_cast<std::ptrdiff_t>(at + 1);
    const Outcome expected = {{whole.events.begin(), end}, isFailure ? whole.end : "done"};
    ASSERT_EQ(expected, outcomeOf(log, read));
    EXPECT_TRUE(reader.isStopped());
    EXPECT_FALSE(reader.isPaused());
    log.beforeEvent = [&](std::size_t) { EXPECT_FALSE(reader.isStopped()); };
    ASSERT_EQ(whole, outcomeOf(log, read));
  }
  log.beforeEvent = nullptr;
}

/// Pauses at each event in turn, at all, and at some, and expects the same events and end.
template <typename Reader>
void expectPausesAtEachEvent(Reader& reader, EventLog& log,
                             const std::function<std::string()>& read) {
  log.beforeEvent = nullptr;
  Outcome whole = outcomeOf(log, read);
  whole.events = withoutResolver(whole.events);
  const auto expectSame = [&](const std::function<bool(std::size_t)>& pausesAt) {
    log.beforeEvent = [&](std::size_t number) {
      if (pausesAt(number)) reader.pause();
    };
    Outcome outcome = outcomeOf(log, read);
    outcome.events = withoutResolver(outcome.events);
    log.beforeEvent = nullptr;
    ASSERT_EQ(whole, outcome);
    ASSERT_FALSE(reader.isPaused());
  };
  for (std::size_t every = 1; every <= 4; ++every) {
    SCOPED_TRACE("paused at each event of " + std::to_string(every));
    expectSame([every](std::size_t number) { return number % every == 0; });
    if (testing::Test::HasFatalFailure()) return;
  }
  for (std::size_t at = 0; at < whole.events.size(); ++at) {
    SCOPED_TRACE("paused at event " + std::to_string(at));
    expectSame([at](std::size_t number) { return number == at; });
    if (testing::Test::HasFatalFailure()) return;
  }
}

/// Puts the text of consecutive events together.
inline EventLog::Lines joinedTexts(const EventLog::Lines& lines) {
  const std::string begin = "characters(";
  EventLog::Lines joined;
  for (const std::string& line : lines) {
    const bool goesOn = !joined.empty() && joined.back().starts_with(begin);
    if (goesOn && line.starts_with(begin)) {
      joined.back().replace(joined.back().size() - 1, 1, line, begin.size(), std::string::npos);
    } else {
      joined.push_back(line);
    }
  }
  return joined;
}

/// Expects that coalesced text is what the pieces are together.
template <typename Reader>
void expectCoalesces(Reader& reader, EventLog& log, const std::function<std::string()>& read) {
  Outcome plain = outcomeOf(log, read);
  plain.events = joinedTexts(withoutResolver(plain.events));
  reader.setFeature(Tavrin::features::coalesceCharacters, true);
  Outcome coalesced = outcomeOf(log, read);
  coalesced.events = withoutResolver(coalesced.events);
  EXPECT_EQ(plain, coalesced);
  reader.setFeature(Tavrin::features::coalesceCharacters, false);
}

}  // namespace flow
