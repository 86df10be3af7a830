#pragma once

#include <cstdint>
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "files/DescriptorBuffers.h"
#include "files/Progress.h"

namespace tool {

class ElementPath;

/// What to read: a file, or standard input by the name "-". What is compressed is decompressed, and
/// its octets are those that count here. Documents of Fast Infoset may follow each other in it. On
/// a terminal a large file shows a progress bar while the object lives, unless the thread has a
/// listener, who hears of the progress then.
class Input {
 public:
  /// @param quiet no progress bar: the terminal is used for something else
  /// @throws Failure when it cannot be opened or read
  explicit Input(const std::string& name, bool quiet = false);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// The name for messages about the document.
  const std::string& name() const { return name_; }
  /// The first octets, as many as it takes to tell one format from another. Call it before reading:
  /// the stream's buffer has them at hand then.
  std::string_view firstOctets();
  std::istream& stream() { return stream_; }
  /// Sets what to do before it waits for octets that are still to come; nothing by default.
  void callBeforeWaiting(std::function<void()> call) { buffer_.callBeforeWaiting(std::move(call)); }
  /// How many octets have been read, whoever read them.
  std::uint64_t octetsRead() const { return buffer_.taken(); }
  /// Whether nothing is left to read. It may wait for octets that are still to come.
  bool isAtEnd() { return buffer_.peek(1).empty(); }

  /// @name Documents that follow each other
  /// @{

  /// The document that is read next begins here.
  void beginDocument();
  /// The number of the document that is being read, counted from 1.
  std::uint64_t documentNumber() const { return documentNumber_; }
  /// How many octets stand in front of that document.
  std::uint64_t documentStart() const { return documentStart_; }
  /// @}

  /// @name Reading twice
  /// @{

  /// The next octet is the one to go back to. Until then, octets are kept that do not come from a
  /// file.
  void mark() { buffer_.mark(); }
  /// All up to the end will be read again, so that a progress bar counts it twice.
  void expectToReturn();
  void returnToMark();
  /// Goes back to the first octet, which was marked, to read all documents once more.
  void rewind();
  /// @}

  /// @name Looking up what has been read
  /// @{

  /// Whether that is possible: it is a file that has a name and is not compressed.
  bool canLookUp() const;
  /// Gets octets, while another thread may read on.
  /// @return how many; 0 of them at the end of the file, and where it cannot be read any more
  std::size_t lookUp(std::uint64_t octet, char* target, std::size_t size) const;
  /// @}

  /// @name Explaining failures
  /// @{

  /// What was read last; null where failures are not explained.
  const RecentOctets* recent() const { return buffer_.recent(); }
  /// Sets who tells which elements are open; null for nobody.
  void setPath(const ElementPath* path) { path_ = path; }
  const ElementPath* path() const { return path_; }
  /// @}

  /// Whether a progress bar may come up.
  bool hasProgress() const { return progress_.has_value(); }
  /// @throws Failure when what looked like the end of the document was a failed read, or compressed
  ///         data that is damaged
  void checkRead() const;

 private:
  void showProgress();
  void reportTo(Meter& meter);

  std::string name_;
  Descriptor descriptor_;
  InputBuffer buffer_;
  std::optional<Progress> progress_;
  Meter* meter_ = nullptr;          // That bar, or the listener.
  std::uint64_t sizeToReturn_ = 0;  // That of the file, until the meter counts it twice.
  std::uint64_t documentNumber_ = 0;
  std::uint64_t documentStart_ = 0;
  const ElementPath* path_ = nullptr;
  std::istream stream_;
};

}  // namespace tool
