#pragma once

#include <Tavrin/Exceptions.h>

#include <exception>
#include <string>

/// The text of the Exception that a call throws. Another exception passes through.
template <typename Exception, typename Call>
std::string thrown(Call call) {
  try {
    call();
  } catch (const Exception& exception) {
    if constexpr (requires { exception.getMessage(); }) {
      return exception.getMessage();
    } else {
      return exception.what();
    }
  }
  return "nothing was thrown";
}
