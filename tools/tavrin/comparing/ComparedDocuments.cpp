#include "comparing/ComparedDocuments.h"

#include <exception>
#include <system_error>

#include "comparing/EventRecorder.h"
#include "files/Failure.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

ComparedDocuments::ComparedDocuments(const std::string& name, const ReadingOptions& options,
                                     bool lexical, bool quiet)
    : input_(name, quiet),
      lines_(input_),
      options_(options),
      lexical_(lexical),
      entities_(name, options.entityAccess()),
      reader_(nextReader(input_, options_)),
      records_(queue_) {}

ComparedDocuments::~ComparedDocuments() {
  queue_.stop();
  if (thread_.joinable()) thread_.join();
}

void ComparedDocuments::start() {
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error& error) {
    throw Failure::usage("no thread can be started: " + error.code().message());
  }
}

void ComparedDocuments::check() const {
  if (queue_.failure()) std::rethrow_exception(queue_.failure());
}

void ComparedDocuments::run() {
  std::exception_ptr failure;
  try {
    for (; reader_; reader_ = nextReader(input_, options_)) read();
  } catch (...) {
    failure = std::current_exception();
  }
  queue_.close(failure);
}

void ComparedDocuments::read() {
  EventRecorder recorder(queue_, input_, lexical_, lines_.isPossible(), entities_.resolver());
  recorder.attachTo(*reader_);
  const Losses losses(*reader_, input_, [](const auto& place, const auto& message) {
    throw Failure::document(place, message + ", and cannot be compared (see --entities)");
  });
  try {
    parse(*reader_, input_, &entities_);
  } catch (...) {
    recorder.check();
    recorder.finish(true);
    throw;
  }
  recorder.finish(false);
}

}  // namespace tool
