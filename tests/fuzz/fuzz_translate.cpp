// tests/fuzz/fuzz_translate.cpp — translation alone: any text must translate
// or be refused with a TranslateError, never crash, hang or throw anything else.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "db/error.h"
#include "jet/fake_context.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static kel_test::FakeContext* context = [] {
    auto* c = new kel_test::FakeContext;
    c->AddTable("T", {"id", "Nombre", "Fecha", "Activo", "Monto"});
    c->AddTable("Personas", {"id_Persona", "NUMERO", "Nombre_1", "Apellido_1"});
    c->AddTable("RelacConc", {"CodKEL", "CodOS"});
    return c;
  }();
  std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    db::jet::translate(text, *context);
  } catch (const db::jet::TranslateError&) {
  } catch (const db::Error&) {
  }
  return 0;
}
