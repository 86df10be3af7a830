#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "Letters.h"

TEST(VocabularyHeader, MakesTheVocabularyOfWhichItWasMade) {
  std::ifstream file(TAVRIN_VOCABULARY, std::ios::binary);
  const std::string octets{std::istreambuf_iterator<char>(file), {}};
  std::ostringstream made;
  post::makeLetters().write(made);
  EXPECT_EQ(made.str(), octets);
  EXPECT_GT(octets.size(), 100U);
  // What is hard to write in C++ is in there.
  for (const char* text : {"\"B\xC3\xA4"
                           "cker\" \?\?/ & S\xC3\xB6hne",
                           "It costs 1\t\xE2\x82\xAC.\n  What\? \\n %d 7", " '\"' ", "C:\\post"}) {
    EXPECT_NE(octets.find(text), std::string::npos) << text;
  }
}

TEST(VocabularyHeader, HasTheURI) { EXPECT_STREQ(post::makeLettersURI, "post:1"); }
