// settings/text_file.cpp — whole-file reading and atomic writing (see text_file.h).
#include "settings/text_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <system_error>

namespace settings {

namespace fs = std::filesystem;

FileText ReadFile(const fs::path& path) {
  FileText out;
  std::error_code ec;
  if (!fs::is_regular_file(path, ec)) return out;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    out.error = "No se pudo leer el archivo " + path.string() + ": no se puede abrir";
    out.exists = true;
    return out;
  }
  out.exists = true;
  std::string bytes;
  std::uintmax_t size = fs::file_size(path, ec);
  if (!ec) {
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
  }
  // Whatever the size said, read on to the end (the file may have grown).
  char more[65536];
  while (in.read(more, sizeof more) || in.gcount() > 0) bytes.append(more, static_cast<std::size_t>(in.gcount()));
  if (in.bad()) {
    out.error = "No se pudo leer el archivo " + path.string() + ": error de lectura";
    return out;
  }
  bool bom = bytes.size() >= 2 && (bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0 ||
                                   bytes.compare(0, 3, "\xEF\xBB\xBF") == 0);
  if (!bom && IsValidUtf8(bytes) && bytes.find('\0') == std::string::npos) {
    // Plain UTF-8, the common case: no conversion and no copy.
    out.encoding = TextEncoding::Utf8;
    out.text = std::move(bytes);
  } else {
    std::string reason;
    auto text = DecodeAuto(bytes, &out.encoding, &reason);
    if (!text) {
      out.error = "No se pudo leer el archivo " + path.string() + ": " + reason;
      return out;
    }
    out.text = std::move(*text);
  }
  std::size_t p = out.text.find_first_of("\r\n");
  if (p != std::string::npos)
    out.line_ending = (out.text[p] == '\r' && p + 1 < out.text.size() && out.text[p + 1] == '\n')
                          ? "\r\n"
                          : std::string(1, out.text[p]);
  return out;
}

std::string ReadText(const fs::path& path) {
  FileText f = ReadFile(path);
  return f.ok() ? std::move(f.text) : std::string();
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0, i = 0;
  while (i < text.size()) {
    char c = text[i];
    if (c == '\r' || c == '\n') {
      lines.emplace_back(text.substr(start, i - start));
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      start = ++i;
    } else {
      ++i;
    }
  }
  if (start < text.size()) lines.emplace_back(text.substr(start));
  return lines;
}

std::string JoinLines(const std::vector<std::string>& values, std::string_view separator) {
  std::string out;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i) out.append(separator);
    out.append(values[i]);
  }
  return out;
}

bool WriteBytesAtomic(const fs::path& path, std::string_view bytes, std::string* error) {
  static std::atomic<unsigned> counter{0};
  fs::path dir = path.parent_path();
  if (dir.empty()) dir = ".";
  fs::path tmp = dir / ("." + path.filename().string() + ".tmp" + std::to_string(::getpid()) + "_" +
                        std::to_string(counter++));
  auto fail = [&](const std::string& why) {
    std::error_code ignored;
    fs::remove(tmp, ignored);
    if (error) *error = "No se pudo guardar el archivo " + path.string() + ": " + why;
    return false;
  };
  {
    // POSIX calls rather than a stream: the data must reach the disk (fsync)
    // before the rename makes it the file, or a power cut after the rename
    // could leave an empty or half-written file under the real name.
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) return fail("no se puede crear el archivo temporal");
    std::size_t written = 0;
    while (written < bytes.size()) {
      const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) {
        ::close(fd);
        return fail("error de escritura");
      }
      written += static_cast<std::size_t>(n);
    }
    const bool synced = ::fsync(fd) == 0;
    if (::close(fd) != 0 || !synced) return fail("error de escritura");
  }
  std::error_code ec;
  // Keep the permissions of the file being replaced.
  if (fs::exists(path, ec)) {
    auto perms = fs::status(path, ec).permissions();
    if (!ec) fs::permissions(tmp, perms, ec);
  }
  fs::rename(tmp, path, ec);
  if (ec) return fail(ec.message());
  // The rename itself is only durable once the folder's entry is on disk.
  const int dir_fd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir_fd >= 0) {
    ::fsync(dir_fd);
    ::close(dir_fd);
  }
  return true;
}

std::string ReadFirstLine(const fs::path& path, std::size_t limit) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return {};
  std::string bytes;
  bool complete = false;  // a line break (or the end of the file) was reached
  char buf[4096];
  while (bytes.size() < limit) {
    in.read(buf, sizeof buf);
    std::streamsize got = in.gcount();
    if (got <= 0) {
      complete = true;
      break;
    }
    bytes.append(buf, static_cast<std::size_t>(got));
    if (bytes.size() >= 2 && (bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0)) {
      std::vector<std::string> lines = SplitLines(ReadText(path));
      return lines.empty() ? std::string() : lines.front();
    }
    std::size_t brk = bytes.find_first_of("\r\n");
    if (brk != std::string::npos) {
      bytes.resize(brk);
      complete = true;
      break;
    }
  }
  if (bytes.size() > limit) {
    bytes.resize(limit);
    complete = false;
  }
  // A UTF-8 character cut by the limit would make the text look like
  // Windows-1252: drop an incomplete last character before deciding.
  if (!complete && !IsValidUtf8(bytes)) {
    for (std::size_t drop = 1; drop <= 3 && drop < bytes.size(); ++drop) {
      if (IsValidUtf8(std::string_view(bytes).substr(0, bytes.size() - drop))) {
        bytes.resize(bytes.size() - drop);
        break;
      }
    }
  }
  auto text = DecodeAuto(bytes, nullptr, nullptr);
  return text ? *text : std::string();
}

namespace {

// Line breaks in a buffer: every LF, and every CR not followed by LF. A CR at
// the very end is counted when `next` (the byte after the buffer, or 0) is not LF.
long long CountBreaks(const char* p, std::size_t n, char next) {
  long long breaks = std::count(p, p + n, '\n');
  const char* end = p + n;
  for (const char* q = p; (q = static_cast<const char*>(std::memchr(q, '\r', static_cast<std::size_t>(end - q))));
       ++q) {
    char after = q + 1 < end ? q[1] : next;
    if (after != '\n') ++breaks;
  }
  return breaks;
}

}  // namespace

long long CountLines(std::string_view text) {
  if (text.empty()) return 0;
  long long lines = CountBreaks(text.data(), text.size(), 0);
  if (text.back() != '\n' && text.back() != '\r') ++lines;
  return lines;
}

long long CountFileLines(const fs::path& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return 0;
  std::vector<char> a(1 << 16), b(1 << 16);
  long long lines = 0;
  std::size_t n = std::fread(a.data(), 1, a.size(), f);
  char last = '\n';
  while (n > 0) {
    // Read one buffer ahead so that a CR at the end can see the next byte.
    std::size_t m = std::fread(b.data(), 1, b.size(), f);
    lines += CountBreaks(a.data(), n, m > 0 ? b[0] : 0);
    last = a[n - 1];
    std::swap(a, b);
    n = m;
  }
  std::fclose(f);
  return lines + ((last != '\n' && last != '\r') ? 1 : 0);
}

}  // namespace settings
