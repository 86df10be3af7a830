#include <gtest/gtest.h>

#include "FIReaderValues.h"

// Attributes with typed values, as the handler of startElement sees them.

namespace reader_test {
namespace {

using TypedAttributes = Tavrin::EncodingAlgorithmAttributes;

/// Hands the attributes of every element to an action.
class AttributesHandler : public Tavrin::ContentHandler {
 public:
  explicit AttributesHandler(std::function<void(const TypedAttributes&)> action)
      : action_(std::move(action)) {}

  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    ++elements;
    const auto* typed = dynamic_cast<const TypedAttributes*>(&attributes);
    ASSERT_NE(nullptr, typed);
    action_(*typed);
  }

  int elements = 0;

 private:
  std::function<void(const TypedAttributes&)> action_;
};

/// Reads a document and hands the attributes of its only element to the action.
void withAttributes(const std::string& attributes,
                    const std::function<void(const TypedAttributes&)>& action) {
  AttributesHandler handler(action);
  TypedReader reader;
  reader.reader.setContentHandler(&handler);
  EXPECT_EQ("", reader.read(withAlgorithmURI("7C 00 'a' " + attributes + " FF F0")));
  EXPECT_EQ(1, handler.elements);
}

TEST(FIReaderTypedAttributes, TellAlgorithmAndValue) {
  withAttributes("78 00 'b' 30 37 00 00 00 01 FF FF FF FE", [](const TypedAttributes& attributes) {
    EXPECT_EQ(1, attributes.getLength());
    EXPECT_EQ("", attributes.getURI(0));
    EXPECT_EQ("b", attributes.getLocalName(0));
    EXPECT_EQ("b", attributes.getQName(0));
    EXPECT_EQ("CDATA", attributes.getType(0));
    EXPECT_EQ("", attributes.getAlgorithmURI(0));
    EXPECT_EQ(3, attributes.getAlgorithmIndex(0));
    const auto* value = dynamic_cast<const Tavrin::IntData*>(attributes.getAlgorithmData(0));
    ASSERT_NE(nullptr, value);
    EXPECT_EQ((std::vector<long>{1, -2}), value->data_);
    EXPECT_EQ("1 -2", attributes.getValue(0));
  });
}

TEST(FIReaderTypedAttributes, TellTheURIOfAnApplicationsAlgorithm) {
  withAttributes("78 00 'b' 32 02 'abc'", [](const TypedAttributes& attributes) {
    EXPECT_EQ("urn:reversed", attributes.getAlgorithmURI(0));
    EXPECT_EQ(32, attributes.getAlgorithmIndex(0));
    EXPECT_EQ("urn:reversed", attributes.getAlgorithmURI("b"));
    EXPECT_EQ(32, attributes.getAlgorithmIndex("", "b"));
    EXPECT_EQ("cba", attributes.getAlgorithmData("b")->toString());
    EXPECT_EQ("cba", attributes.getValue(0));
  });
}

TEST(FIReaderTypedAttributes, MakeTheirTextWhenItIsAskedForByPosition) {
  withAttributes("78 00 'b' 30 21 00 07", [](const TypedAttributes& attributes) {
    EXPECT_EQ("", attributes.getValue("b"));
    EXPECT_EQ("", attributes.getValue("", "b"));
    EXPECT_EQ("7", attributes.getValue(0));
    EXPECT_EQ("7", attributes.getValue("b"));
    EXPECT_EQ("7", attributes.getValue("", "b"));
    EXPECT_EQ(&attributes.getValue(0), &attributes.getValue("b"));
  });
}

TEST(FIReaderTypedAttributes, StandBesideTextInTheirOrder) {
  TypedReader reader;
  EXPECT_EQ(
      whole({"startElement(, a, a, [{, b, b, CDATA, x}, {, c, c, CDATA, 7, , 2, ShortData{7}}, "
             "{, b, b, CDATA, }, {, c, c, CDATA, 007FA0, , 0, HexadecimalData{007FA0}}])",
             "endElement(, a, a)"}),
      reader.read(document("7C 00 'a' 78 00 'b' 00 'x' 78 00 'c' 30 21 00 07 00 FF "
                           "01 30 02 00 7F A0 FF F0")));
}

TEST(FIReaderTypedAttributes, AreNotTypedWhereTheirValueIsText) {
  withAttributes("78 00 'b' 00 'x'", [](const TypedAttributes& attributes) {
    EXPECT_EQ("x", attributes.getValue("b"));
    EXPECT_EQ("", attributes.getAlgorithmURI(0));
    EXPECT_EQ(-1, attributes.getAlgorithmIndex(0));
    EXPECT_EQ(nullptr, attributes.getAlgorithmData(0));
  });
}

TEST(FIReaderTypedAttributes, OfOneAlgorithmKeepTheirValuesApart) {
  for (const TypedValue& value : typedValues()) {
    SCOPED_TRACE(value.name);
    const std::string twice =
        "78 00 'b' " + std::string(value.attributeValue) + " 78 00 'c' " + value.attributeValue;
    withAttributes(twice, [&](const TypedAttributes& attributes) {
      ASSERT_EQ(2, attributes.getLength());
      EXPECT_NE(attributes.getAlgorithmData(0), attributes.getAlgorithmData(1));
      EXPECT_EQ(value.text, attributes.getValue(0));
      EXPECT_EQ(value.text, attributes.getValue(1));
    });
  }
}

TEST(FIReaderTypedAttributes, AreNotAddedToTheValues) {
  TypedReader reader;
  for (const TypedValue& value : typedValues()) {
    SCOPED_TRACE(value.name);
    // With the bit that adds, which says nothing here.
    std::string added = value.attributeValue;
    added[0] = '7';
    EXPECT_EQ(failed({}, "Error when decoding string - invalid index"),
              reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b' " + added + " 00 80 FF F0")));
  }
}

TEST(FIReaderTypedAttributes, AreFreedWithTheListOfAnElementThatFails) {
  TypedReader reader;
  EXPECT_EQ(failed({}, "Error when decoding attribute name"),
            reader.read(document("7C 00 'a' 78 00 'b' 30 02 00 7F A0 80")));
  EXPECT_EQ(failed({}, "Unknown encoding algorithm - "),
            reader.read(document("7C 00 'a' 78 00 'b' 30 02 00 7F A0 00 30 80 00 FF F0")));
}

}  // namespace
}  // namespace reader_test
