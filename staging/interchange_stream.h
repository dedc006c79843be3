// staging/interchange_stream.h — reading an interchange data file record by
// record, in blocks, so that memory does not grow with the file.
//
// Opening a file looks at its bytes once to choose the encoding
// (staging/interchange_decode.h); reading then decodes one block at a time
// and splits it into records (staging/interchange_parse.h). Only the block
// being read is in memory, plus a record that spans two blocks. UTF-16 files
// (rare, small, from Notepad) are the exception: they are decoded whole.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/data_layout.h"
#include "staging/interchange_decode.h"
#include "staging/interchange_parse.h"

namespace staging {

// How a file is to be read, as found by looking at it (InspectDataFile).
struct DataFileEncoding {
  ByteDecoding decoding = ByteDecoding::Utf8;
  std::size_t skip_bytes = 0;        // the UTF-8 byte-order mark
  std::optional<std::string> whole;  // a UTF-16 file, already decoded
};

// Looks at the whole file to choose how it is read. Returns nullopt with a
// Spanish `error` when it cannot be read, is not text (NUL bytes, broken
// UTF-16) or is not UTF-8 when UTF-8 was declared; `warning` is set when
// stray bytes of a UTF-8 file are read as Windows-1252.
std::optional<DataFileEncoding> InspectDataFile(const std::filesystem::path& file,
                                                const std::optional<settings::TextEncoding>& forced,
                                                const std::string& file_name, std::string* error,
                                                std::string* warning);

class DataFileReader {
 public:
  // Opens `file` to be read the way `encoding` says. `layout` must outlive
  // the reader. False with a Spanish error() when the file cannot be opened.
  DataFileReader(const std::filesystem::path& file, const DataFileEncoding& encoding,
                 const settings::DataFileLayout& layout);
  ~DataFileReader();
  DataFileReader(const DataFileReader&) = delete;
  DataFileReader& operator=(const DataFileReader&) = delete;

  // Reads the next record; false at the end of the file or when reading
  // failed (error() then says why).
  bool next();

  const std::vector<std::string_view>& fields() const { return reader_.fields(); }
  const std::vector<bool>& quoted() const { return reader_.quoted(); }
  std::size_t line() const { return reader_.line(); }
  bool unterminated_quote() const { return reader_.unterminated_quote(); }
  const std::string& error() const { return error_; }

 private:
  // Moves the unread text to the front and appends the next block.
  bool refill();

  std::filesystem::path path_;
  std::FILE* file_ = nullptr;
  ChunkDecoder decoder_;
  std::string raw_;     // one block of bytes as read
  std::string buffer_;  // decoded text: the reader's window
  bool at_end_ = false;
  RecordReader reader_;
  std::string error_;
};

}  // namespace staging
