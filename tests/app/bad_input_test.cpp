// Tests `kelimport --batch` over bad inputs: for each, the exit status, the
// exact Spanish lines printed, and that the staging database's mappings, its
// previous data and the KEL company are left alone where they must be.
//
// Every case starts from a small program folder (the executable, the shipped
// formats, the template), a copy of the demo's empty KEL company and a
// two-file CSV source, after one good run that staged it and a mapping the
// user made; then the case breaks one thing and runs again.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <thread>

#include "run_program.h"
#include "support/program_folder.h"
#include "support/sqlite_file.h"

namespace {

namespace fs = std::filesystem;
using testing_app::RunResult;

const std::string kEmpresaCsv = "IdEmpresa;Nombre;RazonSocial\n1;DEMO S.A.;DEMO S.A.\n";
const std::string kPersonasCsv = "id_Persona;Nombre_1;Apellido_1\n1;Ana;Pérez\n2;Luis;Gómez\n3;Eva;Ruiz\n";

// True when `line` is a whole line of `out`; a `line` ending in "*" only
// starts one.
bool HasLine(const std::string& out, const std::string& line) {
  if (!line.empty() && line.back() == '*') return ("\n" + out).find("\n" + line.substr(0, line.size() - 1)) != std::string::npos;
  return ("\n" + out).find("\n" + line + "\n") != std::string::npos;
}

class BadInput {
 public:
  BadInput() {
    const fs::path built = fs::path(KEL_EXECUTABLE).parent_path();
    test_support::copy_program_folder(built, prog, true);
    fs::create_directories(company.parent_path());
    fs::copy_file(built / "demo" / "Empresa" / "Datos.mdb", company);
    root.write("origen/Empresa.csv", kEmpresaCsv);
    root.write("origen/Personas.csv", kPersonasCsv);
  }

  RunResult run(std::vector<std::string> args, const std::string& command_line) const {
    args.insert(args.begin(), "--batch");
    args.push_back(command_line);
    return testing_app::run_kelimport(args, "", root.path(), (prog / "kelimport").string(), as);
  }
  RunResult run(std::vector<std::string> args = {}) const { return run(std::move(args), line()); }
  std::string line(const fs::path& kel = {}) const {
    return (kel.empty() ? company : kel).string() + "*" + source.string() + "*0";
  }

  // Row counts that must not move when a case leaves the staging database alone.
  std::string staging_state() const {
    return test_support::query_text(staging, "SELECT (SELECT count(*) FROM Personas) || '/' || (SELECT count(*) FROM RelacConc) || '/' || "
                          "(SELECT count(*) FROM TiposRemuneracion) || '/' || (SELECT count(*) FROM CobraPor)");
  }
  std::string kel_state() const {
    return test_support::query_text(company, "SELECT (SELECT count(*) FROM Personas) || '/' || (SELECT count(*) FROM Empresa) || '/' || "
                          "(SELECT count(*) FROM Conceptos)");
  }

  TempDir root;
  testing_app::RunAs as;  // the program's user (the test's own by default)
  fs::path prog = root / "prog";
  fs::path company = root / "empresas" / "Empresa" / "Datos.mdb";
  fs::path source = root / "origen";
  fs::path staging = prog / "Empresa" / "Pasaje.mdb";
};

// `text` with {root}, {prog}, {empresa}, {origen} and {auxiliar} replaced by
// the fixture's folders and files.
std::string Expand(const BadInput& f, std::string text) {
  const std::pair<std::string, std::string> names[] = {
      {"{root}", f.root.path().string()}, {"{prog}", f.prog.string()},          {"{empresa}", f.company.string()},
      {"{origen}", f.source.string()},    {"{auxiliar}", f.staging.string()}};
  for (const auto& [name, value] : names)
    for (std::size_t at; (at = text.find(name)) != std::string::npos;) text.replace(at, name.size(), value);
  return text;
}

struct Case {
  std::string name;
  std::function<void(BadInput&)> arrange;
  std::vector<std::string> args;
  std::string company;  // the KEL file the command line names ("" = the fixture's), expanded
  int status;
  std::vector<std::string> lines;  // printed exactly, each on its own line, expanded
  bool staging_untouched;  // staged rows and mappings as the good run left them
};

TEST(BadInputBatch, EachBadInputIsToldAndLosesNothing) {
  const std::string nothing_loaded = "ERROR: La carga de la base auxiliar no cargó nada; no se importa nada";
  const std::string bad_header =
      "AVISO: Personas.csv: no se cargó porque no cumple las condiciones de la entrada Personas del formato "
      "(revise su línea de encabezado)";
  const std::vector<Case> cases = {
      {"carpeta de origen inexistente", [](BadInput& f) { fs::remove_all(f.source); }, {}, "", 2,
       {"AVISO: La carpeta {origen} No existe", nothing_loaded}, true},
      {"ningún archivo reconocido",
       [](BadInput& f) {
         fs::remove_all(f.source);
         f.root.write("origen/notas.txt", "nada\n");
       },
       {}, "", 2,
       {"AVISO: No se encontró en el origen ningún archivo o tabla del formato elegido: no se cargó nada y la "
        "base auxiliar quedó como estaba",
        nothing_loaded},
       true},
      {"encabezado con un error",
       [](BadInput& f) { f.root.write("origen/Personas.csv", "id_Persna;Nombre_1\n1;Ana\n"); }, {}, "", 4,
       {bad_header, "INFO: Importación Satisfactoria!!"}, false},
      {"archivo vacío", [](BadInput& f) { f.root.write("origen/Personas.csv", ""); }, {}, "", 4, {bad_header}, false},
      {"línea sin clave", [](BadInput& f) { f.root.write("origen/Personas.csv", kPersonasCsv + ";;\n"); }, {}, "", 2,
       {"AVISO: Personas.csv: la tabla Personas no se cargó: id_Persona vacío en la línea 5"}, false},
      {"archivo de sentencias faltante", [](BadInput& f) { fs::remove(f.prog / "csv" / "personas.sql"); }, {}, "", 2,
       {"AVISO: Personas.csv: no se cargó porque falta el archivo de sentencias csv/personas.sql del formato"}, false},
      {"clave de formato mal escrita",
       [](BadInput& f) {
         std::string text = TempDir::read(f.prog / "Intercambio_CSV.fmt");
         text.replace(text.find("Archivos="), 9, "Archivo=");
         f.root.write("prog/Intercambio_CSV.fmt", text);
       },
       {}, "", 2,
       {"AVISO: El formato elegido no tiene archivos ni tablas de origen (revise ConfIMP.ini y el archivo del "
        "formato): no se cargó nada y la base auxiliar quedó como estaba",
        nothing_loaded},
       true},
      {"sin ConfIMP.ini", [](BadInput& f) { fs::remove(f.prog / "ConfIMP.ini"); }, {}, "", 2, {nothing_loaded}, true},
      {"clave repetida", [](BadInput& f) { f.root.write("origen/Personas.csv", kPersonasCsv + "2;Otro;Luis\n"); }, {},
       "", 2, {"AVISO: Personas.csv: la tabla Personas no se cargó: id_Persona 2 repetido en las líneas 3 y 5"}, false},
      {"clave vacía apartada", [](BadInput& f) { f.root.write("origen/Personas.csv", kPersonasCsv + ";;\n"); },
       {"--set-aside-bad-rows"}, "", 4,
       {"AVISO: Personas.csv: 1 fila apartada en {prog}/Empresa/rechazados/Personas.csv (id_Persona vacío); el resto "
        "de la tabla Personas se cargó"},
       false},
      {"empresa de 0 bytes", [](BadInput& f) { f.root.write("empresas/Empresa/Datos.mdb", ""); }, {}, "", 3,
       {"AVISO: El archivo {empresa} está vacío (0 bytes): no es una base de empresa de KEL"}, true},
      {"base de otro programa",
       [](BadInput& f) {
         fs::remove(f.company);
         test_support::run_sqlite(f.company, "CREATE TABLE Clientes (id INTEGER); CREATE TABLE Empresa (x INTEGER);");
       },
       {}, "", 3,
       {"AVISO: La base {empresa} no es una base de empresa de KEL: le faltan las tablas Cargos, Sectores, "
        "Sucursales, Personas, Contrato, Conceptos, TiposLiquidacion, Encabezados, Datos_Liquidacion"},
       true},
      {"la plantilla como empresa",
       [](BadInput& f) { fs::copy_file(f.prog / "Generica" / "Pasaje.mdb", f.root / "empresas" / "Empresa" / "P.mdb"); },
       {}, "{root}/empresas/Empresa/P.mdb", 3,
       {"AVISO: La base {root}/empresas/Empresa/P.mdb es una base auxiliar de pasaje (como Generica/Pasaje.mdb), no "
        "una base de empresa de KEL"},
       true},
      {"empresa en una carpeta Generica",
       [](BadInput& f) {
         fs::create_directories(f.root / "empresas" / "Generica");
         fs::copy_file(f.company, f.root / "empresas" / "Generica" / "Datos.mdb");
       },
       {}, "{root}/empresas/Generica/Datos.mdb", 2,
       {"AVISO: La base de KEL {root}/empresas/Generica/Datos.mdb está en la carpeta \"Generica\", que no puede dar "
        "nombre a su base auxiliar (Generica es la carpeta de la base genérica): mueva la base de la empresa a una "
        "carpeta propia"},
       true},
      {"sin base genérica ni auxiliar",
       [](BadInput& f) {
         fs::remove(f.prog / "Generica" / "Pasaje.mdb");
         fs::remove_all(f.prog / "Empresa");
       },
       {}, "", 2,
       {"AVISO: Falta Base Genérica para poder realizar el pasaje",
        "AVISO: No se pudo preparar la base de datos auxiliar para la importacion de datos",
        "ERROR: No hay una base auxiliar abierta para la empresa; no se importa nada"},
       false},
      {"ruta con . y ..", [](BadInput&) {}, {}, "{root}/empresas/Empresa/./x/../Datos.mdb", 0,
       {"INFO: Importación Satisfactoria!!"}, false},
      {"otra empresa con el mismo nombre de carpeta",
       [](BadInput& f) {
         fs::create_directories(f.root / "otras" / "Empresa");
         fs::copy_file(f.company, f.root / "otras" / "Empresa" / "Datos.mdb");
       },
       {"--no"}, "{root}/otras/Empresa/Datos.mdb", 2,
       {"PREGUNTA: La base auxiliar {auxiliar} fue preparada para la empresa {empresa}",
        "  y ahora se abre para {root}/otras/Empresa/Datos.mdb (las dos carpetas tienen el mismo nombre).",
        "  Sus datos cargados y sus relaciones son de la otra empresa. ¿Desea usarlos de todas formas? -> No",
        "AVISO: No se pudo preparar la base de datos auxiliar para la importacion de datos"},
       true},
  };

  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    BadInput f;
    RunResult good = f.run({"--yes"});
    ASSERT_EQ(good.status, 0) << good.out;
    EXPECT_EQ(good.out.find("AVISO:"), std::string::npos) << good.out;  // a clean run warns of nothing
    test_support::run_sqlite(f.staging, "INSERT INTO RelacConc (CodKEL, CodOS) VALUES (17, 1)");
    const std::string staging_before = f.staging_state();
    ASSERT_EQ(staging_before, "3/1/3/4");

    c.arrange(f);
    const std::string kel_before = f.kel_state();  // what the case left of the company
    const auto kel_size = fs::file_size(f.company);
    std::vector<std::string> args = c.args;
    if (std::find(args.begin(), args.end(), "--no") == args.end()) args.push_back("--yes");
    RunResult r = f.run(args, f.line(Expand(f, c.company)));
    EXPECT_EQ(r.status, c.status) << r.out;
    for (const std::string& line : c.lines) EXPECT_TRUE(HasLine(r.out, Expand(f, line))) << line << "\n---\n" << r.out;
    if (c.staging_untouched) {
      EXPECT_EQ(f.staging_state(), staging_before) << r.out;
    }
    // The mappings and the template's catalogues survive every case that
    // leaves a staging database.
    if (fs::exists(f.staging)) {
      const std::string after = f.staging_state();
      EXPECT_EQ(after.substr(std::min(after.size(), after.find('/'))), "/1/3/4") << r.out;
    }
    // A run that transferred (exit 0 or 4) changed KEL on purpose; any other
    // ended before the transfer or stopped in the persons step, which with no
    // staged person parks the company's persons and stops (their count and
    // the company's other tables stay as they were).
    if (c.status != 0 && c.status != 4) {
      EXPECT_EQ(f.kel_state(), kel_before);
    }
    if (c.status == 3) {
      EXPECT_EQ(fs::file_size(f.company), kel_size);  // a refused file is not even opened
    }
    if (fs::exists(f.prog / "Generica" / "Pasaje.mdb")) {
      EXPECT_EQ(test_support::query_text(f.prog / "Generica" / "Pasaje.mdb", "SELECT count(*) FROM Personas"), "0");
    }
  }
}

TEST(BadInputBatch, SecondRunOnTheSameCompanyStopsAtOnce) {
  BadInput f;
  ASSERT_EQ(f.run({"--yes"}).status, 0);
  for (const fs::path& lock : {fs::path(f.company.string() + ".lock"), f.prog / "Empresa" / "Pasaje.mdb.lock"}) {
    SCOPED_TRACE(lock.string());
    const int fd = ::open(lock.c_str(), O_RDWR | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_EX | LOCK_NB), 0);
    RunResult r = f.run({"--yes"});
    ::close(fd);
    EXPECT_EQ(r.status, 2) << r.out;
    EXPECT_TRUE(HasLine(r.out, "AVISO: Otra importación de esta empresa está en curso")) << r.out;
    EXPECT_EQ(r.out.find("CARGA:"), std::string::npos) << r.out;
  }
}

TEST(BadInputBatch, WaitingForALockedDatabaseIsTold) {
  BadInput f;
  ASSERT_EQ(f.run({"--yes"}).status, 0);
  // Another program holds the staging database for a moment.
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(f.staging.c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  std::thread release([other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);
  });
  RunResult r = f.run({"--yes"});
  release.join();
  sqlite3_close(other);
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_TRUE(HasLine(r.out, "ESPERA: Esperando a que otro programa libere la base " + f.staging.string() +
                                 "; se espera hasta 15 segundos"))
      << r.out;
}

// Permissions do not stop root, whom the tests run as: the read-only cases
// run the program as an unprivileged user ("nobody") on files that user
// owns. Each case takes the write permission away from one file or folder,
// and checks the Spanish message and that nothing changed.
TEST(BadInputBatch, ReadOnlyFilesAndFoldersAreToldAndLeftAlone) {
  testing_app::RunAs as;
  if (geteuid() == 0) {
    const passwd* nobody = getpwnam("nobody");
    if (!nobody) GTEST_SKIP() << "las pruebas de solo lectura necesitan un usuario sin privilegios (nobody)";
    as = {nobody->pw_uid, nobody->pw_gid};
  }
  struct Case {
    const char* name;
    std::string target;  // what becomes read-only, expanded
    int status;
    std::vector<std::string> lines;  // printed exactly, expanded; one ending in "*" is the start of a line
    bool fresh_staging = false;  // the staging database is made anew (its folder removed first)
  };
  const std::string kel_refused = "ERROR: No hay una base de KEL abierta ({empresa}); no se importa nada";
  const std::string done = "INFO: Importación Satisfactoria!!";
  const std::vector<Case> cases = {
      {"base de KEL", "{empresa}", 3,
       {"AVISO: La base de KEL {empresa} es de solo lectura: no se puede importar en ella", kel_refused}},
      {"carpeta de la base de KEL", "{root}/empresas/Empresa", 3,
       {"AVISO: La carpeta {root}/empresas/Empresa de la base de KEL es de solo lectura: no se puede importar en ella",
        kel_refused}},
      {"base auxiliar", "{auxiliar}", 2,
       {"AVISO: La base auxiliar {auxiliar} es de solo lectura: no se puede cargar en ella"}},
      {"carpeta del programa, sin base auxiliar", "{prog}", 2,
       {"AVISO: No se puede crear la base auxiliar {auxiliar}: la carpeta {prog}/Empresa no existe o es de solo "
        "lectura"},
       true},
      // The staging database itself can be written: the import goes on, and
      // only its report cannot be written beside it.
      {"carpeta de la base auxiliar", "{prog}/Empresa", 0,
       {done, "AVISO: No se pudo escribir el informe de importación {prog}/Empresa/kelimport-informe-*"}},
      // A source is only read.
      {"carpeta de origen", "{origen}", 0, {done}},
      {"archivo de origen", "{origen}/Personas.csv", 0, {done}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    BadInput f;
    f.as = as;
    // The user owns what the program writes: the company's folder, the
    // program folder (where the staging database goes) and the source.
    for (const fs::path& top : {f.company.parent_path(), f.prog, f.source}) {
      ASSERT_EQ(::chown(top.c_str(), as.uid, as.gid), 0);
      if (top == f.prog) continue;  // its files (the executable among them) stay root's
      for (const auto& e : fs::recursive_directory_iterator(top)) ASSERT_EQ(::lchown(e.path().c_str(), as.uid, as.gid), 0);
    }
    ASSERT_EQ(f.run({"--yes"}).status, 0);
    if (c.fresh_staging) fs::remove_all(f.staging.parent_path());
    // A KEL company the good run filled: a read-only case must leave it so.
    const std::string kel_before = TempDir::read(f.company), source_before = TempDir::read(f.source / "Personas.csv");
    const std::string staging_before = f.staging_state();
    const fs::path target = Expand(f, c.target);
    const fs::perms perms = fs::status(target).permissions();
    fs::permissions(target, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    RunResult r = f.run({"--yes"});
    fs::permissions(target, perms);
    EXPECT_EQ(r.status, c.status) << r.out;
    for (const std::string& line : c.lines) EXPECT_TRUE(HasLine(r.out, Expand(f, line))) << line << "\n" << r.out;
    if (c.status != 0) {
      EXPECT_EQ(TempDir::read(f.company), kel_before);
      if (!c.fresh_staging) {
        EXPECT_EQ(f.staging_state(), staging_before);
      }
      EXPECT_EQ(r.out.find("CARGA:"), std::string::npos) << r.out;  // nothing was loaded
    } else {
      EXPECT_EQ(test_support::query_text(f.staging, "SELECT group_concat(Nombre_1) FROM Personas"), "Ana,Luis,Eva");
    }
    EXPECT_EQ(TempDir::read(f.source / "Personas.csv"), source_before);
  }
}

}  // namespace
