// Tests of value conversions and of result-set field access.
#include <gtest/gtest.h>

#include "db/error.h"
#include "db/recordset.h"
#include "db/value.h"
#include "db/value_format.h"

namespace {

TEST(Value, TextIsWrittenAsCStrWritesIt) {
  EXPECT_EQ(db::as_text(db::Value{}), "");
  EXPECT_EQ(db::as_text(db::Value{std::int64_t{-42}}), "-42");
  EXPECT_EQ(db::as_text(db::Value{3.0}), "3");
  EXPECT_EQ(db::as_text(db::Value{-2.5}), "-2.5");
  EXPECT_EQ(db::as_text(db::Value{0.1}), "0.1");
  EXPECT_EQ(db::as_text(db::Value{1500.05}), "1500.05");
  EXPECT_EQ(db::as_text(db::Value{123456789012.0}), "123456789012");
  EXPECT_EQ(db::as_text(db::Value{1e20}), "1E+20");
  EXPECT_EQ(db::as_text(db::Value{1.5e-7}), "1.5E-07");
  EXPECT_EQ(db::as_text(db::Value{0.0}), "0");
  EXPECT_EQ(db::as_text(db::Value{std::string("2024-02-29")}), "2024-02-29");
  EXPECT_EQ(db::console_text(db::Value{}), "NULL");
  EXPECT_EQ(db::console_text(db::Value{std::string()}), "");
  EXPECT_EQ(db::console_text(db::Value{2.0}), "2");
}

TEST(Value, NumbersAreReadFromTextsLikeVal) {
  EXPECT_EQ(db::as_double(db::Value{std::string("1 2 3")}), 123);
  EXPECT_EQ(db::as_double(db::Value{std::string(" 12abc")}), 12);
  EXPECT_EQ(db::as_double(db::Value{std::string("1.5e2")}), 150);
  EXPECT_EQ(db::as_double(db::Value{std::string("-3.5x")}), -3.5);
  EXPECT_EQ(db::as_double(db::Value{std::string("2e")}), 2);
  EXPECT_EQ(db::as_double(db::Value{std::string("&H1F")}), 31);
  EXPECT_EQ(db::as_double(db::Value{std::string("&O17")}), 15);
  EXPECT_EQ(db::as_double(db::Value{std::string("")}), 0);
  EXPECT_EQ(db::as_double(db::Value{std::string("abc")}), 0);
  EXPECT_EQ(db::as_double(db::Value{std::string(".5")}), 0.5);
  EXPECT_EQ(db::as_double(db::Value{}), 0);
  EXPECT_EQ(db::as_double(db::Value{std::int64_t{7}}), 7);
}

TEST(Value, IntegersRoundHalfToEven) {
  EXPECT_EQ(db::as_int(db::Value{2.5}), 2);
  EXPECT_EQ(db::as_int(db::Value{3.5}), 4);
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
