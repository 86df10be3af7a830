#include <Tavrin/Tavrin.h>

#include <EventLog.h>
#include <gtest/gtest.h>

#include <future>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// One vocabulary in the hands of many threads. ThreadSanitizer tells of what goes well by luck.

namespace {

using namespace Tavrin;

constexpr int kThreads = 8;
constexpr int kRounds = 20;

OwnedVocabulary makeVocabulary() {
  OwnedVocabulary vocabulary;
  for (int i = 0; i < 100; ++i) {
    const std::string name = "n" + std::to_string(i);
    vocabulary.addElementName("urn:u", name, "p:" + name);
    vocabulary.addAttributeName("", name);
    vocabulary.addAttributeValue(name);
    vocabulary.addCharacters(name);
  }
  return vocabulary;
}

/// A document of a new writer, and what a new reader tells of it.
std::string conversation(const OwnedVocabulary& vocabulary, int number) {
  const std::string name = "n" + std::to_string(number % 100);
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.setExternalVocabulary("v", vocabulary);
  AttributesImpl attributes;
  attributes.addAttribute("", name, name, "CDATA", name);
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:u");
  writer.startElement("urn:u", name, "p:" + name, attributes);
  writer.characters(name);
  writer.endElement("urn:u", name, "p:" + name);
  writer.endDocument();
  XMLReader_X891 reader;
  EventLog log;
  log.attachTo(reader);
  reader.addExternalVocabulary("v", vocabulary);
  std::istringstream document(stream.str());
  reader.parse(document);
  return stream.str() + log.text();
}

/// Uses the object of all, and changes a copy of its own.
std::string work(const OwnedVocabulary& shared, int thread) {
  std::string all;
  for (int round = 0; round < kRounds; ++round) {
    all += conversation(shared, thread * kRounds + round);
    OwnedVocabulary own = shared;
    all += std::to_string(own.addElementName("", "of-" + std::to_string(thread)));
    all += conversation(own, round);
    all += std::to_string(shared.tables()->localNames.definedCount);
    std::ostringstream file;
    own.write(file);
    all += file.str();
  }
  return all;
}

TEST(SharedVocabularyInThreads, IsTheSameForAll) {
  // The threads meet an object that nobody has copied or asked for its tables yet.
  const OwnedVocabulary shared = makeVocabulary();
  std::vector<std::string> results(kThreads);
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, started, thread] {
      started.wait();
      results[static_cast<std::size_t>(thread)] = work(shared, thread);
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
  for (int thread = 0; thread < kThreads; ++thread) {
    EXPECT_EQ(work(makeVocabulary(), thread), results[static_cast<std::size_t>(thread)]) << thread;
  }
}

// The one who made it lets it go, and changes it, while others still use copies.
TEST(SharedVocabularyInThreads, MayEndWhileOthersUseIt) {
  std::vector<std::string> results(kThreads);
  std::vector<std::thread> threads;
  {
    OwnedVocabulary first = makeVocabulary();
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&results, copy = first, thread] {
        results[static_cast<std::size_t>(thread)] = work(copy, thread);
      });
      first.addLocalName("later-" + std::to_string(thread));
    }
  }
  for (std::thread& thread : threads) thread.join();
  OwnedVocabulary expected = makeVocabulary();
  for (int thread = 0; thread < kThreads; ++thread) {
    EXPECT_EQ(work(expected, thread), results[static_cast<std::size_t>(thread)]) << thread;
    expected.addLocalName("later-" + std::to_string(thread));
  }
}

}  // namespace
