#include "io/WriteOctets.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "NarrowBuffer.h"

namespace {

/// Writes pieces of 0 to 19 octets, as the library and as the stream itself would.
template <typename Write>
std::string writePieces(std::ostream& out, Write write) {
  std::string all;
  for (std::size_t i = 0; i < 60; ++i) {
    const std::string piece(i % 20, static_cast<char>('a' + i % 26));
    write(out, piece);
    all += piece;
  }
  return all;
}

void byLibrary(std::ostream& out, const std::string& piece) { Tavrin::writeOctets(out, piece); }
void byStream(std::ostream& out, const std::string& piece) {
  out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
}

TEST(WriteOctets, KeepsTheOrderWhateverRoomThereIs) {
  NarrowBuffer buffer;
  std::ostream out(&buffer);
  const std::string all = writePieces(out, byLibrary);
  EXPECT_EQ(buffer.octets(), all);
  EXPECT_TRUE(out.good());

  std::ostringstream string;
  EXPECT_EQ(writePieces(string, byLibrary), all);
  EXPECT_EQ(string.str(), all);
}

TEST(WriteOctets, WritesPiecesLargerThanAnyRoom) {
  const std::string large(100'000, 'x');
  std::ostringstream out;
  Tavrin::writeOctets(out, "a");
  Tavrin::writeOctets(out, large);
  Tavrin::writeOctets(out, "z");
  EXPECT_EQ(out.str(), 'a' + large + 'z');
}

TEST(WriteOctets, MayTakeTurnsWithTheStreamItself) {
  const std::string path = testing::TempDir() + "write_octets_test";
  {
    std::ofstream out(path, std::ios::binary);
    Tavrin::writeOctets(out, "one ");
    out << 2 << ' ';
    Tavrin::writeOctets(out, "three ");
    out.seekp(0);
    Tavrin::writeOctets(out, "ONE");
    out.seekp(0, std::ios::end);
    Tavrin::writeOctets(out, "four");
    out.put('!');
  }
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  EXPECT_EQ(text.str(), "ONE 2 three four!");
}

TEST(WriteOctets, LeavesAFullStreamAsTheStreamItselfWould) {
  for (std::size_t most = 0; most < 40; ++most) {
    NarrowBuffer buffer(most);
    NarrowBuffer expected(most);
    std::ostream out(&buffer);
    std::ostream expectedOut(&expected);
    writePieces(out, byLibrary);
    writePieces(expectedOut, byStream);
    EXPECT_EQ(buffer.octets(), expected.octets()) << most;
    EXPECT_EQ(out.rdstate(), expectedOut.rdstate()) << most;
    EXPECT_TRUE(out.bad()) << most;
  }
}

TEST(WriteOctets, ThrowsForAFullStreamWhereThatIsAskedFor) {
  NarrowBuffer buffer(10);
  std::ostream out(&buffer);
  out.exceptions(std::ios_base::badbit);
  Tavrin::writeOctets(out, "0123456789");
  EXPECT_THROW(Tavrin::writeOctets(out, "x"), std::ios_base::failure);
  EXPECT_EQ(buffer.octets(), "0123456789");
}

TEST(WriteOctets, TakesWhatABufferThrowsForAFailure) {
  NarrowBuffer buffer(10, true);
  std::ostream out(&buffer);
  Tavrin::writeOctets(out, "0123456789");
  EXPECT_NO_THROW(Tavrin::writeOctets(out, "x"));
  EXPECT_EQ(out.rdstate(), std::ios_base::badbit);
  EXPECT_EQ(buffer.octets(), "0123456789");
}

TEST(WriteOctets, PassesOnWhatABufferThrowsWhereThatIsAskedFor) {
  NarrowBuffer buffer(10, true);
  std::ostream out(&buffer);
  out.exceptions(std::ios_base::badbit);
  Tavrin::writeOctets(out, "0123456789");
  EXPECT_THROW(Tavrin::writeOctets(out, "x"), std::runtime_error);
  EXPECT_EQ(out.rdstate(), std::ios_base::badbit);
}

TEST(WriteOctets, WritesNothingIntoAStreamThatFailed) {
  for (const auto state : {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
    std::ostringstream out;
    out.setstate(state);
    std::ostringstream expected;
    expected.setstate(state);
    byLibrary(out, "x");
    byStream(expected, "x");
    EXPECT_EQ(out.str(), expected.str());
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(out.rdstate(), expected.rdstate());
  }
  std::ostream without(nullptr);
  EXPECT_NO_THROW(Tavrin::writeOctets(without, "x"));
  EXPECT_TRUE(without.bad());
}

TEST(WriteOctets, FlushesWhatIsTiedAndWhatAsksForIt) {
  NarrowBuffer tiedBuffer;
  std::ostream tied(&tiedBuffer);
  NarrowBuffer buffer;
  std::ostream out(&buffer);
  out.tie(&tied);
  Tavrin::writeOctets(out, "x");
  EXPECT_EQ(tiedBuffer.flushes, 1);
  EXPECT_EQ(buffer.flushes, 0);

  out.tie(nullptr);
  out << std::unitbuf;
  Tavrin::writeOctets(out, "y");
  EXPECT_EQ(tiedBuffer.flushes, 1);
  EXPECT_EQ(buffer.flushes, 1);
  EXPECT_EQ(buffer.octets(), "xy");
}

}  // namespace
