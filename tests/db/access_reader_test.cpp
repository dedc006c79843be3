// Tests of reading Access files as sources: the date conversion, the images
// made from the public Access samples (Jet 3, Jet 4, ACE), the image cache and
// reading a sample through `in '<path>'`, and the copying speed.
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>

#include "db/access_date.h"
#include "db/access_reader.h"
#include "db/source_reader.h"
#include "db_fixture.h"
#include "support/sqlite_file.h"

namespace {

using testing_db::SqliteTest;
using testing_db::TempFolder;
namespace fs = std::filesystem;

const fs::path kAccessDir = fs::path(KEL_SHARED_DIR) / "fixtures" / "access";

// Skips the test, saying why, when the shared samples are not beside the project.
#define REQUIRE_ACCESS_SAMPLES()                                                          \
  if (!fs::exists(kAccessDir / "nwind.mdb"))                                              \
  GTEST_SKIP() << "Faltan las bases de Access de prueba en " << kAccessDir.string()      \
               << " (carpeta shared junto al proyecto)"

TEST(AccessDate, StoredDoublesBecomeIsoTexts) {
  struct Row {
    double stored;
    const char* text;  // nullptr: refused
  };
  const Row rows[] = {
      {0.0, "1899-12-30"},
      {1.5, "1899-12-31 12:00:00"},
      {36526.0, "2000-01-01"},
      {44532.75, "2021-12-02 18:00:00"},
      // Negative days: the fraction still counts forward from that midnight.
      {-1.25, "1899-12-29 06:00:00"},
      {-0.5, "1899-12-30 12:00:00"},
      {-36522.0, "1800-01-01"},
      {-657434.0, "0100-01-01"},
      {2958465.0, "9999-12-31"},
      {2958465.999988426, "9999-12-31 23:59:59"},
      // Rounding to a whole day carries into the next one.
      {0.9999999, "1899-12-31"},
      {-657436.0, nullptr},
      {2958467.0, nullptr},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.stored);
    auto text = db::access_date_text(row.stored);
    if (row.text) {
      ASSERT_TRUE(text);
      EXPECT_EQ(*text, row.text);
    } else {
      EXPECT_FALSE(text);
    }
  }
}

TEST(AccessImage, SamplesOfEachEngineArriveWithTheirTypes) {
  REQUIRE_ACCESS_SAMPLES();
  TempFolder folder;
  struct Query {
    std::string sql;
    std::vector<std::string> rows;
  };
  struct Sample {
    std::string file;
    int tables;
    std::vector<Query> queries;
  };
  const std::vector<Sample> samples = {
      {"nwind.mdb",
       9,
       {
           {"SELECT count(*) FROM Orders", {"830"}},
           {"SELECT count(*) FROM \"Order Details\"", {"2155"}},
           {"SELECT count(*) FROM \"Umsätze\"", {"830"}},
           // Yes/No as -1/0.
           {"SELECT Discontinued, count(*) FROM Products GROUP BY 1 ORDER BY 1", {"-1|8", "0|69"}},
           {"SELECT typeof(OrderDate), OrderDate FROM Orders WHERE OrderID = 10248",
            {"text|1994-08-04"}},
           // Windows-1252 text of a Jet 3 file in UTF-8.
           {"SELECT CompanyName FROM Customers WHERE CustomerID = 'FOLKO'", {"Folk och fä HB"}},
           {"SELECT typeof(UnitPrice), UnitPrice FROM Products WHERE ProductID = 1", {"real|18.0"}},
           // OLE pictures cannot be read: left out and listed.
           {"SELECT Tabla, Columna FROM KelColumnasOmitidas ORDER BY 1", {"Categories|Picture", "Employees|Photo"}},
           // Memos whole: each note's length in characters, and the longest one's end.
           {"SELECT group_concat(length(Notes)) FROM (SELECT Notes FROM Employees ORDER BY EmployeeID)",
            {"175,448,239,218,448,324,285,151,95"}},
           {"SELECT substr(Notes, -40) FROM Employees WHERE EmployeeID = 2", {"d the Pacific Rim Importers Association."}},
       }},
      {"DateTestDatabase.mdb",
       1,
       {
           {"SELECT IDCol, DateTimeCol, DateCol, TimeCol FROM DateTest WHERE IDCol IN (2, 3, 4) ORDER BY 1",
            {"2|9999-01-01|9999-01-01|9999-01-01", "3|1898-01-01|1899-01-01|1900-01-01",
             "4|0632-01-01|0633-01-01|0634-01-01"}},
           {"SELECT LongTextCol FROM DateTest WHERE IDCol = 6", {"New line\r\nin field"}},
       }},
      {"ASampleDatabase.accdb",
       1,
       {
           {"SELECT count(*) FROM \"Asset Items\"", {"65"}},
           // Currency to its 4 decimals; dates as texts.
           {"SELECT typeof(Cost), Cost, Acquired FROM \"Asset Items\" WHERE \"Asset No\" = '30050'",
            {"real|1995.5|1997-09-02"}},
       }},
  };
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.file);
    const std::string image = folder.file(sample.file + ".db");
    db::AccessImageReport report = db::write_access_image((kAccessDir / sample.file).string(), image);
    EXPECT_EQ(report.tables, sample.tables);
    for (const Query& q : sample.queries) EXPECT_EQ(test_support::native_rows(image, q.sql), q.rows) << q.sql;
  }
}

TEST(AccessImage, UnreadableFilesAreRefusedNamingThem) {
  TempFolder folder;
  // An ACE header over pages of noise, as an encrypted file looks to libmdb.
  std::string noise(4096 * 4, '\0');
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>((i * 7919 + 13) % 251);
  noise[20] = '\x02';  // the ACE 2007 version byte: libmdb opens it and fails later
  const std::string ace = folder.write(
      "cifrada.accdb", std::string("\0\x01\0\0Standard ACE DB\0", 20) + noise.substr(20));
  const std::string text = folder.write("datos.mdb", "no es Access");
  for (const std::string& path : {ace, text}) {
    SCOPED_TRACE(path);
    try {
      db::write_access_image(path, folder.file("imagen.db"));
      ADD_FAILURE() << "accepted";
    } catch (const db::Error& e) {
      EXPECT_NE(e.message().find("No se puede leer el archivo de Access " + path), std::string::npos)
          << e.message();
    }
  }
}

TEST_F(SqliteTest, AccessFilesAreReadThroughACachedImage) {
  REQUIRE_ACCESS_SAMPLES();
  open();
  const fs::path source = folder.path() / "origen" / "nwind.mdb";
  fs::create_directories(source.parent_path());
  fs::copy_file(kAccessDir / "nwind.mdb", source);
  fs::permissions(source, fs::perms::owner_write, fs::perm_options::add);
  const std::string before = TempFolder::read(source.string());
  const fs::path cache = folder.path() / "cache";

  auto reader = std::make_shared<db::AccessReader>(cache);
  db::register_source_reader(reader);
  db::Recordset rs = conn.open_recordset("Select Count(*) From Orders in '" + source.string() + "'");
  EXPECT_EQ(db::as_int(rs.field(std::size_t{0})), 830);
  const std::string image = reader->sqlite_image(source.string());
  EXPECT_EQ(fs::path(image).parent_path(), cache);
  const auto made = fs::last_write_time(image);

  // Unchanged source: the same image, not made again.
  EXPECT_EQ(reader->sqlite_image(source.string()), image);
  EXPECT_EQ(fs::last_write_time(image), made);
  // A newer source is copied again.
  fs::last_write_time(source, fs::last_write_time(source) + std::chrono::seconds(5));
  EXPECT_EQ(reader->sqlite_image(source.string()), image);
  EXPECT_NE(fs::last_write_time(image), made);
  EXPECT_EQ(TempFolder::read(source.string()), before) << "the source is never written";
  db::clear_source_readers();
}

// Copying speed, measured in processor time so that a busy machine does not
// fail it: the largest sample table read repeatedly until 100,000 rows.
TEST(AccessImage, CopiesAtLeastTwoHundredThousandRowsPerSecond) {
  REQUIRE_ACCESS_SAMPLES();
  TempFolder folder;
  const std::string source = (kAccessDir / "nwind.mdb").string();
  std::int64_t rows = 0;
  std::clock_t start = std::clock();
  for (int i = 0; rows < 100000; ++i) rows += db::write_access_image(source, folder.file("i.db")).rows;
  double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  double rate = static_cast<double>(rows) / seconds;
  RecordProperty("rows_per_second", static_cast<int>(rate));
  std::printf("Access -> SQLite: %lld filas en %.3f s de CPU = %.0f filas/s\n", static_cast<long long>(rows),
              seconds, rate);
  EXPECT_GE(rate, 200000.0);
}

}  // namespace
