#include <Allocations.h>
#include <expat.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <future>
#include <new>
#include <string>
#include <thread>
#include <vector>

// The counter itself: a test that counts with it must fail where something leaks.

namespace {

constexpr std::size_t kMebi = std::size_t{1} << 20;

/// Calls of the C library that no compiler leaves out.
void* (*volatile callMalloc)(std::size_t) = std::malloc;
void* (*volatile callCalloc)(std::size_t, std::size_t) = std::calloc;
void* (*volatile callRealloc)(void*, std::size_t) = std::realloc;
void (*volatile callFree)(void*) = std::free;
void* (*volatile callNew)(std::size_t) = operator new;
void (*volatile callDelete)(void*) = operator delete;

/// A block for as long as it lives, which no compiler leaves out either.
struct Block {
  explicit Block(std::size_t size) : octets(callNew(size)) {}
  ~Block() { callDelete(octets); }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  void* octets;
};

/// Whether `malloc` itself can fail, and not `operator new` alone.
constexpr bool kMallocFails =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    false;
#else
    true;
#endif

class Allocations : public testing::Test {
 protected:
  void SetUp() override {
    if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  }
};

/// What a piece of work leaves behind, in blocks.
template <typename Work>
std::size_t leftBy(Work work) {
  const std::size_t before = allocations::live();
  work();
  return allocations::live() - before;
}

TEST_F(Allocations, AreCountedUntilTheyAreFreed) {
  void* block = nullptr;
  EXPECT_EQ(1U, leftBy([&] { block = callMalloc(10); }));
  EXPECT_EQ(0U, leftBy([&] { block = callRealloc(block, 100000); }));
  EXPECT_EQ(static_cast<std::size_t>(-1), leftBy([&] { callFree(block); }));
  EXPECT_EQ(1U, leftBy([&] { block = callCalloc(10, 10); }));
  EXPECT_EQ(static_cast<std::size_t>(-1), leftBy([&] { callFree(block); }));
  EXPECT_EQ(1U, leftBy([&] { block = callRealloc(nullptr, 10); }));
  EXPECT_EQ(static_cast<std::size_t>(-1), leftBy([&] { callFree(block); }));
  EXPECT_EQ(0U, leftBy([&] { callFree(nullptr); }));
  EXPECT_EQ(1U, leftBy([&] { ASSERT_EQ(0, posix_memalign(&block, 64, 10)); }));
  EXPECT_EQ(static_cast<std::size_t>(-1), leftBy([&] { callFree(block); }));
  EXPECT_EQ(1U, leftBy([&] { block = std::aligned_alloc(64, 128); }));
  EXPECT_EQ(static_cast<std::size_t>(-1), leftBy([&] { callFree(block); }));
}

TEST_F(Allocations, OfCPlusPlusAreCounted) {
  void* (*volatile callAlignedNew)(std::size_t, std::align_val_t) = operator new;
  void (*volatile callAlignedDelete)(void*, std::align_val_t) = operator delete;
  void* block = nullptr;
  void* aligned = nullptr;
  EXPECT_EQ(1U, leftBy([&] { block = callNew(1000); }));
  EXPECT_EQ(1U, leftBy([&] { aligned = callAlignedNew(1000, std::align_val_t{64}); }));
  EXPECT_EQ(static_cast<std::size_t>(-2), leftBy([&] {
              callDelete(block);
              callAlignedDelete(aligned, std::align_val_t{64});
            }));
}

TEST_F(Allocations, OfLibrariesAreCounted) {
  XML_Parser parser = nullptr;
  EXPECT_LT(1U, leftBy([&] { parser = XML_ParserCreate(nullptr); }));
  EXPECT_EQ(0U, leftBy([&] {
              XML_ParserFree(parser);
              parser = XML_ParserCreate(nullptr);
            }));
  XML_ParserFree(parser);
}

TEST_F(Allocations, OfAllThreadsAreCounted) {
  std::vector<std::thread> threads;
  threads.reserve(8);
  const auto work = [&] {
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([] {
        for (std::size_t size = 100; size < 1100; ++size) {
          const Block one(size);
          const Block another(size);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    threads.clear();
  };
  work();  // What a thread takes for good is taken.
  const std::size_t before = allocations::total();
  EXPECT_EQ(0U, leftBy(work));
  EXPECT_LT(before + 8 * 2 * 1000, allocations::total());
}

TEST_F(Allocations, HaveATotalThatOnlyGrows) {
  const std::size_t before = allocations::total();
  for (int i = 0; i < 10; ++i) callFree(callMalloc(1));
  EXPECT_EQ(before + 10, allocations::total());
}

TEST_F(Allocations, HaveAPeak) {
  const std::size_t peak = allocations::peakOf([] {
    const Block three(3 * kMebi);
    const Block two(2 * kMebi);
  });
  EXPECT_LE(5 * kMebi, peak);
  EXPECT_GT(5 * kMebi + 65536, peak);
  EXPECT_GT(65536U, allocations::peakOf([] { const Block one(1); }));
}

/// How many allocations of five blocks succeed.
std::size_t successes() {
  std::size_t result = 0;
  for (int i = 0; i < 5; ++i) {
    try {
      const Block block(100);
      ++result;
    } catch (const std::bad_alloc&) {
    }
  }
  return result;
}

TEST_F(Allocations, FailOnceWhereTheyAreTold) {
  for (const std::size_t number : {0U, 1U, 4U}) {
    const allocations::Failure failure(number);
    EXPECT_FALSE(failure.happened());
    EXPECT_EQ(4U, successes());
    EXPECT_TRUE(failure.happened());
    EXPECT_EQ(5U, successes());
  }
  const allocations::Failure failure(5);
  EXPECT_EQ(5U, successes());
  EXPECT_FALSE(failure.happened());
  EXPECT_EQ(4U, successes());
}

TEST_F(Allocations, FailFromOneOnWhereTheyAreTold) {
  {
    const allocations::Failure failure(2, allocations::Failure::Later::fails);
    EXPECT_EQ(2U, successes());
    EXPECT_EQ(0U, successes());
    EXPECT_TRUE(failure.happened());
  }
  EXPECT_EQ(5U, successes());
}

TEST_F(Allocations, FailWithoutAnObject) {
  for (const std::size_t count : {1U, 5U}) {
    allocations::failAt(count);
    EXPECT_EQ(4U, successes());
    EXPECT_EQ(5U, successes());
  }
  allocations::failAt(0);
  EXPECT_EQ(5U, successes());
  allocations::failAfter(3);
  EXPECT_EQ(3U, successes());
  EXPECT_EQ(0U, successes());
  allocations::stopFailing();
  EXPECT_EQ(5U, successes());
}

TEST_F(Allocations, OfOtherThreadsDoNotFail) {
  std::size_t others = 0;
  {
    std::promise<void> isSet;
    std::thread thread([&others, ready = isSet.get_future()] {
      ready.wait();
      others = successes();
    });
    const allocations::Failure failure(0, allocations::Failure::Later::fails);
    isSet.set_value();
    thread.join();
  }
  EXPECT_EQ(5U, others);
}

TEST_F(Allocations, ThatFailLeaveAllAsItWas) {
  EXPECT_EQ(nullptr, [] {
    const allocations::Failure failure(0);
    void* (*volatile callNothrowNew)(std::size_t, const std::nothrow_t&) = operator new;
    return callNothrowNew(10, std::nothrow);
  }());
  if (!kMallocFails) GTEST_SKIP() << "malloc is the sanitizer's";
  void* block = callMalloc(10);
  void* other = &block;
  EXPECT_EQ(0U, leftBy([&] {
              const allocations::Failure failure(0, allocations::Failure::Later::fails);
              errno = 0;
              EXPECT_EQ(nullptr, callMalloc(10));
              EXPECT_EQ(ENOMEM, errno);
              EXPECT_EQ(nullptr, callCalloc(10, 10));
              EXPECT_EQ(nullptr, callRealloc(block, 20));
              EXPECT_EQ(ENOMEM, posix_memalign(&other, 64, 10));
              EXPECT_EQ(&block, other);
              EXPECT_EQ(nullptr, XML_ParserCreate(nullptr));
            }));
  callFree(block);
}

}  // namespace
