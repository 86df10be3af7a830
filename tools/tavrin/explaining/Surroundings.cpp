#include "explaining/Surroundings.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "printing/Text.h"

namespace tool {

namespace {

constexpr std::size_t kOctetsInRow = 16;
constexpr std::string_view kEllipsis = "...";
constexpr std::size_t kUnlimited = std::string_view::npos;

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

/// Where the character behind so many others begins; the end where there are less.
std::size_t skipCharacters(std::string_view text, std::uint64_t count) {
  std::size_t at = 0;
  while (at < text.size() && count > 0) {
    at += characterSize(text.substr(at));
    --count;
  }
  return at;
}

/// A character as it shows, and how many columns that takes.
struct Cell {
  std::string text;
  std::size_t width;
};

/// The first characters of a text, a few more than fit in so many columns.
std::vector<Cell> cellsOf(std::string_view text, std::size_t width) {
  std::vector<Cell> cells;
  for (std::size_t taken = 0; !text.empty() && taken <= width;) {
    const std::size_t size = characterSize(text);
    const std::string shown = escaped(text.substr(0, size));
    cells.push_back({shown, columnsOf(shown)});
    taken += cells.back().width;
    text.remove_prefix(size);
  }
  return cells;
}

std::size_t widthOf(const std::vector<Cell>& cells) {
  std::size_t width = 0;
  for (const Cell& cell : cells) width += cell.width;
  return width;
}

/// Takes cells away, from the front or the back, until they and an ellipsis fit.
void cut(std::vector<Cell>& cells, std::size_t width, bool atFront) {
  std::size_t total = widthOf(cells);
  if (total <= width) return;
  while (!cells.empty() && total + kEllipsis.size() > width) {
    const auto cell = atFront ? cells.begin() : cells.end() - 1;
    total -= cell->width;
    cells.erase(cell);
  }
  const Cell ellipsis{std::string(kEllipsis), kEllipsis.size()};
  cells.insert(atFront ? cells.begin() : cells.end(), ellipsis);
}

/// The last octets of a text that may show in so many columns; characters stay whole.
std::string_view endOf(std::string_view text, std::size_t width) {
  constexpr std::size_t kLongestCharacter = 4;
  // A combining character takes no column, so this may be too little for the whole width.
  const std::size_t size = (width + 1) * kLongestCharacter;
  if (text.size() <= size) return text;
  text.remove_prefix(text.size() - size);
  while (!text.empty() && continuesCharacter(text.front())) text.remove_prefix(1);
  return text;
}

std::string numbered(std::uint64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), ' ') + digits;
}

void appendRow(std::string& text, std::string_view octets, std::uint64_t number) {
  text += numbered(number, 8) + "  ";
  std::string shown;
  for (std::size_t i = 0; i < kOctetsInRow; ++i) {
    if (i == kOctetsInRow / 2) text += ' ';
    if (i >= octets.size()) {
      text += "   ";
      continue;
    }
    const auto octet = static_cast<unsigned char>(octets[i]);
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", octet);
    text += digits;
    shown += octet >= 0x20 && octet < 0x7F ? octets[i] : '.';
  }
  text += ' ' + shown + '\n';
}

}  // namespace

std::string lineAround(const RecentOctets& recent, std::uint64_t line, std::uint64_t column,
                       int width) {
  const auto found = recent.line(line);
  if (!found || column == 0 || column - 1 < found->charactersLost) return {};
  std::string_view text = found->text;
  if (found->charactersLost > 0) {
    // The line may have been cut within a character, which counts as lost.
    while (!text.empty() && continuesCharacter(text.front())) text.remove_prefix(1);
  }
  const std::size_t at = skipCharacters(text, column - 1 - found->charactersLost);
  const std::string gutter = numbered(line, 6) + " | ";
  const std::size_t room = static_cast<std::size_t>(width) - gutter.size() - 1;
  const std::string_view near = endOf(text.substr(0, at), room);
  const bool isWhole = near.size() == at && found->charactersLost == 0;
  std::vector<Cell> before = cellsOf(near, kUnlimited);
  std::vector<Cell> behind = cellsOf(text.substr(at), room);
  const std::size_t wanted = widthOf(behind);
  const std::size_t least = room / 3;
  // What is behind the column gives way first, but keeps a third.
  if (!isWhole) before.insert(before.begin(), {std::string(room, ' '), room});
  cut(before, room - std::min(wanted, std::max(least, room - std::min(room, widthOf(before)))),
      true);
  cut(behind, room - widthOf(before), false);
  std::string result = gutter;
  for (const Cell& cell : before) result += cell.text;
  for (const Cell& cell : behind) result += cell.text;
  return result + "\n" + std::string(gutter.size() - 2, ' ') + "| " +
         std::string(widthOf(before), ' ') + "^\n";
}

std::string octetsAround(const RecentOctets& recent, std::uint64_t octet, const std::string& path) {
  std::string text =
      "  " + (path.empty() ? "outside of the root element" : "in " + escaped(path)) + "\n";
  const std::string_view kept = recent.octets();
  if (octet == 0 || octet <= recent.start() || octet > recent.start() + kept.size()) return text;
  const std::uint64_t row = (octet - 1) / kOctetsInRow;
  for (std::uint64_t i = row - std::min<std::uint64_t>(row, 1); i <= row + 1; ++i) {
    const std::uint64_t first = i * kOctetsInRow;
    if (first < recent.start() || first >= recent.start() + kept.size()) continue;
    appendRow(text, kept.substr(first - recent.start(), kOctetsInRow), first + 1);
    if (i != row) continue;
    const std::size_t place = (octet - 1) % kOctetsInRow;
    text += std::string(10 + 3 * place + (place >= kOctetsInRow / 2 ? 1 : 0), ' ') + "^^\n";
  }
  return text;
}

}  // namespace tool
