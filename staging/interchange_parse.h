// staging/interchange_parse.h — splitting the decoded text of an interchange
// data file into records and fields.
//
// Delimited files: fields separated by the layout's delimiter; a field that
// starts with the quote character (blanks before it allowed) runs to the
// matching quote and may hold the delimiter, line breaks and doubled quotes
// (which stand for one quote). Unquoted fields are trimmed of blanks, quoted
// ones are kept exactly, and an empty quoted field ("") is an empty text
// where an empty unquoted one is no value. Records end at CR LF, LF or a lone CR. Fixed-width
// files: one record per line, each column the given number of characters (not
// bytes), trimmed; a short line leaves its last columns empty.
// Blank lines are skipped. Fields are views into the text (or into the
// reader's own buffers for quoted fields with doubled quotes): they stay valid
// until the next call of next().
//
// Streaming: the text may be a window on a longer file (set_window). A record
// that runs to the end of a window that is not the file's last is not taken:
// next() returns false with needs_more(), the caller moves the unread part
// (from consumed()) to the front of its buffer, appends more text and gives
// the new window.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "settings/data_layout.h"

namespace staging {

class RecordReader {
 public:
  // `text` must outlive the reader. The layout's skip_lines physical lines are
  // passed over first; the header line, when there is one, is an ordinary
  // record for the reader (the caller takes it).
  RecordReader(std::string_view text, const settings::DataFileLayout& layout);

  // Reads the next record; false at the end of the text (or, see
  // needs_more(), at the end of a window that is not the last).
  bool next();

  // The record ahead may go past the window: give a longer one.
  bool needs_more() const { return needs_more_; }
  // Offset in the window of the first byte not yet read.
  std::size_t consumed() const { return pos_; }
  // A new window: `dropped` bytes of the old one were moved out from its
  // front (the window now starts at the old window's offset `dropped`);
  // `last` says the window ends where the file ends.
  void set_window(std::string_view text, std::size_t dropped, bool last);

  const std::vector<std::string_view>& fields() const { return fields_; }
  // Per field: it was written between quotes (so "" is an empty text, while
  // an unquoted empty field is no value at all).
  const std::vector<bool>& quoted() const { return quoted_; }
  // Line number (from 1) where the current record starts.
  std::size_t line() const { return record_line_; }
  // True when the current record ended at the end of the text inside an open
  // quote (the file is cut short or a quote is missing).
  bool unterminated_quote() const { return unterminated_; }

 private:
  bool next_delimited();
  bool next_fixed();
  // Moves past one line break at pos_ (CR LF, LF or CR), counting the line.
  void skip_line_break();
  bool at_line_end() const;

  std::string_view text_;
  const settings::DataFileLayout& layout_;
  std::size_t pos_ = 0;
  int to_skip_ = 0;    // skipped lines still ahead
  bool last_ = true;   // the window ends where the file ends
  bool needs_more_ = false;
  std::size_t line_ = 1;
  std::size_t record_line_ = 0;
  bool unterminated_ = false;
  std::vector<std::string_view> fields_;
  std::vector<bool> quoted_;
  std::deque<std::string> scratch_;  // unescaped quoted fields (deque: no moves)
};

}  // namespace staging
