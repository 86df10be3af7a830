// What an application makes and fills, while each allocation fails in turn: it is as it was before,
// and nothing is lost of the memory.

#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Allocations.h"

namespace {

using namespace Tavrin;

/// Lets each allocation of a piece of work fail. What it makes is gone when it returns.
void checkEvery(const std::function<void()>& work) {
  if (!allocations::areCounted()) GTEST_SKIP() << "allocations cannot fail here";
  work();  // What is made once, when it is needed first, is no leak.
  const std::size_t live = allocations::live();
  bool hasFailed = true;
  for (std::size_t number = 0; hasFailed; ++number) {
    bool isDone = false;
    {
      const allocations::Failure failure(number);
      try {
        work();
        isDone = true;
      } catch (const std::bad_alloc&) {
      }
      hasFailed = failure.happened();
    }
    ASSERT_NE(hasFailed, isDone) << "number " << number;
    ASSERT_EQ(live, allocations::live()) << "number " << number;
  }
}

/// The same of what changes an object: before, and after a failure, it shows the same.
template <typename Object>
void checkChange(const std::function<std::unique_ptr<Object>()>& make,
                 const std::function<void(Object&)>& change,
                 const std::function<std::string(Object&)>& show) {
  if (!allocations::areCounted()) GTEST_SKIP() << "allocations cannot fail here";
  bool hasFailed = true;
  for (std::size_t number = 0; hasFailed; ++number) {
    const auto object = make();
    const std::string before = show(*object);
    bool isDone = false;
    {
      const allocations::Failure failure(number);
      try {
        change(*object);
        isDone = true;
      } catch (const std::bad_alloc&) {
      }
      hasFailed = failure.happened();
    }
    ASSERT_NE(hasFailed, isDone) << "number " << number;
    ASSERT_EQ(isDone, before != show(*object)) << "number " << number;
  }
}

const std::string kName = "a-name-of-more-than-a-few-octets";
const std::string kValue = "a value of more than a few octets";

std::string show(const Attributes& list) {
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&list);
  std::string result;
  for (int i = 0; i < list.getLength(); ++i) {
    for (const std::string& text : {list.getURI(i), list.getLocalName(i), list.getQName(i),
                                    list.getType(i), list.getValue(i)}) {
      result += text + '|';
    }
    if (typed != nullptr && typed->getAlgorithmData(i) != nullptr) {
      result += typed->getAlgorithmURI(i) + '#' + std::to_string(typed->getAlgorithmIndex(i)) +
                typed->getAlgorithmData(i)->toString();
    }
    result += '\n';
  }
  return result;
}

template <typename List>
std::unique_ptr<List> listOfThree() {
  auto list = std::make_unique<List>();
  for (const char* name : {"a", "b", "c"}) list->addAttribute("", name, name, "CDATA", kValue);
  return list;
}

TEST(Objects, OfEachTypeOfReaderBearThatAnyAllocationFails) {
  for (const std::string& type : XMLReaderFactory::getTypeNames()) {
    SCOPED_TRACE(type);
    checkEvery([&] { XMLReaderFactory::createXMLReader(type); });
  }
}

TEST(Objects, OfEachTypeOfWriterBearThatAnyAllocationFails) {
  for (const std::string& type : XMLWriterFactory::getTypeNames()) {
    SCOPED_TRACE(type);
    checkEvery([&] { XMLWriterFactory::createXMLWriter(type); });
  }
}

TEST(Objects, TakePropertiesWholeOrNotAtAll) {
  std::string uri = kName;
  checkChange<XMLWriter>(
      [] { return XMLWriterFactory::createXMLWriter("X891"); },
      [&](XMLWriter& writer) { writer.setProperty(properties::externalVocabulary, &uri); },
      [](XMLWriter& writer) {
        const void* const value = writer.getProperty(properties::externalVocabulary);
        return value == nullptr ? std::string() : *static_cast<const std::string*>(value);
      });
}

TEST(Objects, OfAnApplicationsTypeAreRegisteredOrNot) {
  const auto has = [](const std::vector<std::string>& names) {
    return std::find(names.begin(), names.end(), kName) != names.end();
  };
  checkEvery([] { const XMLReaderType type(kName, XMLReader_XML10::create); });
  EXPECT_FALSE(has(XMLReaderFactory::getTypeNames()));
  checkEvery([] { const XMLWriterType type(kName, XMLWriter_XML10::create); });
  EXPECT_FALSE(has(XMLWriterFactory::getTypeNames()));
}

TEST(Objects, OfTypedContentBearThatAnyAllocationFails) {
  checkEvery([] { Base64Data(kValue).copy(); });
  checkEvery([] { Base64Data(kValue).clone(); });
  checkEvery([] { IntData(std::vector<long>(20, 7)).copy(); });
  checkEvery([] { BooleanData(std::vector<bool>(200, true)).copy(); });
  for (const auto& data : std::vector<std::shared_ptr<EncodedData>>{
           std::make_shared<HexadecimalData>(kValue), std::make_shared<Base64Data>(kValue),
           std::make_shared<ShortData>(std::vector<short>(20, 7)),
           std::make_shared<IntData>(std::vector<long>(20, 7)),
           std::make_shared<LongData>(std::vector<long>(20, 7)),
           std::make_shared<BooleanData>(std::vector<bool>(20, true)),
           std::make_shared<FloatData>(std::vector<float>(20, 1.5F)),
           std::make_shared<DoubleData>(std::vector<double>(20, 1.5)),
           std::make_shared<UUIDData>(std::vector<UUID>(2)), std::make_shared<CDATAData>(kValue)}) {
    checkEvery([&] { data->toString(); });
  }
}

TEST(Objects, ThatAreListsOfAttributesStayAsTheyAre) {
  using Text = AttributesImpl;
  using Typed = EncodingAlgorithmAttributesImpl;
  checkChange<Text>(
      listOfThree<Text>,
      [](Text& list) { list.addAttribute(kName, kName, kName, "NMTOKENS", kValue); }, show);
  checkChange<Typed>(
      listOfThree<Typed>,
      [](Typed& list) { list.addAttribute(kName, kName, kName, "NMTOKENS", kValue); }, show);
  const auto addTyped = [](Typed& list) {
    list.addAttribute(kName, kName, kName, "CDATA", kName, 1, std::make_unique<Base64Data>(kValue));
  };
  checkChange<Typed>(listOfThree<Typed>, addTyped, show);
  const auto more = listOfThree<Typed>();
  addTyped(*more);
  checkChange<Typed>(
      listOfThree<Typed>, [&](Typed& list) { list.copyAttributes(*more); }, show);
  checkEvery([&] { Text().setAttributes(*more); });
  checkEvery([] { const Text copy(*listOfThree<Text>()); });
}

}  // namespace
