// db/error.h — the error a refused statement raises.
//
// Carries the Jet text the caller ran, the SQLite text it became (empty when
// it never got that far, or for ODBC connections that run texts untranslated)
// and the engine's or translator's message. Call sites where the system
// deliberately ignores errors catch db::Error explicitly.
#pragma once

#include <stdexcept>
#include <string>

namespace db {

class Error : public std::runtime_error {
 public:
  Error(std::string message, std::string jet_text = {}, std::string translated_text = {})
      : std::runtime_error(message),
        message_(std::move(message)),
        jet_text_(std::move(jet_text)),
        translated_text_(std::move(translated_text)) {}

  const std::string& message() const { return message_; }
  const std::string& jet_text() const { return jet_text_; }
  const std::string& translated_text() const { return translated_text_; }

 private:
  std::string message_;
  std::string jet_text_;
  std::string translated_text_;
};

}  // namespace db
