// staging/interchange_parse.cpp — the record reader of interchange data files.
#include "staging/interchange_parse.h"

namespace staging {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimBlanks(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && IsBlank(s[b])) ++b;
  while (e > b && IsBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

// Byte length of the UTF-8 sequence that starts with `c` (1 for stray bytes).
std::size_t SequenceLength(unsigned char c) {
  if (c >= 0xF0) return 4;
  if (c >= 0xE0) return 3;
  if (c >= 0xC0) return 2;
  return 1;
}

}  // namespace

RecordReader::RecordReader(std::string_view text, const settings::DataFileLayout& layout)
    : text_(text), layout_(layout), to_skip_(layout.skip_lines) {}

void RecordReader::set_window(std::string_view text, std::size_t dropped, bool last) {
  text_ = text;
  pos_ -= dropped;
  last_ = last;
  needs_more_ = false;
}

bool RecordReader::at_line_end() const { return text_[pos_] == '\n' || text_[pos_] == '\r'; }

void RecordReader::skip_line_break() {
  if (pos_ >= text_.size()) return;
  if (text_[pos_] == '\r') {
    ++pos_;
    if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
  } else if (text_[pos_] == '\n') {
    ++pos_;
  } else {
    return;
  }
  ++line_;
}

bool RecordReader::next() {
  fields_.clear();
  quoted_.clear();
  scratch_.clear();
  unterminated_ = false;
  needs_more_ = false;
  const std::size_t start_pos = pos_, start_line = line_;
  const int start_skip = to_skip_;
  // Past the end of a window that is not the file's last, nothing read is
  // sure (a CR may be followed by LF, a field may go on): start again later.
  auto want_more = [&] {
    pos_ = start_pos;
    line_ = start_line;
    to_skip_ = start_skip;
    fields_.clear();
    quoted_.clear();
    scratch_.clear();
    needs_more_ = true;
    return false;
  };
  for (; to_skip_ > 0 && pos_ < text_.size(); --to_skip_) {
    while (pos_ < text_.size() && !at_line_end()) ++pos_;
    skip_line_break();
  }
  if (to_skip_ > 0 && !last_) return want_more();
  // Blank lines (only blanks, or nothing) are not records.
  while (pos_ < text_.size()) {
    std::size_t p = pos_;
    while (p < text_.size() && IsBlank(text_[p])) ++p;
    if (p < text_.size() && text_[p] != '\r' && text_[p] != '\n') break;
    pos_ = p;
    skip_line_break();
  }
  if (pos_ >= text_.size()) return last_ ? false : want_more();
  record_line_ = line_;
  bool read = layout_.fixed_width ? next_fixed() : next_delimited();
  if (!last_ && pos_ >= text_.size()) return want_more();
  return read;
}

bool RecordReader::next_fixed() {
  std::size_t end = pos_;
  while (end < text_.size() && text_[end] != '\r' && text_[end] != '\n') ++end;
  std::string_view line = text_.substr(pos_, end - pos_);
  std::size_t at = 0;
  for (const auto& column : layout_.columns) {
    std::size_t start = at;
    for (int chars = 0; chars < column.width && at < line.size(); ++chars) {
      at += SequenceLength(static_cast<unsigned char>(line[at]));
    }
    if (at > line.size()) at = line.size();
    fields_.push_back(TrimBlanks(line.substr(start, at - start)));
    quoted_.push_back(false);
  }
  pos_ = end;
  skip_line_break();
  return true;
}

bool RecordReader::next_delimited() {
  const char delimiter = layout_.delimiter;
  const bool quoting = layout_.quote.has_value();
  const char quote = quoting ? *layout_.quote : '\0';
  for (;;) {
    // One field from pos_.
    std::size_t p = pos_;
    while (p < text_.size() && IsBlank(text_[p]) && text_[p] != delimiter) ++p;
    if (quoting && p < text_.size() && text_[p] == quote) {
      std::size_t start = p + 1;
      std::size_t q = start;
      std::string* owned = nullptr;
      std::size_t piece = start;  // start of the part not yet copied to `owned`
      bool closed = false;
      while (q < text_.size()) {
        char c = text_[q];
        if (c == quote) {
          if (q + 1 < text_.size() && text_[q + 1] == quote) {  // doubled quote
            if (!owned) owned = &scratch_.emplace_back();
            owned->append(text_.substr(piece, q + 1 - piece));
            q += 2;
            piece = q;
            continue;
          }
          closed = true;
          break;
        }
        if (c == '\n' || (c == '\r' && !(q + 1 < text_.size() && text_[q + 1] == '\n'))) ++line_;
        ++q;
      }
      std::string_view inside = text_.substr(piece, q - piece);
      std::size_t after = closed ? q + 1 : q;
      if (!closed) unterminated_ = true;
      // Text between the closing quote and the delimiter belongs to the field.
      std::size_t tail = after;
      while (tail < text_.size() && text_[tail] != delimiter && text_[tail] != '\r' && text_[tail] != '\n') ++tail;
      std::string_view rest = TrimBlanks(text_.substr(after, tail - after));
      if (owned || !rest.empty()) {
        if (!owned) owned = &scratch_.emplace_back();
        owned->append(inside);
        owned->append(rest);
        fields_.emplace_back(*owned);
      } else {
        fields_.push_back(inside);
      }
      quoted_.push_back(true);
      pos_ = tail;
    } else {
      std::size_t end = pos_;
      while (end < text_.size() && text_[end] != delimiter && text_[end] != '\r' && text_[end] != '\n') ++end;
      fields_.push_back(TrimBlanks(text_.substr(pos_, end - pos_)));
      quoted_.push_back(false);
      pos_ = end;
    }
    if (pos_ < text_.size() && text_[pos_] == delimiter) {
      ++pos_;
      continue;
    }
    skip_line_break();
    return true;
  }
}

}  // namespace staging
