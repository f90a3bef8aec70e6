#include "rule_values.h"

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace FiltersCommon {
namespace rules {

void appendUnsigned(std::string* out, uint64_t value) {
  char buf[24];
  const auto end = std::to_chars(buf, buf + sizeof buf, value).ptr;
  out->append(buf, end);
}

void appendSigned(std::string* out, int64_t value) {
  char buf[24];
  const auto end = std::to_chars(buf, buf + sizeof buf, value).ptr;
  out->append(buf, end);
}

void appendHex(std::string* out, uint64_t value, int digits) {
  char buf[24];
  const auto end = std::to_chars(buf, buf + sizeof buf, value, 16).ptr;
  out->append("0x");
  for (auto n = end - buf; n < digits; ++n) out->push_back('0');
  out->append(buf, end);
}

std::optional<uint64_t> parseUnsigned(std::string_view text, uint64_t max,
                                      bool* malformed) {
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    text.remove_prefix(2);
  }
  uint64_t value = 0;
  const auto [end, ec] =
      std::from_chars(text.data(), text.data() + text.size(), value, base);
  *malformed = text.empty() || end != text.data() + text.size() ||
               (ec != std::errc() && ec != std::errc::result_out_of_range);
  if (*malformed || ec == std::errc::result_out_of_range || value > max) {
    return std::nullopt;
  }
  return value;
}

std::optional<int64_t> parseSigned(std::string_view text, int64_t min,
                                   int64_t max, bool* malformed) {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative) text.remove_prefix(1);
  const auto magnitude = parseUnsigned(text, UINT64_MAX, malformed);
  if (!magnitude) return std::nullopt;
  if (negative) {
    if (*magnitude > static_cast<uint64_t>(-(min + 1)) + 1) return std::nullopt;
    const int64_t value = -static_cast<int64_t>(*magnitude - 1) - 1;
    if (value < min) return std::nullopt;
    return value;
  }
  if (*magnitude > static_cast<uint64_t>(max)) return std::nullopt;
  return static_cast<int64_t>(*magnitude);
}

void appendInterface(std::string* out, limid_t limid) {
  char name[32];
  limid_t back = 0;
  if (limid_to_intfname(limid, name, sizeof name) == 0 &&
      limid_from_intfname(name, &back) == 0 && back == limid) {
    out->append(name);
  } else {
    appendHex(out, limid, 8);
  }
}

std::optional<limid_t> parseInterface(std::string_view text) {
  if (text.empty() || text.size() >= 32) return std::nullopt;
  if (text[0] >= '0' && text[0] <= '9') {
    bool malformed = false;
    const auto value = parseUnsigned(text, UINT32_MAX, &malformed);
    if (!value) return std::nullopt;
    return static_cast<limid_t>(*value);
  }
  char name[32];
  std::memcpy(name, text.data(), text.size());
  name[text.size()] = '\0';
  limid_t limid = 0;
  if (limid_from_intfname(name, &limid) != 0) return std::nullopt;
  return limid;
}

namespace {

// The prefix length `mask` stands for, or -1 when it is no prefix.
int prefixLength(const std::string& mask) {
  int length = 0;
  std::size_t i = 0;
  for (; i < mask.size() && static_cast<unsigned char>(mask[i]) == 0xFF; ++i) {
    length += 8;
  }
  if (i == mask.size()) return length;
  const auto partial = static_cast<unsigned char>(mask[i]);
  // A byte of leading ones: its complement plus one is a power of two.
  const unsigned rest = static_cast<unsigned char>(~partial) + 1u;
  if ((rest & (rest - 1)) != 0) return -1;
  for (unsigned bit = 0x80; bit & partial; bit >>= 1) ++length;
  for (++i; i < mask.size(); ++i) {
    if (mask[i] != 0) return -1;
  }
  return length;
}

std::string prefixMask(std::size_t size, unsigned length) {
  std::string mask(size, '\0');
  for (std::size_t i = 0; i < size && length > 0; ++i) {
    const unsigned bits = length >= 8 ? 8 : length;
    mask[i] = static_cast<char>(0xFF00u >> bits);
    length -= bits;
  }
  return mask;
}

// `bytes` cut or padded with zeros to `size`.
std::string sized(const std::string& bytes, std::size_t size) {
  std::string fixed = bytes.substr(0, size);
  fixed.resize(size, '\0');
  return fixed;
}

void appendOne(std::string* out, const std::string& bytes, std::size_t size) {
  char text[INET6_ADDRSTRLEN];
  if (size == 6) {
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.data());
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", b[0],
                  b[1], b[2], b[3], b[4], b[5]);
  } else {
    inet_ntop(size == 4 ? AF_INET : AF_INET6, bytes.data(), text, sizeof text);
  }
  out->append(text);
}

// One address without mask into `bytes`.
bool parseOne(std::string_view text, std::size_t size, std::string* bytes) {
  char buf[INET6_ADDRSTRLEN + 1];
  if (text.empty() || text.size() >= sizeof buf) return false;
  std::memcpy(buf, text.data(), text.size());
  buf[text.size()] = '\0';
  bytes->assign(size, '\0');
  if (size == 6) {
    // ether_aton_r stops after six octets; the rest must be nothing.
    int colons = 0;
    std::size_t run = 0;
    for (char c : text) {
      if (c == ':') {
        if (run == 0) return false;
        ++colons;
        run = 0;
      } else if (std::isxdigit(static_cast<unsigned char>(c)) && run < 2) {
        ++run;
      } else {
        return false;
      }
    }
    ether_addr mac{};
    if (colons != 5 || run == 0 || ether_aton_r(buf, &mac) == nullptr) {
      return false;
    }
    std::memcpy(&(*bytes)[0], &mac, 6);
    return true;
  }
  return inet_pton(size == 4 ? AF_INET : AF_INET6, buf, &(*bytes)[0]) == 1;
}

}  // namespace

const char* addressName(std::size_t size) {
  return size == 6 ? "MAC" : size == 4 ? "IPv4" : "IPv6";
}

void appendAddress(std::string* out, const std::string& address,
                   const std::string& mask, std::size_t size) {
  appendOne(out, sized(address, size), size);
  const std::string fullMask = sized(mask, size);
  const int length = prefixLength(fullMask);
  if (length == static_cast<int>(size * 8)) return;
  out->push_back('/');
  if (length >= 0) {
    appendUnsigned(out, static_cast<unsigned>(length));
  } else {
    appendOne(out, fullMask, size);
  }
}

bool parseAddress(std::string_view text, std::size_t size, std::string* address,
                  std::string* mask, std::string* error,
                  std::size_t* errorOffset) {
  const std::size_t slash = text.find('/');
  const std::string_view addressText = text.substr(0, slash);
  *errorOffset = 0;
  if (!parseOne(addressText, size, address)) {
    *error = std::string("expected a") + (size == 4 ? "n " : " ") +
             addressName(size) + " address";
    return false;
  }
  if (slash == std::string_view::npos) {
    *mask = std::string(size, '\xff');
    return true;
  }
  const std::string_view maskText = text.substr(slash + 1);
  *errorOffset = slash + 1;
  if (!maskText.empty() && maskText.size() <= 3 &&
      maskText.find_first_not_of("0123456789") == std::string_view::npos) {
    bool malformed = false;
    const auto length = parseUnsigned(maskText, size * 8, &malformed);
    if (!length) {
      *error = "expected a prefix length from 0 to " +
               std::to_string(size * 8) + " or a mask";
      return false;
    }
    *mask = prefixMask(size, static_cast<unsigned>(*length));
    return true;
  }
  if (!parseOne(maskText, size, mask)) {
    *error = std::string("expected a prefix length from 0 to ") +
             std::to_string(size * 8) + " or a mask";
    return false;
  }
  return true;
}

void appendHexBytes(std::string* out, const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  for (char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out->push_back(kDigits[byte >> 4]);
    out->push_back(kDigits[byte & 0xF]);
  }
}

std::optional<std::string> parseHexBytes(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    unsigned value = 0;
    const auto [end, ec] =
        std::from_chars(text.data() + i, text.data() + i + 2, value, 16);
    if (ec != std::errc() || end != text.data() + i + 2) return std::nullopt;
    bytes.push_back(static_cast<char>(value));
  }
  return bytes;
}

}  // namespace rules
}  // namespace FiltersCommon
