#include <Tavrin/MemoryStream.h>

#include <streambuf>

namespace Tavrin {

class MemoryStream::Buffer : public std::streambuf {
 public:
  explicit Buffer(std::string_view octets) {
    // A buffer without a put area does not write to its octets.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    char* const begin = const_cast<char*>(octets.data());
    setg(begin, begin, begin + octets.size());
  }

 protected:
  std::streamsize showmanyc() override { return -1; }  // There is nothing more.
  pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                   std::ios_base::openmode which) override {
    const off_type size = egptr() - eback();
    off_type position = offset;
    if (from == std::ios_base::cur) position += gptr() - eback();
    if (from == std::ios_base::end) position += size;
    if (!(which & std::ios_base::in) || position < 0 || position > size) return off_type(-1);
    setg(eback(), eback() + position, egptr());
    return position;
  }
  pos_type seekpos(pos_type position, std::ios_base::openmode which) override {
    return seekoff(off_type(position), std::ios_base::beg, which);
  }
};

MemoryStream::MemoryStream(std::string_view octets)
    : std::istream(nullptr), buffer_(std::make_unique<Buffer>(octets)) {
  rdbuf(buffer_.get());  // The stream is good from now on.
}

MemoryStream::~MemoryStream() = default;

}  // namespace Tavrin
