#include "printing/StatPage.h"

#include <algorithm>
#include <string>
#include <vector>

#include "printing/PageText.h"
#include "printing/StatPageStyle.h"
#include "printing/Text.h"
#include "printing/Treemap.h"

namespace tool {

namespace {

constexpr std::size_t kPathsShown = 25;
constexpr std::size_t kStringsShown = 25;

const char* nameOf(Encoding encoding) {
  return encoding == Encoding::Text ? "XML text" : "Fast Infoset";
}

std::string cell(const std::string& text) { return "<td class=\"n\">" + text + "</td>"; }

class Page {
 public:
  Page(std::ostream& out, const Measurement& measurement) : out_(out), about_(measurement) {}

  void write() {
    out_ << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">\n<title>"
         << forPage(about_.name) << ": where the octets go</title>\n<style>" << kStatPageStyle
         << "</style>\n</head>\n<body>\n<main>\n<h1>" << forPage(about_.name)
         << "</h1>\n<p>Where the octets go, as XML text and as Fast Infoset</p>\n";
    writeSizes();
    writeKinds();
    writeMaps();
    writePaths();
    writeStrings();
    writeNotes();
    out_ << "</main>\n</body>\n</html>\n";
  }

 private:
  bool isThere(Encoding encoding) const { return about_.refusalOf(encoding).empty(); }
  std::uint64_t sizeOf(Encoding encoding) const { return sumOf(about_.kindsOf(encoding)); }
  std::uint64_t largest() const {
    std::uint64_t size = 1;
    for (const Encoding encoding : kEncodings) {
      if (isThere(encoding)) size = std::max(size, sizeOf(encoding));
    }
    return size;
  }
  /// The encodings that there is a copy in.
  template <typename Write>
  void forEach(Write write) const {
    for (const Encoding encoding : kEncodings) {
      if (isThere(encoding)) write(encoding);
    }
  }

  void writeSize(const std::string& head, const std::string& number, const std::string& remark) {
    out_ << "<section><h2>" << head << "</h2><b>" << number << "</b><span>" << remark
         << "</span></section>\n";
  }

  void writeSizes() {
    out_ << "<div class=\"sizes\">\n";
    const std::string documents =
        about_.documents == 1 ? "" : ", " + grouped(about_.documents) + " documents";
    writeSize("The file", grouped(about_.octets),
              "octets of " + std::string(nameOf(about_.encoding)) + documents);
    for (const Encoding encoding : kEncodings) {
      const std::string head = "As " + std::string(nameOf(encoding));
      if (!isThere(encoding)) {
        writeSize(head, "impossible", forPage(about_.refusalOf(encoding)));
      } else if (encoding == Encoding::Binary && isThere(Encoding::Text)) {
        writeSize(
            head, grouped(sizeOf(encoding)),
            "octets, " + percent(sizeOf(encoding), sizeOf(Encoding::Text)) + " of the XML text");
      } else {
        writeSize(head, grouped(sizeOf(encoding)), "octets");
      }
    }
    out_ << "</div>\n";
  }

  void writeKinds() {
    out_ << "<section>\n<h2>By kind</h2>\n<p>What the octets are for</p>\n";
    forEach([&](Encoding encoding) { writeBar(encoding); });
    out_ << "<div class=\"scroll\"><table>\n<thead><tr><th></th>";
    forEach([&](Encoding encoding) {
      out_ << "<th class=\"n\" colspan=\"2\">" << nameOf(encoding)
           << "</th><th class=\"wide\"></th>";
    });
    out_ << "</tr></thead>\n<tbody>\n";
    for (std::size_t i = 0; i < kOctetKinds; ++i) writeKind(static_cast<OctetKind>(i));
    out_ << "<tr><th>all</th>";
    forEach([&](Encoding encoding) {
      out_ << cell(grouped(sizeOf(encoding))) << cell("") << "<td class=\"wide\"></td>";
    });
    out_ << "</tr>\n</tbody>\n</table></div>\n</section>\n";
  }

  void writeBar(Encoding encoding) {
    out_ << "<h3>" << nameOf(encoding) << "</h3>\n<div class=\"bar\">";
    for (std::size_t i = 0; i < kOctetKinds; ++i) {
      const std::uint64_t octets = about_.kindsOf(encoding)[i];
      if (octets == 0) continue;
      const auto kind = static_cast<OctetKind>(i);
      out_ << "<div class=\"" << classOf(kind) << "\" style=\"width:" << width(octets, largest())
           << "\" title=\"" << tool::nameOf(kind) << ": " << grouped(octets) << " octets, "
           << percent(octets, sizeOf(encoding)) << "\"></div>";
    }
    out_ << "</div>\n";
  }

  /// A percentage as style sheets have it.
  static std::string width(std::uint64_t part, std::uint64_t whole) {
    std::string text = percent(part, whole);
    text.erase(text.find(' '), 1);
    return text;
  }

  void writeKind(OctetKind kind) {
    const auto number = static_cast<std::size_t>(kind);
    std::uint64_t most = 1;
    forEach([&](Encoding encoding) {
      for (const std::uint64_t octets : about_.kindsOf(encoding)) most = std::max(most, octets);
    });
    out_ << "<tr><th><span class=\"swatch " << classOf(kind) << "\"></span>" << tool::nameOf(kind)
         << "</th>";
    forEach([&](Encoding encoding) {
      const std::uint64_t octets = about_.kindsOf(encoding)[number];
      out_ << cell(grouped(octets)) << "<td class=\"n share\">" << percent(octets, sizeOf(encoding))
           << "</td><td class=\"wide\"><div class=\"track\"><div class=\"" << classOf(kind)
           << "\" style=\"width:" << width(octets, most) << "\"></div></div></td>";
    });
    out_ << "</tr>\n";
  }

  void writeMaps() {
    out_ << "<section>\n<h2>By element</h2>\n<p>Areas are octets, and colours what they are for. "
            "Point at a box for its path.</p>\n";
    forEach([&](Encoding encoding) {
      out_ << "<h3>" << nameOf(encoding) << "</h3>\n";
      writeTreemap(out_, about_.paths, encoding);
    });
    out_ << "<ul class=\"key\">";
    for (std::size_t i = 0; i < kOctetKinds; ++i) {
      const auto kind = static_cast<OctetKind>(i);
      out_ << "<li><span class=\"swatch " << classOf(kind) << "\"></span>" << tool::nameOf(kind)
           << "</li>";
    }
    out_ << "</ul>\n</section>\n";
  }

  std::string pathOf(std::uint32_t node) const {
    std::string path;
    for (; node != 0; node = about_.paths.nodes()[node].parent) {
      const std::string& name = about_.paths.nodes()[node].name;
      path.insert(0, "/" + (name.empty() ? "(others)" : name));
    }
    return path.empty() ? "(outside of the root element)" : path;
  }

  std::uint64_t ownOf(std::uint32_t node) const {
    std::uint64_t octets = 0;
    forEach([&](Encoding encoding) {
      octets += sumOf(about_.paths.nodes()[node].own[static_cast<std::size_t>(encoding)]);
    });
    return octets;
  }

  void writePaths() {
    const auto& nodes = about_.paths.nodes();
    std::vector<std::uint32_t> order(nodes.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return ownOf(a) > ownOf(b); });
    order.resize(std::min(order.size(), kPathsShown));
    out_ << "<section>\n<h2>The elements that cost most</h2>\n<p>Their tags, attributes and text, "
            "without the elements in them</p>\n";
    writeTableHead("path", "elements");
    for (const std::uint32_t node : order) {
      if (ownOf(node) == 0) break;
      out_ << "<tr><td><code>" << forPage(pathOf(node)) << "</code></td>"
           << cell(grouped(nodes[node].elements));
      forEach([&](Encoding encoding) {
        writeShare(encoding, sumOf(nodes[node].own[static_cast<std::size_t>(encoding)]));
      });
      out_ << "</tr>\n";
    }
    out_ << "</tbody>\n</table></div>\n</section>\n";
  }

  void writeTableHead(const char* what, const char* number) {
    out_ << "<div class=\"scroll\"><table>\n<thead><tr><th>" << what << "</th><th class=\"n\">"
         << number << "</th>";
    forEach([&](Encoding encoding) {
      out_ << "<th class=\"n\" colspan=\"2\">" << nameOf(encoding) << "</th>";
    });
    out_ << "</tr></thead>\n<tbody>\n";
  }

  void writeShare(Encoding encoding, std::uint64_t octets) {
    out_ << cell(grouped(octets)) << "<td class=\"n share\">" << percent(octets, sizeOf(encoding))
         << "</td>";
  }

  void writeStrings() {
    constexpr const char* kUses[] = {"element", "attribute", "value", "text"};
    constexpr OctetKind kKinds[] = {OctetKind::Names, OctetKind::Names, OctetKind::Values,
                                    OctetKind::Text};
    out_ << "<section>\n<h2>The strings that cost most</h2>\n<p>All uses of a name, a value or a "
            "piece of text together, with delimiters or lengths of their own</p>\n";
    writeTableHead("string", "times");
    for (const CostlyStrings::Entry& entry : about_.strings.costliest(kStringsShown)) {
      const auto use = static_cast<std::size_t>(entry.use);
      const std::string rest =
          entry.size > entry.text.size() ? "... (" + grouped(entry.size) + " octets)" : "";
      out_ << "<tr><td><span class=\"swatch " << classOf(kKinds[use]) << "\" title=\"" << kUses[use]
           << "\"></span><code>" << forPage(quoted(entry)) << "</code>" << rest
           << " <span class=\"share\">" << kUses[use] << "</span></td>"
           << cell(grouped(entry.times));
      forEach([&](Encoding encoding) {
        writeShare(encoding, entry.octets[static_cast<std::size_t>(encoding)]);
      });
      out_ << "</tr>\n";
    }
    out_ << "</tbody>\n</table></div>\n</section>\n";
  }

  /// A name as it is; other strings in quotes, so that white space shows.
  static std::string quoted(const CostlyStrings::Entry& entry) {
    const bool isName =
        entry.use == CostlyStrings::Use::Element || entry.use == CostlyStrings::Use::Attribute;
    return isName ? entry.text : "\"" + entry.text + "\"";
  }

  void writeNotes() {
    out_ << "<footer><p>Measured on the copies that <code>tavrin convert</code> makes, octet by "
            "octet.";
    if (about_.strings.forgotten() > 0) {
      out_ << " There are more different strings than are kept: what a string costs may be up to "
           << grouped(about_.strings.forgotten()) << " octets more.";
    }
    out_ << "</p></footer>\n";
  }

  std::ostream& out_;
  const Measurement& about_;
};

}  // namespace

void writeStatPage(std::ostream& out, const Measurement& measurement) {
  Page(out, measurement).write();
}

}  // namespace tool
