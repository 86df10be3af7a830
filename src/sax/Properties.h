#pragma once

#include <Tavrin/Exceptions.h>

#include <optional>
#include <string>

// The properties of a type are listed once, in a function
//   template <typename Access> bool accessProperty(Access access)
// which returns `access(identifier, member) || access(...) || ...`. It is called with a
// PropertySetter or PropertyGetter. A member is a pointer; an optional value; or a value with its
// default, which a null pointer restores.

namespace Tavrin {

[[noreturn]] inline void throwFeatureNotRecognized(const std::string& name) {
  throw SAXNotRecognizedException("Feature \"" + name + "\" not recognized");
}

[[noreturn]] inline void throwPropertyNotRecognized(const std::string& name) {
  throw SAXNotRecognizedException("Property \"" + name + "\" not recognized");
}

[[noreturn]] inline void throwCanOnlyBeAsked(const char* kind, const std::string& name) {
  throw SAXException(std::string(kind) + " \"" + name + "\" can only be asked");
}

/// Refuses an amplification factor that is below 1 or no number.
inline void checkFactor(const std::string& name, const void* value) {
  if (value == nullptr || *static_cast<const double*>(value) >= 1) return;
  throw SAXException("Property \"" + name + "\" must be at least 1");
}

/// A member that an application cannot set.
template <typename Member>
struct ReadOnly {
  Member& member;
};
template <typename Member>
ReadOnly(Member&) -> ReadOnly<Member>;

/// Sets the property that has this name.
struct PropertySetter {
  const std::string& name;
  void* value;

  template <typename Type>
  bool operator()(const char* property, Type*& member) const {
    if (name != property) return false;
    member = static_cast<Type*>(value);
    return true;
  }
  template <typename Value>
  bool operator()(const char* property, std::optional<Value>& member) const {
    if (name != property) return false;
    member.reset();
    if (value != nullptr) member = *static_cast<const Value*>(value);
    return true;
  }
  template <typename Value>
  bool operator()(const char* property, Value& member, const Value& standard) const {
    if (name != property) return false;
    member = value != nullptr ? *static_cast<const Value*>(value) : standard;
    return true;
  }
  template <typename Member>
  bool operator()(const char* property, ReadOnly<Member>) const {
    if (name == property) throwCanOnlyBeAsked("Property", name);
    return false;
  }
};

/// Gets the property that has this name.
struct PropertyGetter {
  const std::string& name;
  void*& value;

  template <typename Member, typename... Standard>
  bool operator()(const char* property, Member& member, const Standard&...) const {
    if (name != property) return false;
    value = addressOf(member);
    return true;
  }
  template <typename Member>
  bool operator()(const char* property, ReadOnly<Member> readOnly) const {
    return (*this)(property, readOnly.member);
  }

 private:
  template <typename Type>
  static void* addressOf(Type*& member) {
    return member;
  }
  template <typename Value>
  static void* addressOf(std::optional<Value>& member) {
    return member ? &*member : nullptr;
  }
  template <typename Value>
  static void* addressOf(Value& member) {
    return &member;
  }
};

}  // namespace Tavrin
