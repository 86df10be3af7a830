#include "octets/Cursor.h"

#include <cstring>

namespace tool::octets {

void Cursor::fill(std::size_t size) {
  if (isEnded_) return;
  end_ -= begin_;
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_);
  begin_ = 0;
  while (end_ < size && !isEnded_) {
    const std::size_t count = source_(buffer_.data() + end_, buffer_.size() - end_);
    isEnded_ = count == 0;
    end_ += count;
  }
}

}  // namespace tool::octets
