#pragma once

#include <Tavrin/Attributes.h>

#include <functional>
#include <string>
#include <utility>

/// Two attributes, `a` and `b`, that do something before they answer.
class ActingAttributes : public Tavrin::AttributesImpl {
 public:
  /// @param action is given what is asked for: "name" or "value"
  explicit ActingAttributes(std::function<void(const std::string&)> action,
                            const std::string& first = "1")
      : action_(std::move(action)) {
    addAttribute("", "a", "a", "CDATA", first);
    addAttribute("", "b", "b", "CDATA", "2");
  }
  const std::string& getQName(int i) const override {
    act("name");
    return AttributesImpl::getQName(i);
  }
  const std::string& getValue(int i) const override {
    act("value");
    return AttributesImpl::getValue(i);
  }

 protected:
  void act(const std::string& what) const { action_(what); }

 private:
  std::function<void(const std::string&)> action_;
};
