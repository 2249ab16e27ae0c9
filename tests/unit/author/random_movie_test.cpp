#include "support/random_movie.h"

#include <gtest/gtest.h>

#include <set>

#include "reader.h"

namespace vexel::author {
namespace {

// Codes of the root timeline; fails when the tags do not end with the bytes.
std::multiset<int> Codes(const Bytes& bytes) {
  Reader in(bytes, 4);
  EXPECT_EQ(in.U32(), bytes.size());
  const int bits = static_cast<int>(in.Bits(5));
  for (int i = 0; i < 4; ++i) in.SBits(bits);
  in.U16();
  const uint32_t frames = in.U16();
  std::multiset<int> codes;
  while (!in.done()) {
    const uint32_t word = in.U16();
    uint32_t length = word & 63;
    if (length == 63) length = in.U32();
    in.Skip(length);
    codes.insert(static_cast<int>(word >> 6));
  }
  EXPECT_EQ(in.pos(), bytes.size());
  EXPECT_EQ(codes.count(1), frames);
  EXPECT_EQ(codes.count(0), 1u);
  return codes;
}

TEST(RandomMovie, TheSameSeedGivesTheSameBytes) {
  EXPECT_EQ(RandomMovie(7), RandomMovie(7));
  EXPECT_NE(RandomMovie(7), RandomMovie(8));
}

TEST(RandomMovie, EveryMovieIsFramedAndTheyCoverTheFormat) {
  RandomMovieOptions options;
  options.fields = true;
  options.actions = true;
  std::set<int> seen;
  for (uint32_t seed = 0; seed < 200; ++seed) {
    const std::multiset<int> codes = Codes(RandomMovie(seed, options));
    seen.insert(codes.begin(), codes.end());
    ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
  }
  const std::set<int> want = {0,  1,  2,  4,  6,  7,  8,  9,  11, 12, 20, 21, 22,
                              23, 26, 28, 32, 33, 34, 35, 36, 37, 39, 43, 46, 48};
  EXPECT_EQ(seen, want);
}

}  // namespace
}  // namespace vexel::author
