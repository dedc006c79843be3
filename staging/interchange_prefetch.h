// staging/interchange_prefetch.h — reading and converting a data file's
// records on a thread of their own, ahead of the statement that stores them.
//
// A load spends a quarter to a third of its time reading, decoding,
// splitting and converting the file, and the rest in SQLite storing the
// rows. The two need not wait for each other: a PrefetchReader reads the file on its own
// thread into batches of converted records and hands them over through a
// short queue, so that on a machine with two cores the file is read while
// SQLite writes. The queue holds a few batches of a few thousand records at
// most, so memory stays small and flat whatever the file's length.
//
// The records come out exactly as DataFileReader and ConvertField give them,
// in file order; the reader's own problems (a line that does not convert,
// fields too few or too many, an unclosed quote) travel with each record so
// that whoever reads them decides what to report.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "settings/data_layout.h"
#include "staging/interchange_convert.h"
#include "staging/interchange_stream.h"

namespace staging {

// What a scan reads of each record: the field of the file behind each column
// (-1: none, the column is Null).
struct PrefetchColumn {
  settings::DataColumn column;
  int field = -1;
};

// One converted record of a batch.
struct PrefetchedRecord {
  std::int64_t line = 0;        // where the record starts in the file
  std::size_t field_count = 0;  // fields the record had
  bool unterminated_quote = false;
  std::uint32_t first_value = 0;  // its values in the batch
  std::uint32_t first_bad = 0;    // its fields that did not convert, in the batch
  std::uint32_t bad_count = 0;
};

// One column's value; text lives in its batch.
struct PrefetchedValue {
  FieldValue::Kind kind = FieldValue::Kind::Null;
  std::int64_t integer = 0;
  double real = 0;
  std::uint32_t text_at = 0;
  std::uint32_t text_size = 0;
};

// A field that did not convert: its column and its text.
struct PrefetchedBadField {
  std::size_t column = 0;
  std::uint32_t text_at = 0;
  std::uint32_t text_size = 0;
};

struct PrefetchBatch;

class PrefetchReader {
 public:
  // Starts reading `file` (skipping its header line when the layout has
  // one) on a thread of its own. `columns` says what each column reads.
  PrefetchReader(const std::filesystem::path& file, const DataFileEncoding& encoding,
                 const settings::DataFileLayout& layout, std::vector<PrefetchColumn> columns);
  // Stops the thread (at once, wherever it is) and waits for it.
  ~PrefetchReader();
  PrefetchReader(const PrefetchReader&) = delete;
  PrefetchReader& operator=(const PrefetchReader&) = delete;

  // The next record; nullptr at the end of the file or when reading failed
  // (error() then says why, in Spanish). The record and its values stay
  // valid until the next call.
  const PrefetchedRecord* next();
  // Value `column` of the current record.
  const PrefetchedValue& value(std::size_t column) const;
  // The text of a text value of the current record.
  std::string_view text(const PrefetchedValue& v) const;
  // The i-th field of the current record that did not convert.
  const PrefetchedBadField& bad_field(std::uint32_t i) const;
  std::string_view text(const PrefetchedBadField& f) const;
  const std::string& error() const { return error_; }

 private:
  struct Shared;
  void Produce();

  std::shared_ptr<Shared> shared_;
  std::unique_ptr<PrefetchBatch> current_;
  std::size_t next_record_ = 0;
  const PrefetchedRecord* record_ = nullptr;
  std::string error_;
};

}  // namespace staging
