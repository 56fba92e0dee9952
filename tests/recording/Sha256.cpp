#include "Sha256.h"

#include <cmath>

namespace orvantis::testing {
namespace {

// The first 32 bits of the fraction of a root.
std::uint32_t fractionOf(long double root) {
  return static_cast<std::uint32_t>((root - std::floor(root)) * 4294967296.0L);
}

std::vector<std::uint32_t> primes(std::size_t count) {
  std::vector<std::uint32_t> result;
  for (std::uint32_t n = 2; result.size() < count; ++n) {
    bool isPrime = true;
    for (const std::uint32_t p : result) {
      isPrime = isPrime && n % p != 0;
    }
    if (isPrime) {
      result.push_back(n);
    }
  }
  return result;
}

std::uint32_t turned(std::uint32_t value, unsigned by) {
  return value >> by | value << (32 - by);
}

void addBlock(const unsigned char* block, std::array<std::uint32_t, 8>& hash) {
  static const std::vector<std::uint32_t> constants = [] {
    std::vector<std::uint32_t> result;
    for (const std::uint32_t p : primes(64)) {
      result.push_back(fractionOf(std::cbrt(static_cast<long double>(p))));
    }
    return result;
  }();
  std::array<std::uint32_t, 64> w{};
  for (std::size_t i = 0; i < 16; ++i) {
    for (std::size_t k = 0; k < 4; ++k) {
      w[i] = w[i] << 8U | block[4 * i + k];
    }
  }
  for (std::size_t i = 16; i < 64; ++i) {
    w[i] = w[i - 16] + (turned(w[i - 15], 7) ^ turned(w[i - 15], 18) ^ w[i - 15] >> 3U) + w[i - 7] +
           (turned(w[i - 2], 17) ^ turned(w[i - 2], 19) ^ w[i - 2] >> 10U);
  }
  auto [a, b, c, d, e, f, g, h] = hash;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t one =
        h + (turned(e, 6) ^ turned(e, 11) ^ turned(e, 25)) + ((e & f) ^ (~e & g)) + constants[i] + w[i];
    const std::uint32_t two = (turned(a, 2) ^ turned(a, 13) ^ turned(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + one;
    d = c;
    c = b;
    b = a;
    a = one + two;
  }
  const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < 8; ++i) {
    hash[i] += added[i];
  }
}

}  // namespace

std::string sha256(const std::vector<unsigned char>& bytes) {
  std::array<std::uint32_t, 8> hash{};
  const std::vector<std::uint32_t> firstPrimes = primes(8);
  for (std::size_t i = 0; i < 8; ++i) {
    hash[i] = fractionOf(std::sqrt(static_cast<long double>(firstPrimes[i])));
  }
  std::vector<unsigned char> padded = bytes;
  padded.push_back(0x80);
  padded.resize((padded.size() + 8 + 63) / 64 * 64 - 8);
  for (int shift = 56; shift >= 0; shift -= 8) {
    padded.push_back(
        static_cast<unsigned char>(std::uint64_t{8} * bytes.size() >> static_cast<unsigned>(shift)));
  }
  for (std::size_t at = 0; at < padded.size(); at += 64) {
    addBlock(padded.data() + at, hash);
  }
  std::string text;
  for (const std::uint32_t word : hash) {
    for (int shift = 28; shift >= 0; shift -= 4) {
      text += "0123456789abcdef"[word >> static_cast<unsigned>(shift) & 0xFU];
    }
  }
  return text;
}

}  // namespace orvantis::testing
