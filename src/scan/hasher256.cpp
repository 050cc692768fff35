// SHA-256 of a whole file through OpenSSL's EVP interface, which picks the CPU's SHA instructions.
#include "scan/hasher256.h"

#include <errno.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <memory>
#include <vector>

#include "scan/regular_file.h"

namespace orrelin {

namespace {

// 4 MiB keeps memory flat whatever the file size, and is large enough that system calls cost nothing.
constexpr size_t kChunk = 4 * 1024 * 1024;

struct MdCtxFree {
  void operator()(EVP_MD_CTX* ctx) const { EVP_MD_CTX_free(ctx); }
};

}  // namespace

std::optional<std::string> Hasher256::hash(const std::filesystem::path& path) {
  RegularFile file(path);
  if (!file.ok()) return std::nullopt;
  // The whole file is read once, front to back: tell the kernel so it reads ahead generously.
  ::posix_fadvise(file.fd(), 0, 0, POSIX_FADV_SEQUENTIAL);

  std::unique_ptr<EVP_MD_CTX, MdCtxFree> ctx(EVP_MD_CTX_new());
  if (!ctx || EVP_DigestInit_ex(ctx.get(), EVP_sha256(), nullptr) != 1) return std::nullopt;

  std::vector<unsigned char> buffer(kChunk);
  for (;;) {
    ssize_t n = ::read(file.fd(), buffer.data(), buffer.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return std::nullopt;  // A read error midway would give the digest of a prefix: no answer instead.
    }
    if (n == 0) break;
    if (EVP_DigestUpdate(ctx.get(), buffer.data(), static_cast<size_t>(n)) != 1) return std::nullopt;
  }

  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(ctx.get(), digest, &length) != 1) return std::nullopt;
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text;
  text.reserve(length * 2);
  for (unsigned int i = 0; i < length; ++i) {
    text.push_back(kHex[digest[i] >> 4]);
    text.push_back(kHex[digest[i] & 0x0f]);
  }
  return text;
}

}  // namespace orrelin
