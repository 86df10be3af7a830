#pragma once

#include <Tavrin/Tavrin.h>

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "Trap.h"

// What an application gives to readers and writers, and may throw when it is called.

/// Each call may throw (trap::Place::attributes).
class TrappedAttributes : public Tavrin::EncodingAlgorithmAttributes {
 public:
  explicit TrappedAttributes(const Tavrin::EncodingAlgorithmAttributes& list) : list_(list) {}

  int getLength() const override { return trapped().getLength(); }
  const std::string& getURI(int i) const override { return trapped().getURI(i); }
  const std::string& getLocalName(int i) const override { return trapped().getLocalName(i); }
  const std::string& getQName(int i) const override { return trapped().getQName(i); }
  const std::string& getType(int i) const override { return trapped().getType(i); }
  const std::string& getValue(int i) const override { return trapped().getValue(i); }
  int getIndex(const std::string& uri, const std::string& name) const override {
    return trapped().getIndex(uri, name);
  }
  int getIndex(const std::string& name) const override { return trapped().getIndex(name); }
  const std::string& getType(const std::string& uri, const std::string& name) const override {
    return trapped().getType(uri, name);
  }
  const std::string& getType(const std::string& name) const override {
    return trapped().getType(name);
  }
  const std::string& getValue(const std::string& uri, const std::string& name) const override {
    return trapped().getValue(uri, name);
  }
  const std::string& getValue(const std::string& name) const override {
    return trapped().getValue(name);
  }
  const std::string& getAlgorithmURI(int i) const override { return trapped().getAlgorithmURI(i); }
  int getAlgorithmIndex(int i) const override { return trapped().getAlgorithmIndex(i); }
  const Tavrin::EncodedData* getAlgorithmData(int i) const override {
    return trapped().getAlgorithmData(i);
  }
  const std::string& getAlgorithmURI(const std::string& uri,
                                     const std::string& name) const override {
    return trapped().getAlgorithmURI(uri, name);
  }
  const std::string& getAlgorithmURI(const std::string& name) const override {
    return trapped().getAlgorithmURI(name);
  }
  int getAlgorithmIndex(const std::string& uri, const std::string& name) const override {
    return trapped().getAlgorithmIndex(uri, name);
  }
  int getAlgorithmIndex(const std::string& name) const override {
    return trapped().getAlgorithmIndex(name);
  }
  const Tavrin::EncodedData* getAlgorithmData(const std::string& uri,
                                              const std::string& name) const override {
    return trapped().getAlgorithmData(uri, name);
  }
  const Tavrin::EncodedData* getAlgorithmData(const std::string& name) const override {
    return trapped().getAlgorithmData(name);
  }

 private:
  const Tavrin::EncodingAlgorithmAttributes& trapped() const {
    trap::throwsOrEnds(trap::Place::attributes);
    return list_;
  }

  const Tavrin::EncodingAlgorithmAttributes& list_;
};

/// An algorithm that calls another one, and may throw before and behind (trap::Place::algorithm).
class TrappedAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  explicit TrappedAlgorithm(Tavrin::EncodingAlgorithm& inner) : inner_(inner) {}

  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    trap::throwsOrEnds(trap::Place::algorithm);
    Tavrin::EncodedData& data = inner_.decodeFromInputStream(length, stream);
    trap::throwsOrEnds(trap::Place::algorithm);
    return data;
  }
  void encodeToOutputStream(bool chunk, const Tavrin::EncodedData& data,
                            std::ostream& stream) override {
    trap::throwsOrEnds(trap::Place::algorithm);
    inner_.encodeToOutputStream(chunk, data, stream);
    trap::throwsOrEnds(trap::Place::algorithm);
  }

 private:
  Tavrin::EncodingAlgorithm& inner_;
};
