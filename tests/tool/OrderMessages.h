#pragma once

#include <string>

/// Orders as a shop may send them: each has a number of its own, and articles that others have,
/// too.
inline std::string orderMessage(const std::string& number, const std::string& article1,
                                const std::string& count1, const std::string& article2,
                                const std::string& count2, const std::string& article3,
                                const std::string& count3) {
  const auto item = [](const std::string& article, const std::string& count) {
    return "<o:item article='" + article + "'>" + count + "</o:item>";
  };
  return "<o:order xmlns:o='http://example.com/orders' number='" + number + "'>" +
         item(article1, count1) + item(article2, count2) + item(article3, count3) + "</o:order>";
}
