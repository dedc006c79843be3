// demo/prng.h — the demo generator's own random numbers.
//
// The demo databases must come out byte-identical for the same arguments on
// every machine, so the generator never uses the standard library's
// distributions (their output differs between library versions). SplitMix64 is
// small, fast and fully specified; every draw below is integer arithmetic.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace demo {

class Prng {
 public:
  explicit Prng(std::uint64_t seed) : state_(seed) {}

  // A generator for one sub-stream (a module, a contract, a month), so that
  // what one part draws never shifts the draws of another.
  static Prng stream(std::uint64_t seed, std::uint64_t a, std::uint64_t b = 0) {
    Prng p(seed ^ 0x9E3779B97F4A7C15ull * (a + 1));
    p.state_ ^= p.next() + b * 0xD1B54A32D192ED03ull;
    p.next();
    return p;
  }

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }

  // Uniform in [0, n); n must be positive and below 2^32 (multiply-shift,
  // no modulo bias worth speaking of at these sizes).
  std::uint64_t below(std::uint64_t n) { return ((next() >> 32) * n) >> 32; }

  // Uniform integer in [lo, hi].
  int range(int lo, int hi) { return lo + static_cast<int>(below(static_cast<std::uint64_t>(hi - lo + 1))); }

  // True with probability percent/100.
  bool chance(int percent) { return below(100) < static_cast<std::uint64_t>(percent); }

  // Uniform real in [0, 1), from the top 53 bits.
  double unit() { return static_cast<double>(next() >> 11) * (1.0 / 9007199254740992.0); }

  // An element of a non-empty array.
  template <typename T, std::size_t N>
  const T& pick(const T (&items)[N]) { return items[below(N)]; }

 private:
  std::uint64_t state_;
};

}  // namespace demo
