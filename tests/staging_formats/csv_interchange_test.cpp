// Tests of the CSV side of the interchange format: how the demo writes
// fields, and how the shipped CSV format recognises its files.
#include <gtest/gtest.h>

#include "demo/csv_writer.h"
#include "settings/key_file.h"
#include "settings/text_file.h"
#include "staging/catalogue.h"
#include "support/temp_dir.h"

TEST(CsvInterchange, FieldsReadBackAsWritten) {
  using demo::CsvField;
  EXPECT_EQ(CsvField(demo::Value{}), "");
  EXPECT_EQ(CsvField(demo::Value{std::int64_t{-12}}), "-12");
  EXPECT_EQ(CsvField(demo::Value{1234.5}), "1234.5");
  EXPECT_EQ(CsvField(demo::Value{100000.0}), "100000");  // never 1e+05
  EXPECT_EQ(CsvField(demo::Value{0.000001}), "0.000001");
  EXPECT_EQ(CsvField(demo::Value{0.1 + 0.2}), "0.30000000000000004");  // shortest exact text
  EXPECT_EQ(CsvField(demo::Value{std::string("Muñoz")}), "Muñoz");
  EXPECT_EQ(CsvField(demo::Value{std::string("a;b")}), "\"a;b\"");
  EXPECT_EQ(CsvField(demo::Value{std::string("dice \"sí\"")}), "\"dice \"\"sí\"\"\"");
  EXPECT_EQ(CsvField(demo::Value{std::string("dos\r\nlíneas")}), "\"dos\r\nlíneas\"");
  EXPECT_EQ(CsvField(demo::Value{std::string(" borde")}), "\" borde\"");  // unquoted fields are trimmed
  EXPECT_EQ(CsvField(demo::Value{std::string()}), "\"\"");                // an empty text is not Null
}

TEST(CsvInterchange, FilesAreRecognisedByNameAndHeader) {
  TempDir dir;
  dir.write("Personas.csv", "Legajo;Nombre\r\n1;Ana\r\n");      // right name, wrong header
  dir.write("cargos.CSV", "\xEF\xBB\xBFid_Cargo;Cargo\r\n1;Peón\r\n");  // any case, BOM
  dir.write("Sectores.txt", "Descripcion;id_Sector\n1;x\n");    // key column anywhere in the header
  dir.write("Otros.csv", "id_Persona\n1\n");                     // right header, unknown name

  const std::string format =
      settings::ReadText(std::filesystem::path(KEL_SOURCE_DIR) / "formats" / "Intercambio_CSV.fmt");
  staging::ColArchsBD catalogue;
  std::vector<std::string> warnings;
  staging::AddEntriesFromKey(catalogue, settings::KeyValue(format, "Archivos"), true, "Archivos", &warnings);
  std::array<bool, 5> boxes = {true, true, true, true, true};
  staging::MatchFolder(catalogue, dir.path(), boxes);
  std::vector<std::string> found;
  for (const auto& e : catalogue)
    if (e.Existe) found.push_back(e.Codigo + "=" + std::filesystem::path(e.Ruta).filename().string());
  EXPECT_EQ(found, (std::vector<std::string>{"Cargos*2=cargos.CSV", "Sectores*2=Sectores.txt"}));
  // Only the catalogue group stays ticked.
  EXPECT_EQ(boxes, (std::array<bool, 5>{false, true, false, false, false}));
}
