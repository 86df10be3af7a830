#include "printing/Treemap.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "printing/PageText.h"

namespace tool {

namespace {

// What the boxes are laid out for. On a page of another shape they are stretched.
constexpr double kWidth = 1000;
constexpr double kHeight = 560;
constexpr double kHeader = 20;  // Of a box with others in it,
constexpr double kBorder = 3;   // and what is beside and below them.
constexpr double kSmallest = 5;
constexpr double kSmallestWithBoxes = 34;

struct Rectangle {
  double x, y, width, height;

  double area() const { return width * height; }
};

struct Box {
  std::string name;
  OctetsByKind kinds;
  std::uint32_t node;  // The node whose children stand in it; 0 for none.
  std::uint64_t octets = sumOf(kinds);
  Rectangle place{};
};

/// Where the row ends that begins with a box: one box more would make its boxes longer.
/// @param side  of the room, along which the row stands
/// @param scale area of an octet
std::size_t endOfRow(const std::vector<Box>& boxes, std::size_t first, double side, double scale) {
  double sum = 0;
  double worst = 0;
  for (std::size_t end = first; end < boxes.size(); ++end) {
    sum += static_cast<double>(boxes[end].octets) * scale;
    const double thickness = sum / side;
    const auto ratio = [&](std::size_t i) {
      const double length = static_cast<double>(boxes[i].octets) * scale / thickness;
      return std::max(length / thickness, thickness / length);
    };
    const double ratios = std::max(ratio(first), ratio(end));
    if (end > first && ratios > worst) return end;
    worst = ratios;
  }
  return boxes.size();
}

/// Lays boxes out, the largest first, in rows along the shorter side, so that they come near to
/// squares.
void layOut(std::vector<Box>& boxes, Rectangle room) {
  constexpr double kLeast = 1e-9;  // Sums of parts may be a little more than the whole.
  double left = 0;
  for (const Box& box : boxes) left += static_cast<double>(box.octets);
  for (std::size_t first = 0; first < boxes.size();) {
    const bool isUpright = room.width >= room.height;
    const double side = std::max(isUpright ? room.height : room.width, kLeast);
    const double scale = std::max(room.area(), kLeast) / std::max(left, 1.0);
    const std::size_t end = endOfRow(boxes, first, side, scale);
    double sum = 0;
    for (std::size_t i = first; i < end; ++i) sum += static_cast<double>(boxes[i].octets);
    const double thickness = sum * scale / side;
    double along = 0;
    for (std::size_t i = first; i < end; ++i) {
      const double length = static_cast<double>(boxes[i].octets) * scale / thickness;
      boxes[i].place = isUpright ? Rectangle{room.x, room.y + along, thickness, length}
                                 : Rectangle{room.x + along, room.y, length, thickness};
      along += length;
    }
    left -= sum;
    (isUpright ? room.x : room.y) += thickness;
    double& shrunk = isUpright ? room.width : room.height;
    shrunk = std::max(0.0, shrunk - thickness);
    first = end;
  }
}

void add(OctetsByKind& sum, const OctetsByKind& octets) {
  for (std::size_t i = 0; i < kOctetKinds; ++i) sum[i] += octets[i];
}

/// The colours of all kinds side by side, in proportion.
std::string background(const Box& box) {
  std::string stripes;
  std::uint64_t done = 0;
  for (std::size_t i = 0; i < kOctetKinds; ++i) {
    if (box.kinds[i] == 0) continue;
    char stripe[64];
    const double all = static_cast<double>(box.octets) / 100;
    std::snprintf(stripe, sizeof stripe, ",var(--k%zu) %.1f%% %.1f%%", i,
                  static_cast<double>(done) / all, static_cast<double>(done + box.kinds[i]) / all);
    stripes += stripe;
    done += box.kinds[i];
  }
  return ";background:linear-gradient(90deg" + stripes + ")";
}

class Treemap {
 public:
  Treemap(std::ostream& out, const PathTree& paths, Encoding encoding)
      : out_(out),
        nodes_(paths.nodes()),
        encoding_(static_cast<std::size_t>(encoding)),
        kinds_(nodes_.size()) {
    // Children come behind their parents.
    for (std::size_t i = nodes_.size(); i-- > 0;) {
      add(kinds_[i], nodes_[i].own[encoding_]);
      if (i > 0) add(kinds_[nodes_[i].parent], kinds_[i]);
    }
    all_ = sumOf(kinds_[0]);
  }

  void write() {
    out_ << "<div class=\"map\">\n";
    writeWithin(0, {0, 0, kWidth, kHeight}, "");
    out_ << "</div>\n";
  }

 private:
  std::vector<Box> boxesWithin(std::uint32_t parent) const {
    std::vector<Box> boxes;
    for (const std::uint32_t child : nodes_[parent].children) {
      const std::string name = nodes_[child].name.empty() ? "(others)" : nodes_[child].name;
      boxes.push_back({name, kinds_[child], child});
    }
    boxes.push_back(
        {parent == 0 ? "(outside of the root)" : "(itself)", nodes_[parent].own[encoding_], 0});
    std::erase_if(boxes, [](const Box& box) { return box.octets == 0; });
    std::stable_sort(boxes.begin(), boxes.end(),
                     [](const Box& a, const Box& b) { return a.octets > b.octets; });
    return boxes;
  }

  /// Puts all that would be too small to see into one box.
  static void gather(std::vector<Box>& boxes, const Rectangle& room) {
    double all = 0;
    for (const Box& box : boxes) all += static_cast<double>(box.octets);
    const double least = kSmallest * kSmallest * all / std::max(1.0, room.area());
    const auto small = std::find_if(boxes.begin(), boxes.end(), [&](const Box& box) {
      return static_cast<double>(box.octets) < least;
    });
    if (boxes.end() - small < 2) return;
    OctetsByKind kinds{};
    for (auto box = small; box != boxes.end(); ++box) add(kinds, box->kinds);
    const Box rest{"(" + std::to_string(boxes.end() - small) + " others)", kinds, 0};
    boxes.erase(small, boxes.end());
    boxes.push_back(rest);
  }

  /// It calls itself on each level, of which there are at most PathTree::kMaximumLevels:
  /// NOLINTNEXTLINE(misc-no-recursion)
  void writeWithin(std::uint32_t parent, const Rectangle& room, const std::string& path) {
    std::vector<Box> boxes = boxesWithin(parent);
    gather(boxes, room);
    layOut(boxes, {0, 0, room.width, room.height});
    for (const Box& box : boxes) {
      const Rectangle inside{0, 0, box.place.width - 2 * kBorder,
                             box.place.height - kHeader - kBorder};
      const bool hasBoxes = box.node != 0 && !nodes_[box.node].children.empty() &&
                            std::min(inside.width, inside.height) >= kSmallestWithBoxes;
      const std::string own = path + "/" + box.name;
      writeStart(box, room, hasBoxes, own);
      if (hasBoxes) {
        out_ << "<div class=\"in\">\n";
        writeWithin(box.node, inside, own);
        out_ << "</div>";
      }
      out_ << "</div>\n";
    }
  }

  void writeStart(const Box& box, const Rectangle& room, bool hasBoxes, const std::string& path) {
    char place[128];
    std::snprintf(place, sizeof place, "left:%.2f%%;top:%.2f%%;width:%.2f%%;height:%.2f%%",
                  100 * box.place.x / room.width, 100 * box.place.y / room.height,
                  100 * box.place.width / room.width, 100 * box.place.height / room.height);
    const std::string share = percent(box.octets, all_);
    out_ << "<div class=\"box" << (hasBoxes ? " has" : "") << "\" style=\"" << place
         << (hasBoxes ? "" : background(box)) << "\" title=\"" << forPage(path) << ": "
         << grouped(box.octets) << " octets, " << share << "\"><b>" << forPage(box.name) << " <i>"
         << share << "</i></b>";
  }

  std::ostream& out_;
  const std::vector<PathTree::Node>& nodes_;
  std::size_t encoding_;
  std::vector<OctetsByKind> kinds_;  // Of each node, with all within.
  std::uint64_t all_ = 0;
};

}  // namespace

void writeTreemap(std::ostream& out, const PathTree& paths, Encoding encoding) {
  Treemap(out, paths, encoding).write();
}

}  // namespace tool
