#include "groups.h"

#include <Tavrin/Tavrin.h>

#include <exception>
#include <iostream>
#include <optional>
#include <regex>
#include <utility>

#include "paired.h"

namespace groups {

namespace {

/// What the exception says that is being handled.
std::string currentMessage() {
  try {
    throw;
  } catch (const Tavrin::SAXException& exception) {
    return exception.getMessage();
  } catch (const Tavrin::FastInfosetException& exception) {
    return exception.getMessage();
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "unknown exception";
  }
}

/// Whether a benchmark of that name is going to run. A filter that begins with "-" takes away.
bool isSelected(const std::string& name) {
  std::string filter = benchmark::GetBenchmarkFilter();
  if (filter.empty() || filter == "all") return true;
  const bool takesAway = filter.front() == '-';
  if (takesAway) filter.erase(0, 1);
  return std::regex_search(name, std::regex(filter, std::regex::extended)) != takesAway;
}

}  // namespace

void add(const std::string& name, const DocumentPointer& document, std::function<void()> prepare,
         std::function<void(benchmark::State&)> run) {
  if (document->isForeign() && isSelected(name)) {
    try {
      prepare();
    } catch (...) {
      std::cerr << name << " is left out: " << currentMessage() << '\n';
      return;
    }
  }
  const auto runSafely = [prepare = std::move(prepare),
                          run = std::move(run)](benchmark::State& state) {
    try {
      prepare();
      run(state);
    } catch (...) {
      state.SkipWithError(currentMessage().c_str());
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), runSafely)->Unit(benchmark::kMillisecond);
}

void add(const std::string& name, const DocumentPointer& document,
         std::function<Comparison()> prepare) {
  const auto comparison = std::make_shared<std::optional<Comparison>>();
  add(
      name, document,
      [prepare = std::move(prepare), comparison] {
        if (!*comparison) *comparison = prepare();
      },
      [document, comparison](benchmark::State& state) {
        paired::compare(state, (*comparison)->runs, (*comparison)->job, (*comparison)->baseline);
        state.counters["events"] = document->eventCount();
        state.counters["octets"] = static_cast<double>((*comparison)->octets);
        state.counters["xml_octets"] = static_cast<double>(document->xml().size());
      });
}

}  // namespace groups
