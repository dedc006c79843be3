// Tests of value conversions and of result-set field access.
#include <gtest/gtest.h>

#include "db/error.h"
#include "db/recordset.h"
#include "base/value.h"

namespace {

// The number texts and readings are Jet's own (tests/jet); these check that
// values reach them and what is particular to values: Null, the console text
// and integers beyond a double's precision.
TEST(Value, TextsNumbersAndIntegers) {
  EXPECT_EQ(db::as_text(db::Value{}), "");
  EXPECT_EQ(db::as_text(db::Value{std::int64_t{-42}}), "-42");
  EXPECT_EQ(db::as_text(db::Value{1.5e-7}), "1.5E-07");
  EXPECT_EQ(db::as_text(db::Value{std::string("2024-02-29")}), "2024-02-29");
  EXPECT_EQ(db::console_text(db::Value{}), "NULL");
  EXPECT_EQ(db::console_text(db::Value{std::string()}), "");
  EXPECT_EQ(db::console_text(db::Value{2.0}), "2");
  EXPECT_EQ(db::as_double(db::Value{std::string("1 2 3")}), 123);
  EXPECT_EQ(db::as_double(db::Value{std::string("&H1F")}), 31);
  EXPECT_EQ(db::as_double(db::Value{std::string("abc")}), 0);
  EXPECT_EQ(db::as_double(db::Value{}), 0);
  EXPECT_EQ(db::as_int(db::Value{2.5}), 2);
  EXPECT_EQ(db::as_int(db::Value{-2.5}), -2);
  EXPECT_EQ(db::as_int(db::Value{std::string("7.5")}), 8);
  EXPECT_EQ(db::as_int(db::Value{std::int64_t{9007199254740993}}), 9007199254740993);
  EXPECT_EQ(db::as_int(db::Value{1e30}), INT64_MAX);
  EXPECT_EQ(db::as_int(db::Value{std::string("9007199254740993")}), 9007199254740993);
}

TEST(Recordset, FieldsByPositionAndNameIgnoringCase) {
  db::Recordset rs({"id_Persona", "Nombre"},
                   {{std::int64_t{1}, std::string("Ana")}, {std::int64_t{2}, db::Value{}}});
  ASSERT_FALSE(rs.eof());
  EXPECT_EQ(rs.field_index("ID_PERSONA"), 0);
  EXPECT_EQ(rs.field_index("nombre"), 1);
  EXPECT_EQ(rs.field_index("Apellido"), -1);
  EXPECT_EQ(db::as_text(rs.field("NOMBRE")), "Ana");
  EXPECT_THROW(rs.field("Apellido"), db::Error);
  EXPECT_THROW(rs.field(5), db::Error);
  rs.move_next();
  EXPECT_TRUE(db::is_null(rs.field(1)));
  rs.move_next();
  EXPECT_TRUE(rs.eof());
  rs.move_next();  // stays at the end
  EXPECT_TRUE(rs.eof());
  EXPECT_THROW(rs.field(0), db::Error);
  EXPECT_EQ(rs.row_count(), 2u);
  EXPECT_TRUE(db::Recordset().eof());
}

}  // namespace
