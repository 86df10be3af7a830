#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/TypedData.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "VirtualSlot.h"

namespace {

using namespace Tavrin;
using std::string;

// Programs that were built against an older header call by place.
TEST(Interfaces, KeepThePlacesOfTheOperationsOfValues) {
  EXPECT_EQ(slotOf(&EncodedData::toString), 2);
  EXPECT_EQ(slotOf(&EncodedData::clone), 3);
  EXPECT_EQ(slotOf(&EncodedData::callContentHandler), 4);
}

TEST(Interfaces, KeepThePlacesOfTheOperationsOfTypedHandlers) {
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::bytes), 2);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::shorts), 3);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::ints), 4);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::longs), 5);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::booleans), 6);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::floats), 7);
  EXPECT_EQ(slotOf(&PrimitiveTypeContentHandler::doubles), 8);
  EXPECT_EQ(slotOf(&EncodingAlgorithmContentHandler::octets), 2);
  EXPECT_EQ(slotOf(&EncodingAlgorithmContentHandler::object), 3);
}

TEST(Interfaces, KeepThePlacesOfTheOperationsOfAlgorithms) {
  EXPECT_EQ(slotOf(&EncodingAlgorithm::decodeFromInputStream), 2);
  EXPECT_EQ(slotOf(&EncodingAlgorithm::encodeToOutputStream), 3);
  EXPECT_EQ(sizeof(EncodingAlgorithm), sizeof(void*));
  EXPECT_TRUE(std::is_abstract_v<EncodingAlgorithm>);
}

template <typename List>
void expectPlacesOfTypedAttributes() {
  using ByPosition = const string& (List::*)(int) const;
  using ByName = const string& (List::*)(const string&, const string&) const;
  using ByQName = const string& (List::*)(const string&) const;
  using NumberByPosition = int (List::*)(int) const;
  using NumberByName = int (List::*)(const string&, const string&) const;
  using NumberByQName = int (List::*)(const string&) const;
  using DataByPosition = const EncodedData* (List::*)(int) const;
  using DataByName = const EncodedData* (List::*)(const string&, const string&) const;
  using DataByQName = const EncodedData* (List::*)(const string&) const;

  EXPECT_EQ(slotOf(&List::getLength), 2);
  EXPECT_EQ(slotOf(&List::getURI), 3);
  EXPECT_EQ(slotOf(&List::getLocalName), 4);
  EXPECT_EQ(slotOf(&List::getQName), 5);
  EXPECT_EQ(slotOf(static_cast<ByPosition>(&List::getType)), 6);
  EXPECT_EQ(slotOf(static_cast<ByPosition>(&List::getValue)), 7);
  EXPECT_EQ(slotOf(static_cast<NumberByName>(&List::getIndex)), 8);
  EXPECT_EQ(slotOf(static_cast<NumberByQName>(&List::getIndex)), 9);
  EXPECT_EQ(slotOf(static_cast<ByName>(&List::getType)), 10);
  EXPECT_EQ(slotOf(static_cast<ByQName>(&List::getType)), 11);
  EXPECT_EQ(slotOf(static_cast<ByName>(&List::getValue)), 12);
  EXPECT_EQ(slotOf(static_cast<ByQName>(&List::getValue)), 13);
  EXPECT_EQ(slotOf(static_cast<ByPosition>(&List::getAlgorithmURI)), 14);
  EXPECT_EQ(slotOf(static_cast<NumberByPosition>(&List::getAlgorithmIndex)), 15);
  EXPECT_EQ(slotOf(static_cast<DataByPosition>(&List::getAlgorithmData)), 16);
  EXPECT_EQ(slotOf(static_cast<ByName>(&List::getAlgorithmURI)), 17);
  EXPECT_EQ(slotOf(static_cast<ByQName>(&List::getAlgorithmURI)), 18);
  EXPECT_EQ(slotOf(static_cast<NumberByName>(&List::getAlgorithmIndex)), 19);
  EXPECT_EQ(slotOf(static_cast<NumberByQName>(&List::getAlgorithmIndex)), 20);
  EXPECT_EQ(slotOf(static_cast<DataByName>(&List::getAlgorithmData)), 21);
  EXPECT_EQ(slotOf(static_cast<DataByQName>(&List::getAlgorithmData)), 22);
}

TEST(Interfaces, KeepThePlacesOfTheOperationsOfTypedAttributes) {
  expectPlacesOfTypedAttributes<EncodingAlgorithmAttributes>();
  expectPlacesOfTypedAttributes<EncodingAlgorithmAttributesImpl>();
  EXPECT_TRUE(std::is_abstract_v<EncodingAlgorithmAttributes>);
  EXPECT_TRUE((std::is_base_of_v<Attributes, EncodingAlgorithmAttributes>));
}

TEST(Interfaces, AreFreedThroughTheirBases) {
  EXPECT_TRUE(std::has_virtual_destructor_v<EncodedData>);
  EXPECT_TRUE(std::has_virtual_destructor_v<PrimitiveTypeContentHandler>);
  EXPECT_TRUE(std::has_virtual_destructor_v<EncodingAlgorithmContentHandler>);
  EXPECT_TRUE(std::has_virtual_destructor_v<EncodingAlgorithm>);
  EXPECT_TRUE(std::has_virtual_destructor_v<EncodingAlgorithmAttributes>);
}

}  // namespace
