#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "EventLog.h"
#include "EventTable.h"
#include "TextWriter.h"

// The text writer completes what is open, and breaks the line, before it knows whether an event may
// come. So a refused event can mark content: a `!+` in these tables.

namespace {

using namespace Tavrin;

using Lines = std::vector<std::string>;

Lines tableOf(Settings settings, bool hasStream) {
  return eventTable(
      [&] {
        auto writer = std::make_unique<TextWriter>(settings);
        if (!hasStream) writer->setOutputStream(nullptr);
        return writer;
      },
      [](Event event, XMLWriter& writer) { send(event, writer); });
}

TEST(TextEventOrder, WithoutIndentation) {
  const Lines expected = squeezed({
      // clang-format off
      //                     Initial Prolog InDTD AfterDTD InRoot InNested InCDATA AfterRoot Ended
      "startDocument         1       !      !     !        !      !        !       !         !",
      "endDocument           !       7      !     7        !      !        !       7         !",
      "startDTD              !       2-     !     !        !      !        !       !         !",
      "endDTD                !       !      3     !        !      !        !       !         !",
      "notationDecl          !       !      2+    !        !+     !+       !+      !         !",
      "unparsedEntityDecl    !       !      2+    !        !+     !+       !+      !         !",
      "internalEntityDecl    !       !      2+    !        !+     !+       !+      !         !",
      "externalEntityDecl    !       !      2+    !        !+     !+       !+      !         !",
      "elementDecl           !       !      2+    !        !+     !+       !+      !         !",
      "attributeDecl         !       !      2+    !        !+     !+       !+      !         !",
      "startElement          !       4-e    !+    4-e      4-re   4-rre    !+      !         !",
      "endElement            !       !      !     !        6+     4+r      !       !         !",
      "characters            !       !      !+    !        4+r    4+rr     5+r     !         !",
      "ignorableWhitespace   !       1+     2+    3+       4+r    4+rr     5+r     6+        !",
      "comment               !       1+     2+    3+       4+r    4+rr     !+      6+        !",
      "processingInstruction !       1+     2+    3+       4+r    4+rr     !+      6+        !",
      "startCDATA            !       !      !+    !        5-r    5-rr     !+      !         !",
      "endCDATA              !       !      !     !        !      !        4+r     !         !",
      // clang-format on
  });
  EXPECT_EQ(join(tableOf({}, true)), join(expected));
}

TEST(TextEventOrder, WithIndentation) {
  const Lines expected = squeezed({
      // clang-format off
      //                     Initial Prolog InDTD AfterDTD InRoot InNested InCDATA AfterRoot Ended
      "startDocument         1       !      !     !        !      !        !       !         !",
      "endDocument           !       7      !     7        !      !        !       7         !",
      "startDTD              !       2-     !+    !+       !+     !+       !       !+        !",
      "endDTD                !       !      3     !        !      !        !       !         !",
      "notationDecl          !       !+     2+    !+       !+     !+       !+      !+        !",
      "unparsedEntityDecl    !       !+     2+    !+       !+     !+       !+      !+        !",
      "internalEntityDecl    !       !+     2+    !+       !+     !+       !+      !+        !",
      "externalEntityDecl    !       !+     2+    !+       !+     !+       !+      !+        !",
      "elementDecl           !       !+     2+    !+       !+     !+       !+      !+        !",
      "attributeDecl         !       !+     2+    !+       !+     !+       !+      !+        !",
      "startElement          !       4-e    !+    4-e      4-re   4-rre    !+      !+        !",
      "endElement            !       !      !     !        6+     4+r      !       !         !",
      "characters            !       !      !+    !        4+r    4+rr     5+r     !         !",
      "ignorableWhitespace   !       1+     2+    3+       4+r    4+rr     5+r     6+        !",
      "comment               !       1+     2+    3+       4+r    4+rr     !+      6+        !",
      "processingInstruction !       1+     2+    3+       4+r    4+rr     !+      6+        !",
      "startCDATA            !       !      !+    !        5-r    5-rr     !+      !         !",
      "endCDATA              !       !      !     !        !      !        4+r     !         !",
      // clang-format on
  });
  EXPECT_EQ(join(tableOf({.indent = true, .declaration = true}, true)), join(expected));
}

// Line breaks are checked like other white space, though there is nowhere to write them.
TEST(TextEventOrder, WithIndentationButNoStream) {
  const Lines expected = squeezed({
      // clang-format off
      //                     Initial Prolog InDTD AfterDTD InRoot InNested InCDATA AfterRoot Ended
      "startDocument         1       !      !     !        !      !        !       !         !",
      "endDocument           !       7      !     7        !      !        !       7         !",
      "startDTD              !       2-     !+    !+       !+     !+       !       !+        !",
      "endDTD                !       !      3     !        !      !        !       !         !",
      "notationDecl          !       !+     2+    !+       !+     !+       !       !+        !",
      "unparsedEntityDecl    !       !+     2+    !+       !+     !+       !       !+        !",
      "internalEntityDecl    !       !+     2+    !+       !+     !+       !       !+        !",
      "externalEntityDecl    !       !+     2+    !+       !+     !+       !       !+        !",
      "elementDecl           !       !+     2+    !+       !+     !+       !       !+        !",
      "attributeDecl         !       !+     2+    !+       !+     !+       !       !+        !",
      "startElement          !       4-e    !+    4-e      4-re   4-rre    !       !+        !",
      "endElement            !       !      !     !        6+     4+r      !       !         !",
      "characters            !       !      !     !        4+r    4+rr     5+r     !         !",
      "ignorableWhitespace   !       1+     2+    3+       4+r    4+rr     5+r     6+        !",
      "comment               !       1+     2+    3+       4+r    4+rr     !       6+        !",
      "processingInstruction !       1+     2+    3+       4+r    4+rr     !       6+        !",
      "startCDATA            !       !      !     !        5-r    5-rr     !       !         !",
      "endCDATA              !       !      !     !        !      !        4+r     !         !",
      // clang-format on
  });
  EXPECT_EQ(join(tableOf({.indent = true, .declaration = true}, false)), join(expected));
}

}  // namespace
