#include <openssl/evp.h>

#include <climits>
#include <cstring>

#include "common/CryptoImpl.h"

namespace mivo::common {
const char kURLUnreserved[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.!~*'()";
const char kURLHexDigits[] = "0123456789abcdefABCDEF";
}  // namespace mivo::common

namespace CryptoImpl {

namespace {

constexpr size_t kLineLength = 64;

bool IsBase64Char(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

int HexValue(char c) {
  if (c == '\0' || !std::strchr(mivo::common::kURLHexDigits, c)) return -1;
  if (c >= '0' && c <= '9') return c - '0';
  return (c | 0x20) - 'a' + 10;
}

}  // namespace

std::string Base64::Encode(const std::string& data) {
  if (data.empty() || data.size() > (INT_MAX / 4) * 3 - 3) return std::string();
  std::string text(4 * ((data.size() + 2) / 3) + 1, '\0');
  int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                          reinterpret_cast<const unsigned char*>(data.data()), static_cast<int>(data.size()));
  text.resize(n > 0 ? static_cast<size_t>(n) : 0);
  if (!m_lineBreaks) return text;
  std::string lines;
  lines.reserve(text.size() + text.size() / kLineLength + 1);
  for (size_t at = 0; at < text.size(); at += kLineLength) lines.append(text, at, kLineLength).push_back('\n');
  return lines;
}

bool Base64::Decode(const std::string& text, std::string& data) {
  data.clear();
  std::string compact;
  compact.reserve(text.size());
  for (char c : text) {
    if (c == '\n' || c == '\r') continue;
    compact.push_back(c);
  }
  if (compact.size() % 4 != 0 || compact.size() > INT_MAX) return false;
  // "=" only as the last one or two characters
  size_t padding = 0;
  while (padding < 2 && padding < compact.size() && compact[compact.size() - 1 - padding] == '=') ++padding;
  for (size_t i = 0; i + padding < compact.size(); ++i)
    if (!IsBase64Char(compact[i])) return false;
  if (compact.empty()) return true;
  data.resize(compact.size() / 4 * 3);
  int n = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(data.data()),
                          reinterpret_cast<const unsigned char*>(compact.data()), static_cast<int>(compact.size()));
  if (n < 0 || static_cast<size_t>(n) < padding) {
    data.clear();
    return false;
  }
  data.resize(static_cast<size_t>(n) - padding);
  return true;
}

std::string URLCode::Encode(const std::string& text) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size() * 3);
  for (char c : text) {
    if (c != '\0' && std::strchr(mivo::common::kURLUnreserved, c)) {
      out.push_back(c);
    } else {
      auto byte = static_cast<unsigned char>(c);
      out.push_back('%');
      out.push_back(kHex[byte >> 4]);
      out.push_back(kHex[byte & 15]);
    }
  }
  return out;
}

std::string URLCode::Decode(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    int high = -1, low = -1;
    if (text[i] == '%' && i + 2 < text.size()) {
      high = HexValue(text[i + 1]);
      low = HexValue(text[i + 2]);
    }
    if (high >= 0 && low >= 0) {
      out.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

}  // namespace CryptoImpl
