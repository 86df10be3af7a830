#pragma once

#include <Tavrin/Tavrin.h>

#include <memory>
#include <string>
#include <vector>

#include "Random.h"

/// Random typed values.
namespace agreement {

/// A value and the number of its algorithm.
struct TypedValue {
  int algorithm;
  std::unique_ptr<Tavrin::EncodedData> data;
};

/// A value of any of the nine types, of any class of length, seldom empty.
TypedValue randomValue(Random& random);

/// Text of a given length: letters mostly, and among them octets of every kind. It never holds the
/// ends of comments or sections.
std::string randomText(Random& random, std::size_t length);

/// A length of any class there is, short ones mostly.
std::size_t randomLength(Random& random);

}  // namespace agreement
