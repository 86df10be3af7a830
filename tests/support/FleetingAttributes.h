#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

/// A list that has one string for all its answers: each is gone with the next question. It tells
/// what it was asked.
class FleetingAttributes : public Tavrin::EncodingAlgorithmAttributesImpl {
 public:
  const std::string& getURI(int index) const override {
    return answer("uri", attributes_.at(position(index))->uri);
  }
  const std::string& getLocalName(int index) const override {
    return answer("localName", attributes_.at(position(index))->localName);
  }
  const std::string& getQName(int index) const override {
    return answer("qName", attributes_.at(position(index))->qName);
  }
  const std::string& getType(int index) const override {
    return answer("type", attributes_.at(position(index))->type);
  }
  const std::string& getValue(int index) const override {
    return answer("value", attributes_.at(position(index))->value);
  }
  const std::string& getAlgorithmURI(int index) const override {
    return answer("algorithmURI", attributes_.at(position(index))->algorithmURI);
  }

  mutable std::string asked;

 private:
  static std::size_t position(int index) { return static_cast<std::size_t>(index); }
  const std::string& answer(const char* question, const std::string& text) const {
    asked += std::string(asked.empty() ? "" : " ") + question;
    answer_ = std::make_unique<std::string>(text);
    return *answer_;
  }

  mutable std::unique_ptr<std::string> answer_;
};
