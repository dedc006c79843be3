// settings/data_layout.cpp — the "@ARCHIVO" section of statement files.
#include "settings/data_layout.h"

#include <cctype>
#include <algorithm>
#include <cstdio>

#include "settings/strings.h"

namespace settings {

namespace {

bool IsYes(const std::string& v) { return IEquals(v, "si") || IEquals(v, "sí") || IEquals(v, "yes") || v == "1"; }
bool IsNo(const std::string& v) { return IEquals(v, "no") || v == "0"; }

bool ParseCount(const std::string& v, int* out) {
  if (v.empty() || v.size() > 6) return false;
  for (char c : v)
    if (c < '0' || c > '9') return false;
  *out = std::stoi(v);
  return true;
}

bool ParseColumn(const std::string& text, DataColumn* col, std::string* why) {
  // name[:type[:pattern]] — the pattern may itself hold ":" (e.g. a time).
  std::size_t p1 = text.find(':');
  col->name = Trim(text.substr(0, p1));
  if (col->name.empty()) {
    *why = "columna sin nombre";
    return false;
  }
  if (p1 == std::string::npos) return true;
  std::size_t p2 = text.find(':', p1 + 1);
  std::string type = Trim(text.substr(p1 + 1, p2 == std::string::npos ? std::string::npos : p2 - p1 - 1));
  if (IEquals(type, "texto") || IEquals(type, "text")) col->type = ColumnType::Text;
  else if (IEquals(type, "entero") || IEquals(type, "integer")) col->type = ColumnType::Integer;
  else if (IEquals(type, "real")) col->type = ColumnType::Real;
  else if (IEquals(type, "fecha") || IEquals(type, "date")) col->type = ColumnType::Date;
  else {
    *why = "tipo de columna desconocido '" + type + "' (use texto, entero, real o fecha)";
    return false;
  }
  if (col->type == ColumnType::Date) {
    col->date_pattern = p2 == std::string::npos ? "dd/MM/yyyy" : Trim(text.substr(p2 + 1));
    if (col->date_pattern.empty()) col->date_pattern = "dd/MM/yyyy";
  } else if (p2 != std::string::npos) {
    *why = "solo las columnas de tipo fecha llevan un patrón";
    return false;
  }
  return true;
}

}  // namespace

std::optional<DataFileLayout> ParseDataFileLayout(const std::vector<std::string>& lines,
                                                  std::string* error) {
  DataFileLayout layout;
  std::vector<int> widths;
  bool widths_given = false;
  auto fail = [&](std::size_t line_no, const std::string& why) -> std::optional<DataFileLayout> {
    if (error) {
      *error = "Sección @ARCHIVO";
      if (line_no) *error += ", línea " + std::to_string(line_no);
      *error += ": " + why;
    }
    return std::nullopt;
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    // Only leading blanks go: a trailing blank may be the separator itself.
    std::string line = lines[i].substr(std::min(lines[i].size(), lines[i].find_first_not_of(" \t")));
    if (Trim(line).empty() || line.rfind("--", 0) == 0) continue;
    std::size_t eq = line.find('=');
    if (eq == std::string::npos) return fail(i + 1, "se esperaba Clave=valor en '" + line + "'");
    std::string key = Trim(line.substr(0, eq));
    // The value is not trimmed for one-character settings: a blank may be the separator.
    std::string raw = line.substr(eq + 1);
    std::string value = Trim(raw);
    if (IEquals(key, "Tabla")) {
      layout.table = value;
    } else if (IEquals(key, "Formato")) {
      if (IEquals(value, "Delimitado") || IEquals(value, "Delimited")) layout.fixed_width = false;
      else if (IEquals(value, "Fijo") || IEquals(value, "Fixed")) layout.fixed_width = true;
      else return fail(i + 1, "Formato debe ser Delimitado o Fijo");
    } else if (IEquals(key, "Separador")) {
      if (IEquals(value, "TAB")) layout.delimiter = '\t';
      else if (raw.size() == 1) layout.delimiter = raw[0];
      else if (value.size() == 1) layout.delimiter = value[0];
      else return fail(i + 1, "Separador debe ser un solo carácter o TAB");
    } else if (IEquals(key, "Comillas")) {
      if (IEquals(value, "NINGUNA") || IEquals(value, "NONE") || value.empty()) layout.quote.reset();
      else if (value.size() == 1) layout.quote = value[0];
      else return fail(i + 1, "Comillas debe ser un solo carácter o NINGUNA");
    } else if (IEquals(key, "Encabezado")) {
      if (IsYes(value)) layout.header = true;
      else if (IsNo(value)) layout.header = false;
      else return fail(i + 1, "Encabezado debe ser Si o No");
    } else if (IEquals(key, "Saltar")) {
      if (!ParseCount(value, &layout.skip_lines)) return fail(i + 1, "Saltar debe ser un número de líneas");
    } else if (IEquals(key, "Codificacion") || IEquals(key, "Codificación")) {
      if (IEquals(value, "auto")) layout.encoding.reset();
      else if (IEquals(value, "utf-8") || IEquals(value, "utf8")) layout.encoding = TextEncoding::Utf8;
      else if (IEquals(value, "windows-1252") || IEquals(value, "ansi") || IEquals(value, "cp1252"))
        layout.encoding = TextEncoding::Windows1252;
      else return fail(i + 1, "Codificacion debe ser auto, utf-8 o windows-1252");
    } else if (IEquals(key, "Decimal")) {
      if (value.size() != 1) return fail(i + 1, "Decimal debe ser un solo carácter");
      layout.decimal_separator = value[0];
    } else if (IEquals(key, "Anchos")) {
      widths_given = true;
      for (const std::string& w : SplitChar(value, ',')) {
        int n = 0;
        if (!ParseCount(Trim(w), &n) || n == 0) return fail(i + 1, "Anchos debe ser una lista de números mayores que cero");
        widths.push_back(n);
      }
    } else if (IEquals(key, "Columna")) {
      DataColumn col;
      std::string why;
      if (!ParseColumn(value, &col, &why)) return fail(i + 1, why);
      layout.columns.push_back(col);
    } else {
      return fail(i + 1, "clave desconocida '" + key + "'");
    }
  }
  if (layout.table.empty()) return fail(0, "falta Tabla (la tabla donde se leen los datos)");
  if (layout.fixed_width) {
    if (layout.columns.empty()) return fail(0, "un archivo de ancho fijo necesita sus líneas Columna");
    if (!widths_given || widths.size() != layout.columns.size())
      return fail(0, "Anchos debe dar un ancho por cada columna (" + std::to_string(layout.columns.size()) +
                         " columnas, " + std::to_string(widths.size()) + " anchos)");
    for (std::size_t c = 0; c < widths.size(); ++c) layout.columns[c].width = widths[c];
  } else {
    if (widths_given) return fail(0, "Anchos solo vale con Formato=Fijo");
    if (layout.columns.empty() && !layout.header)
      return fail(0, "faltan las líneas Columna (o Encabezado=Si para tomar los nombres de la primera línea)");
    if (layout.quote && *layout.quote == layout.delimiter)
      return fail(0, "Separador y Comillas no pueden ser el mismo carácter");
  }
  return layout;
}

std::optional<std::string> ParseDateWithPattern(std::string_view text, std::string_view pattern) {
  std::string t = Trim(text);
  int day = -1, month = -1, year = -1;
  std::size_t ti = 0, pi = 0;
  while (pi < pattern.size()) {
    char pc = pattern[pi];
    if (pc == 'd' || pc == 'M' || pc == 'y') {
      std::size_t run = 0;
      while (pi + run < pattern.size() && pattern[pi + run] == pc) ++run;
      bool followed_by_letter = pi + run < pattern.size() &&
                                (pattern[pi + run] == 'd' || pattern[pi + run] == 'M' || pattern[pi + run] == 'y');
      std::size_t max_digits = (run <= 2 && !followed_by_letter && pc != 'y') ? 2 : run;
      if (pc == 'y' && run <= 2) max_digits = 2;
      std::size_t min_digits = followed_by_letter ? run : (run <= 2 ? 1 : run);
      std::size_t n = 0;
      int value = 0;
      while (n < max_digits && ti + n < t.size() && std::isdigit(static_cast<unsigned char>(t[ti + n]))) {
        value = value * 10 + (t[ti + n] - '0');
        ++n;
      }
      if (n < min_digits) return std::nullopt;
      if (pc == 'd') day = value;
      else if (pc == 'M') month = value;
      else year = (run <= 2) ? (value < 30 ? 2000 + value : 1900 + value) : value;
      ti += n;
      pi += run;
    } else {
      if (ti >= t.size() || t[ti] != pc) return std::nullopt;
      ++ti;
      ++pi;
    }
  }
  if (ti != t.size() || day < 1 || month < 1 || month > 12 || year < 1) return std::nullopt;
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  int max_day = kDays[month - 1] + (month == 2 && leap ? 1 : 0);
  if (day > max_day) return std::nullopt;
  char buf[48];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", year, month, day);
  return std::string(buf);
}

}  // namespace settings
