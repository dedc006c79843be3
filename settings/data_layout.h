// settings/data_layout.h — how an interchange data file is laid out, as a
// statement file's "@ARCHIVO" section describes it.
//
// The staging loader reads the data file (the entry's Ruta) into the table
// named here before the statements run; the statements then read that table.
// Section syntax, one "Clave=valor" per line (keys in any case; blank lines
// and "--" comment lines ignored):
//   Tabla=Imp_Empleados            table the data is read into (required)
//   Formato=Delimitado | Fijo      delimited fields or fixed widths (default Delimitado)
//   Separador=;                    field delimiter, one character, or TAB (default ";")
//   Comillas="                     quote character, or NINGUNA (default ")
//   Encabezado=Si | No             the first line (after Saltar) names the columns (default No)
//   Saltar=0                       lines skipped before the data or header (default 0)
//   Codificacion=auto | utf-8 | windows-1252   (default auto)
//   Decimal=.                      decimal separator of real columns (default ".")
//   Anchos=5,30,8                  fixed widths, one per column (Formato=Fijo only)
//   Columna=Codigo:entero          one line per column, in file order:
//   Columna=Nombre                   name[:type]; types texto (default),
//   Columna=Ingreso:fecha:dd/MM/yyyy entero, real, fecha with its input pattern
// English words (Delimited, Fixed, Yes, text, integer, real, date) are
// accepted as well. A delimited file with a header line may leave out the
// Columna lines: the header then names the columns, all of them text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/encoding.h"

namespace settings {

enum class ColumnType { Text, Integer, Real, Date };

struct DataColumn {
  std::string name;
  ColumnType type = ColumnType::Text;
  std::string date_pattern;  // for Date: letters d, M, y (e.g. "dd/MM/yyyy"); others are literal
  int width = 0;             // for fixed-width files
};

struct DataFileLayout {
  std::string table;
  bool fixed_width = false;
  char delimiter = ';';
  std::optional<char> quote = '"';
  bool header = false;
  int skip_lines = 0;
  std::optional<TextEncoding> encoding;  // nullopt: detect (UTF-8 or Windows-1252)
  char decimal_separator = '.';
  std::vector<DataColumn> columns;
};

// Parses the lines of an "@ARCHIVO" section. Returns nullopt and sets `error`
// (Spanish) for an unknown key, a bad value, a missing Tabla, fixed widths that
// do not match the columns, or a file with no way of naming its columns.
std::optional<DataFileLayout> ParseDataFileLayout(const std::vector<std::string>& lines,
                                                  std::string* error);

// Reads a date text with a pattern of d, M and y letters ("dd/MM/yyyy",
// "yyyyMMdd", "d/M/yy"); a run of one letter reads as many digits as the run
// is long, or, for a one- or two-letter run followed by a separator, one or two
// digits. Two-digit years are 1930-2029. Returns the ISO text "YYYY-MM-DD", or
// nullopt when the text does not fit the pattern or is not a real date.
std::optional<std::string> ParseDateWithPattern(std::string_view text, std::string_view pattern);

}  // namespace settings
