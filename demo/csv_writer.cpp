// demo/csv_writer.cpp — the interchange CSV files of the demo source company.
#include "demo/csv_writer.h"

#include <charconv>
#include <stdexcept>

namespace demo {

namespace {

constexpr std::size_t kBufferSize = 1 << 20;

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

bool NeedsQuotes(const std::string& text) {
  if (text.empty()) return true;  // "" is an empty text; an empty field is Null
  if (text.front() == ' ' || text.front() == '\t' || text.back() == ' ' || text.back() == '\t') return true;
  return text.find_first_of(";\"\r\n") != std::string::npos;
}

}  // namespace

std::string CsvField(const Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return {};
  if (const auto* i = std::get_if<std::int64_t>(&value)) return std::to_string(*i);
  if (const auto* d = std::get_if<double>(&value)) {
    // The shortest text that reads back the same, never in exponent form
    // (1e+05 is not how a payroll export writes 100000).
    char buf[400];
    auto r = std::to_chars(buf, buf + sizeof buf, *d, std::chars_format::fixed);
    if (r.ec != std::errc()) r = std::to_chars(buf, buf + sizeof buf, *d);
    return std::string(buf, r.ptr);
  }
  const std::string& text = std::get<std::string>(value);
  if (!NeedsQuotes(text)) return text;
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

CsvWriter::CsvWriter(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code ec;
  std::filesystem::create_directories(folder_, ec);
  if (ec || !std::filesystem::is_directory(folder_)) {
    throw std::runtime_error("No se puede crear la carpeta '" + folder_.string() + "': " + ec.message());
  }
  for (const auto& item : std::filesystem::directory_iterator(folder_, ec)) {
    if (item.is_regular_file() && item.path().extension() == ".csv") std::filesystem::remove(item.path(), ec);
  }
}

CsvWriter::~CsvWriter() {
  // Files left unfinished are closed as they stand; finish() reports errors.
}

int CsvWriter::declare_table(std::string_view table, const std::vector<std::string>& columns) {
  File* file = nullptr;
  for (auto& f : files_) {
    if (SameName(f->table, table)) file = f.get();
  }
  if (!file) {
    auto f = std::make_unique<File>();
    f->table = std::string(table);
    f->path = folder_ / (f->table + ".csv");
    f->header = columns;
    f->buffer = std::make_unique<char[]>(kBufferSize);
    f->out.rdbuf()->pubsetbuf(f->buffer.get(), kBufferSize);
    f->out.open(f->path, std::ios::binary | std::ios::trunc);
    if (!f->out) throw std::runtime_error("No se puede escribir el archivo '" + f->path.string() + "'");
    for (std::size_t i = 0; i < columns.size(); ++i) f->out << (i ? ";" : "") << columns[i];
    f->out << "\r\n";
    counts_[f->table];
    file = f.get();
    files_.push_back(std::move(f));
  }
  Handle handle;
  handle.file = file;
  for (const auto& column : columns) {
    int slot = -1;
    for (std::size_t i = 0; i < file->header.size(); ++i) {
      if (SameName(file->header[i], column)) slot = static_cast<int>(i);
    }
    if (slot < 0) missing_columns_.insert(file->table + "." + column);
    handle.slots.push_back(slot);
  }
  handles_.push_back(std::move(handle));
  return static_cast<int>(handles_.size()) - 1;
}

void CsvWriter::add_row(int table, std::span<const Value> values) {
  if (table < 0 || static_cast<std::size_t>(table) >= handles_.size()) {
    throw std::runtime_error("Tabla no declarada en el generador de archivos CSV");
  }
  const Handle& handle = handles_[static_cast<std::size_t>(table)];
  File& file = *handle.file;
  row_.assign(file.header.size(), std::string());
  for (std::size_t i = 0; i < values.size() && i < handle.slots.size(); ++i) {
    if (handle.slots[i] >= 0) row_[static_cast<std::size_t>(handle.slots[i])] = CsvField(values[i]);
  }
  for (std::size_t i = 0; i < row_.size(); ++i) {
    if (i) file.out.put(';');
    file.out.write(row_[i].data(), static_cast<std::streamsize>(row_[i].size()));
  }
  file.out.write("\r\n", 2);
  if (!file.out) throw std::runtime_error("No se pudo escribir en '" + file.path.string() + "'");
  ++counts_[file.table];
}

void CsvWriter::finish() {
  if (finished_) return;
  finished_ = true;
  for (auto& f : files_) {
    f->out.close();
    if (!f->out) throw std::runtime_error("No se pudo terminar de escribir '" + f->path.string() + "'");
  }
}

}  // namespace demo
