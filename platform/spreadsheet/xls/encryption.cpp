#include "platform/spreadsheet/xls/encryption.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <utility>

#include "platform/spreadsheet/little_endian.h"

namespace velk::xls {

namespace {

// What programs encrypt with, and try, when the user has given no password.
constexpr std::string_view defaultPassword = "VelvetSweatshop";

constexpr std::size_t digestSize = 16;
constexpr std::size_t blockSize = 64;

/// State of an MD5 sum.
using Md5 = std::array<std::uint32_t, 4>;

void takeBlock(Md5& state, std::string_view block) {
  static const auto constants = [] {
    std::array<std::uint32_t, blockSize> sines{};
    for (std::size_t i = 0; i < sines.size(); ++i) {
      sines[i] = static_cast<std::uint32_t>(
          std::floor(std::abs(std::sin(static_cast<double>(i + 1))) * 4294967296.0));
    }
    return sines;
  }();
  constexpr int turns[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
  constexpr unsigned steps[4][2] = {{1, 0}, {5, 1}, {3, 5}, {7, 0}};  // through the block's words
  auto [a, b, c, d] = state;
  for (unsigned i = 0; i < blockSize; ++i) {
    const unsigned round = i / 16;
    const std::uint32_t mixed[] = {(b & c) | (~b & d), (d & b) | (~d & c), b ^ c ^ d, c ^ (b | ~d)};
    const std::size_t word = (steps[round][0] * i + steps[round][1]) % 16;
    const std::uint32_t sum =
        a + mixed[round] + constants[i] + loadNumber<std::uint32_t>(block.data() + word * 4);
    a = std::exchange(d,
                      std::exchange(c, std::exchange(b, b + std::rotl(sum, turns[round][i % 4]))));
  }
  const std::uint32_t added[] = {a, b, c, d};
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += added[i];
}

std::string md5(std::string text) {
  const std::uint64_t bits = text.size() * 8;
  text += '\x80';
  text.resize((text.size() + 8 + blockSize - 1) / blockSize * blockSize - 8);
  appendNumber(text, bits);
  Md5 state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  for (std::size_t at = 0; at < text.size(); at += blockSize) {
    takeBlock(state, std::string_view(text).substr(at, blockSize));
  }
  std::string digest;
  for (const std::uint32_t number : state) appendNumber(digest, number);
  return digest;
}

/// RC4, which is its own opposite.
std::string crypted(std::string_view key, std::string_view bytes) {
  std::array<std::uint8_t, 256> state{};
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  std::uint8_t j = 0;
  for (std::size_t i = 0; i < state.size(); ++i) {
    j = static_cast<std::uint8_t>(j + state[i] + static_cast<std::uint8_t>(key[i % key.size()]));
    std::swap(state[i], state[j]);
  }
  std::string result;
  std::uint8_t i = j = 0;
  for (const char byte : bytes) {
    j = static_cast<std::uint8_t>(j + state[++i]);
    std::swap(state[i], state[j]);
    const auto place = static_cast<std::uint8_t>(state[i] + state[j]);
    result += static_cast<char>(static_cast<std::uint8_t>(byte) ^ state[place]);
  }
  return result;
}

/// A text of 16 random bytes, and its sum, are encrypted with what the password and a salt make.
bool verifies(std::string_view salt, std::string_view verifier) {
  constexpr std::size_t keySize = 5;  // 40 bits, as the law was
  std::string wide;
  for (const char c : defaultPassword) wide.append({c, '\0'});
  const std::string start = md5(wide).substr(0, keySize);
  std::string salted;
  for (int i = 0; i < 16; ++i) salted.append(start).append(salt);
  const std::string firstBlock(4, '\0');
  const std::string key = md5(md5(salted).substr(0, keySize) + firstBlock);
  const std::string plain = crypted(key, verifier);
  return md5(plain.substr(0, digestSize)) == plain.substr(digestSize);
}

/// Of the older way, which only veils: a sum of the password's characters.
std::uint16_t veilSum() {
  unsigned sum = 0;
  const auto take = [&](unsigned byte) { sum = ((sum >> 14 & 1) | (sum << 1 & 0x7FFF)) ^ byte; };
  std::for_each(defaultPassword.rbegin(), defaultPassword.rend(),
                [&](char c) { take(static_cast<unsigned char>(c)); });
  take(static_cast<unsigned>(defaultPassword.size()));
  return static_cast<std::uint16_t>(sum ^ 0xCE4B);
}

}  // namespace

Opening openingOf(std::string_view filePass) {
  constexpr std::size_t veiledSize = 6;
  constexpr std::size_t encryptedSize = 6 + 3 * digestSize;
  FieldReader fields(filePass);
  bool opens = false;
  if (filePass.size() == veiledSize && fields.u16() == 0) {
    fields.skip(2);  // the key
    opens = fields.u16() == veilSum();
  } else if (filePass.size() == encryptedSize && fields.u16() == 1 && fields.u16() == 1) {
    fields.skip(2);  // of the version
    const std::string_view salt = fields.bytes(digestSize);
    opens = verifies(salt, fields.bytes(2 * digestSize));
  } else {
    return Opening::NotKnown;
  }
  return opens ? Opening::WithoutPassword : Opening::WithPassword;
}

}  // namespace velk::xls
