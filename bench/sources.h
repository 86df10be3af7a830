#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <string>

#include "jobs.h"
#include "streams.h"

/// Jobs that can be run again and again; their streams are made before.
namespace groups {

/// Runs a job with a stream over the input, which must outlive it.
template <typename Job>
std::function<void()> fromStream(const std::string& input, Job job) {
  return [stream = std::make_shared<streams::MemoryStream>(input), job = std::move(job)] {
    stream->rewind();
    job(*stream);
  };
}

/// Reads the input, which must outlive the job.
inline std::function<void()> reading(const jobs::Reader& reader, const std::string& input) {
  return fromStream(input, [read = reader.read](std::istream& stream) {
    benchmark::DoNotOptimize(read(stream));
  });
}

}  // namespace groups
