// staging/interchange_stream.cpp — block-wise reading of data files.
#include "staging/interchange_stream.h"

#include <cstring>

namespace staging {

namespace {

// Bytes read at a time: large enough that the per-block work vanishes, small
// enough that memory stays flat.
constexpr std::size_t kBlock = 1 << 20;

constexpr char kUtf8Bom[] = "\xEF\xBB\xBF";

struct FileCloser {
  void operator()(std::FILE* f) const {
    if (f) std::fclose(f);
  }
};

std::string CannotRead(const std::filesystem::path& file) {
  return "No se pudo leer el archivo de datos " + file.string();
}

}  // namespace

std::optional<DataFileEncoding> InspectDataFile(const std::filesystem::path& file,
                                                const std::optional<settings::TextEncoding>& forced,
                                                const std::string& file_name, std::string* error,
                                                std::string* warning) {
  std::error_code ec;
  std::unique_ptr<std::FILE, FileCloser> in;
  if (std::filesystem::is_regular_file(file, ec)) in.reset(std::fopen(file.c_str(), "rb"));
  if (!in) {
    if (error) *error = CannotRead(file);
    return std::nullopt;
  }
  DataFileEncoding result;
  EncodingScanner scan;
  std::string block(kBlock, '\0');
  bool first = true, bom = false;
  for (;;) {
    std::size_t n = std::fread(block.data(), 1, block.size(), in.get());
    if (n == 0) break;
    std::string_view bytes(block.data(), n);
    if (first) {
      first = false;
      if (bytes.size() >= 2 && (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF")) {
        // UTF-16: small files from Notepad, decoded whole by the settings decoder.
        std::string whole(bytes);
        while ((n = std::fread(block.data(), 1, block.size(), in.get())) > 0) whole.append(block.data(), n);
        settings::TextEncoding found;
        if (!DecodeDataFile(whole, forced, file_name, &found, error, warning)) return std::nullopt;
        result.whole = std::move(whole);
        return result;
      }
      bom = bytes.size() >= 3 && std::memcmp(bytes.data(), kUtf8Bom, 3) == 0;
    }
    scan.feed(bytes);
  }
  if (std::ferror(in.get())) {
    if (error) *error = CannotRead(file);
    return std::nullopt;
  }
  scan.finish();
  if (scan.has_nul()) {
    if (error) {
      *error = "El archivo " + file_name +
               " no es un archivo de texto (contiene bytes nulos); exporte los datos como texto "
               "delimitado";
    }
    return std::nullopt;
  }
  auto decoding = ChooseDecoding(scan, bom, forced, file_name, error, warning);
  if (!decoding) return std::nullopt;
  result.decoding = *decoding;
  if (bom && *decoding != ByteDecoding::Windows1252) result.skip_bytes = 3;
  return result;
}

DataFileReader::DataFileReader(const std::filesystem::path& file, const DataFileEncoding& encoding,
                               const settings::DataFileLayout& layout)
    : path_(file), decoder_(encoding.decoding), reader_(std::string_view(), layout) {
  if (encoding.whole) {
    buffer_ = *encoding.whole;
    at_end_ = true;
    reader_.set_window(buffer_, 0, true);
    return;
  }
  file_ = std::fopen(file.c_str(), "rb");
  if (!file_) {
    error_ = CannotRead(file);
    at_end_ = true;
    return;
  }
  std::setvbuf(file_, nullptr, _IONBF, 0);  // whole blocks are read: no second buffer
  if (encoding.skip_bytes && std::fseek(file_, static_cast<long>(encoding.skip_bytes), SEEK_SET) != 0) {
    error_ = CannotRead(file);
  }
  reader_.set_window(buffer_, 0, false);
}

DataFileReader::~DataFileReader() {
  if (file_) std::fclose(file_);
}

bool DataFileReader::refill() {
  const std::size_t dropped = reader_.consumed();
  buffer_.erase(0, dropped);
  raw_.resize(kBlock);
  std::size_t n = std::fread(raw_.data(), 1, raw_.size(), file_);
  if (n < raw_.size()) {
    if (std::ferror(file_)) {
      error_ = CannotRead(path_);
      return false;
    }
    at_end_ = true;
  }
  decoder_.decode(std::string_view(raw_.data(), n), at_end_, buffer_);
  reader_.set_window(buffer_, dropped, at_end_);
  return true;
}

bool DataFileReader::next() {
  if (!error_.empty()) return false;
  for (;;) {
    if (reader_.next()) return true;
    if (!reader_.needs_more() || at_end_) return false;
    if (!refill()) return false;
  }
}

}  // namespace staging
