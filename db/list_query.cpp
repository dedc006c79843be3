// db/list_query.cpp — builds and runs the list queries of the preview grids.
#include "db/list_query.h"

#include <cctype>

#include "db/error.h"

namespace db {

namespace {

std::string trim_spaces(std::string_view text) {
  std::size_t start = text.find_first_not_of(' ');
  if (start == std::string_view::npos) return {};
  std::size_t end = text.find_last_not_of(' ');
  return std::string(text.substr(start, end - start + 1));
}

std::string upper(std::string_view text) {
  std::string out(text);
  for (auto& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

std::vector<std::string> split_fields(std::string_view fields) {
  std::vector<std::string> names;
  std::size_t pos = 0;
  while (pos <= fields.size()) {
    std::size_t comma = fields.find(',', pos);
    if (comma == std::string_view::npos) comma = fields.size();
    names.push_back(trim_spaces(fields.substr(pos, comma - pos)));
    pos = comma + 1;
  }
  return names;
}

}  // namespace

std::string build_list_query(std::string_view source, std::string_view fields,
                             std::string_view condition) {
  std::string text(source);
  if (text.find("++") != std::string::npos) text.erase(0, std::min<std::size_t>(2, text.size()));
  const std::string where = condition.empty() ? "" : " Where " + std::string(condition);

  std::string upper_text = upper(text);
  if (upper_text.rfind("SELECT ", 0) == 0) {
    std::size_t order = upper_text.find("ORDER BY");
    if (order == std::string::npos) return text + where;
    // A blank after the condition keeps "id>3" from running into "ORDER".
    return text.substr(0, order) + where + (where.empty() ? "" : " ") + text.substr(order);
  }
  std::string list = trim_spaces(fields);
  if (list.empty()) return "select * from " + text + where;
  return "select " + list + " from " + text + where + " order by " + split_fields(list).front();
}

std::vector<std::vector<std::string>> list_query(std::string_view source, std::string_view fields,
                                                 std::string_view condition, Connection& conn) {
  std::vector<std::vector<std::string>> rows;
  if (!conn.is_open()) return rows;
  Recordset rs;
  try {
    rs = conn.open_recordset(build_list_query(source, fields, condition));
  } catch (const Error&) {
    return rows;  // the caller shows an empty grid
  }
  std::vector<int> positions;
  for (const auto& name : split_fields(fields)) positions.push_back(rs.field_index(name));
  for (const auto& record : rs.rows()) {
    std::vector<std::string> row;
    row.reserve(positions.size());
    for (int position : positions) {
      row.push_back(position < 0 ? std::string()
                                 : trim_spaces(as_text(record[static_cast<std::size_t>(position)])));
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace db
