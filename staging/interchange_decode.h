// staging/interchange_decode.h — turning the bytes of an interchange data file
// into UTF-8 text before it is parsed.
//
// Data files come from other systems: UTF-8 with or without byte-order mark,
// Windows-1252 ("ANSI" of Spanish Windows), now and then UTF-16 from Notepad.
// The layout may force an encoding; otherwise it is detected. The bytes are
// decoded in place: a UTF-8 file of hundreds of megabytes is only validated
// and never copied.
#pragma once

#include <optional>
#include <string>

#include "settings/encoding.h"

namespace staging {

// Decodes `bytes` (the whole file) into UTF-8 in place. `forced` is the
// layout's encoding (nullopt: detect). `file_name` is only used in messages.
// Returns false with a Spanish `error` when the file is not text (NUL bytes,
// broken UTF-16) or, with UTF-8 forced, when its bytes are not UTF-8 (the
// message names the first bad line and tells what to change). `found`
// receives the encoding used.
bool DecodeDataFile(std::string& bytes, const std::optional<settings::TextEncoding>& forced,
                    const std::string& file_name, settings::TextEncoding* found, std::string* error);

}  // namespace staging
