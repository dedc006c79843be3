// staging/interchange_prefetch.cpp — the reading thread and the queue of
// converted batches.
#include "staging/interchange_prefetch.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace staging {

namespace {

// A batch closes at this many records or bytes of text, whichever comes
// first: large enough that handing it over costs nothing per record, small
// enough that the queue stays a few megabytes.
constexpr std::size_t kBatchRecords = 4096;
constexpr std::size_t kBatchText = std::size_t{1} << 18;

// Batches filled ahead of the one being read.
constexpr int kBatchesAhead = 3;

}  // namespace

struct PrefetchBatch {
  std::vector<PrefetchedRecord> records;
  std::vector<PrefetchedValue> values;
  std::vector<PrefetchedBadField> bad;
  std::string text;
  bool last = false;  // the file ends after these records
  std::string error;  // why reading stopped early (with last)

  void clear() {
    records.clear();
    values.clear();
    bad.clear();
    text.clear();
    last = false;
    error.clear();
  }

  std::uint32_t append_text(std::string_view s) {
    const auto at = static_cast<std::uint32_t>(text.size());
    text.append(s);
    return at;
  }
};

struct PrefetchReader::Shared {
  std::filesystem::path file;
  DataFileEncoding encoding;
  settings::DataFileLayout layout;
  std::vector<PrefetchColumn> columns;

  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::unique_ptr<PrefetchBatch>> full;
  std::deque<std::unique_ptr<PrefetchBatch>> empty;
  bool stop = false;
  std::thread thread;
};

PrefetchReader::PrefetchReader(const std::filesystem::path& file, const DataFileEncoding& encoding,
                               const settings::DataFileLayout& layout, std::vector<PrefetchColumn> columns)
    : shared_(std::make_shared<Shared>()) {
  shared_->file = file;
  shared_->encoding = encoding;
  shared_->layout = layout;
  shared_->columns = std::move(columns);
  for (int i = 0; i < kBatchesAhead; ++i) shared_->empty.push_back(std::make_unique<PrefetchBatch>());
  shared_->thread = std::thread([this] { Produce(); });
}

PrefetchReader::~PrefetchReader() {
  {
    std::lock_guard lock(shared_->mutex);
    shared_->stop = true;
  }
  shared_->changed.notify_all();
  shared_->thread.join();
}

// The reading thread: fills empty batches with converted records until the
// file ends, reading fails or the reader is stopped.
void PrefetchReader::Produce() {
  Shared& s = *shared_;
  DataFileReader reader(s.file, s.encoding, s.layout);
  std::vector<FieldValue> converted(s.columns.size());  // reused: dates keep their buffers
  bool header = s.layout.header;
  for (;;) {
    std::unique_ptr<PrefetchBatch> batch;
    {
      std::unique_lock lock(s.mutex);
      s.changed.wait(lock, [&] { return s.stop || !s.empty.empty(); });
      if (s.stop) return;
      batch = std::move(s.empty.front());
      s.empty.pop_front();
    }
    batch->clear();
    try {
      while (batch->records.size() < kBatchRecords && batch->text.size() < kBatchText) {
        if (!reader.next()) {
          batch->last = true;
          batch->error = reader.error();
          break;
        }
        if (header) {  // the header line is not a row
          header = false;
          continue;
        }
        const auto& fields = reader.fields();
        PrefetchedRecord r;
        r.line = static_cast<std::int64_t>(reader.line());
        r.field_count = fields.size();
        r.unterminated_quote = reader.unterminated_quote();
        r.first_value = static_cast<std::uint32_t>(batch->values.size());
        r.first_bad = static_cast<std::uint32_t>(batch->bad.size());
        for (std::size_t i = 0; i < s.columns.size(); ++i) {
          const PrefetchColumn& c = s.columns[i];
          std::string_view field;
          bool quoted = false;
          if (c.field >= 0 && static_cast<std::size_t>(c.field) < fields.size()) {
            field = fields[static_cast<std::size_t>(c.field)];
            quoted = reader.quoted()[static_cast<std::size_t>(c.field)];
          }
          FieldValue& f = converted[i];
          const bool ok = ConvertField(field, c.column, s.layout.decimal_separator, f, quoted);
          PrefetchedValue v;
          v.kind = f.kind;
          v.integer = f.integer;
          v.real = f.real;
          if (f.kind == FieldValue::Kind::Text) {
            v.text_at = batch->append_text(f.text);
            v.text_size = static_cast<std::uint32_t>(f.text.size());
          }
          batch->values.push_back(v);
          if (!ok) {
            batch->bad.push_back({i, batch->append_text(field), static_cast<std::uint32_t>(field.size())});
            ++r.bad_count;
          }
        }
        batch->records.push_back(r);
      }
    } catch (const std::exception&) {
      // Out of memory: the scan ends with an error rather than losing rows.
      batch->last = true;
      batch->error = "No hay memoria suficiente para leer el archivo de datos " + s.file.string();
    }
    const bool last = batch->last;
    {
      std::lock_guard lock(s.mutex);
      s.full.push_back(std::move(batch));
    }
    s.changed.notify_all();
    if (last) return;
  }
}

const PrefetchedRecord* PrefetchReader::next() {
  for (;;) {
    if (current_ && next_record_ < current_->records.size()) {
      record_ = &current_->records[next_record_++];
      return record_;
    }
    if (current_ && current_->last) {
      error_ = current_->error;
      record_ = nullptr;
      return nullptr;
    }
    Shared& s = *shared_;
    {
      std::unique_lock lock(s.mutex);
      if (current_) s.empty.push_back(std::move(current_));
      s.changed.notify_all();
      s.changed.wait(lock, [&] { return !s.full.empty(); });
      current_ = std::move(s.full.front());
      s.full.pop_front();
    }
    next_record_ = 0;
  }
}

const PrefetchedValue& PrefetchReader::value(std::size_t column) const {
  return current_->values[record_->first_value + column];
}

std::string_view PrefetchReader::text(const PrefetchedValue& v) const {
  return std::string_view(current_->text).substr(v.text_at, v.text_size);
}

const PrefetchedBadField& PrefetchReader::bad_field(std::uint32_t i) const {
  return current_->bad[record_->first_bad + i];
}

std::string_view PrefetchReader::text(const PrefetchedBadField& f) const {
  return std::string_view(current_->text).substr(f.text_at, f.text_size);
}

}  // namespace staging
