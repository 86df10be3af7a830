#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "files/Decompressor.h"

namespace tool {

class Descriptor;

/// The octets of a document: what a descriptor gives or, where that is compressed, what it is when
/// decompressed. The first octets tell which.
class OctetSource {
 public:
  explicit OctetSource(const Descriptor& descriptor) : descriptor_(descriptor) {}

  /// Sets what to do before it waits for octets that are still to come; nothing by default.
  void callBeforeWaiting(std::function<void()> call) { beforeWaiting_ = std::move(call); }

  /// Reads once, and waits until there is an octet; 0 of them at the end of the input and on
  /// failure.
  /// @param size at least kMostToTell the first time
  std::size_t read(char* target, std::size_t size);
  static constexpr std::size_t kMostToTell = 4;

  bool isCompressed() const { return decompressor_ != nullptr; }
  /// How many octets of the descriptor have been used up.
  std::uint64_t used() const { return received_ - compressed_.size() + position_; }
  /// Goes back in a file that is not compressed. A read that failed may fail once more.
  void goBack(std::uint64_t octets);

  /// The error number of the read that failed, or 0.
  int error() const { return error_; }
  /// What is wrong with the compressed data; empty for nothing.
  const std::string& problem() const { return problem_; }

 private:
  std::size_t readFirst(char* target, std::size_t size);
  std::size_t readDescriptor(char* target, std::size_t size);
  std::size_t decompress(char* target, std::size_t size);
  bool fill();
  bool fillAtLeast(std::size_t size);
  bool beginNext();
  std::size_t fail(const std::string& problem);

  const Descriptor& descriptor_;
  std::function<void()> beforeWaiting_;
  std::uint64_t received_ = 0;
  bool hasBegun_ = false;
  bool isEnded_ = false;
  int error_ = 0;

  // Where the input is compressed.
  Compression compression_ = Compression::None;
  std::unique_ptr<Decompressor> decompressor_;
  std::string compressed_;     // Octets of the descriptor,
  std::size_t position_ = 0;   // of which so many are used up.
  bool isBetween_ = false;     // A member or frame is complete.
  std::string comingProblem_;  // Comes behind what has been decompressed.
  std::string problem_;
};

}  // namespace tool
