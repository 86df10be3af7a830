#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

// Two programs talk over a socket, each in one long document: whoever has read a question answers,
// and whoever has read an answer asks again. If a reader waited for more than an event takes, both
// would wait for ever.

namespace {

using namespace Tavrin;

/// One end of a connection.
class SocketBuffer : public std::streambuf {
 public:
  explicit SocketBuffer(int descriptor) : descriptor_(descriptor) {}
  ~SocketBuffer() override { close(descriptor_); }
  SocketBuffer(const SocketBuffer&) = delete;
  SocketBuffer& operator=(const SocketBuffer&) = delete;

  /// Nothing more is sent: XML text ends with its stream.
  void finish() { shutdown(descriptor_, SHUT_WR); }

 protected:
  int_type underflow() override {
    const ssize_t count = read(descriptor_, in_.data(), in_.size());
    if (count <= 0) return traits_type::eof();
    setg(in_.data(), in_.data(), in_.data() + count);
    return traits_type::to_int_type(in_[0]);
  }
  std::streamsize xsputn(const char* octets, std::streamsize count) override {
    out_.append(octets, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type octet) override {
    out_ += traits_type::to_char_type(octet);
    return octet;
  }
  int sync() override {
    const bool isSent = send(descriptor_, out_.data(), out_.size(), MSG_NOSIGNAL) ==
                        static_cast<ssize_t>(out_.size());
    out_.clear();
    return isSent ? 0 : -1;
  }

 private:
  int descriptor_;
  std::array<char, 4096> in_{};
  std::string out_;
};

constexpr int kRounds = 50;

/// One of the two. It says something, and says the next when it has heard an answer.
class Speaker : public ContentHandler {
 public:
  Speaker(const std::string& reader, const std::string& writer, int descriptor, bool begins)
      : buffer_(descriptor),
        stream_(&buffer_),
        reader_(XMLReaderFactory::createXMLReader(reader)),
        writer_(XMLWriterFactory::createXMLWriter(writer)),
        begins_(begins) {
    reader_->setContentHandler(this);
    writer_->setOutputStream(&stream_);
  }

  void talk() {
    begin();
    reader_->parse(stream_);
  }
  /// The same with a reader that is asked for events.
  void talkPulling() {
    begin();
    PullReader reader(stream_);
    while (reader.next()) {
      if (reader.event() == PullEvent::startElement) {
        if (const auto number = reader.attribute("number")) heard.emplace_back(*number);
      } else if (reader.event() == PullEvent::endElement) {
        endElement({}, std::string(reader.localName()), {});
      }
    }
  }

  void startElement(const std::string&, const std::string& localName, const std::string&,
                    const Attributes& attributes) override {
    if (localName == "word") heard.push_back(attributes.getValue(0));
  }
  void endElement(const std::string&, const std::string& localName, const std::string&) override {
    if (localName != "word") return;
    if (said_ < kRounds) say();
    if (said_ == kRounds && !hasEnded_) end();
  }

  std::vector<std::string> heard;

 private:
  void begin() {
    writer_->startDocument();
    writer_->startElement("", "talk", "talk", AttributesImpl());
    if (begins_) say();
  }
  void say() {
    AttributesImpl attributes;
    attributes.addAttribute("", "number", "number", "CDATA", std::to_string(said_++));
    writer_->startElement("", "word", "word", attributes);
    writer_->endElement("", "word", "word");
    // The terminator of an element may share an octet with what follows it.
    writer_->characters("\n");
    writer_->flush();
    stream_.flush();
  }
  void end() {
    hasEnded_ = true;
    writer_->endElement("", "talk", "talk");
    writer_->endDocument();
    stream_.flush();
    buffer_.finish();
  }

  SocketBuffer buffer_;
  std::iostream stream_;
  std::unique_ptr<XMLReader> reader_;
  std::unique_ptr<XMLWriter> writer_;
  bool begins_;
  bool hasEnded_ = false;
  int said_ = 0;
};

void expectDialogue(const std::string& type, void (Speaker::*talk)() = &Speaker::talk) {
  int ends[2];
  ASSERT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
  Speaker first(type, type, ends[0], true);
  Speaker second(type, type, ends[1], false);
  std::thread other([&] { (second.*talk)(); });
  (first.*talk)();
  other.join();
  std::vector<std::string> all;
  for (int i = 0; i < kRounds; ++i) all.push_back(std::to_string(i));
  EXPECT_EQ(all, first.heard);
  EXPECT_EQ(all, second.heard);
}

TEST(Dialogue, GoesOnInXMLText) { expectDialogue("XML10"); }

TEST(Dialogue, GoesOnInFastInfoset) { expectDialogue("X891"); }

TEST(Dialogue, GoesOnWhereEventsArePulled) {
  expectDialogue("XML10", &Speaker::talkPulling);
  expectDialogue("X891", &Speaker::talkPulling);
}

}  // namespace
