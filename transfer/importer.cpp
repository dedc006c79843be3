// transfer/importer.cpp — the step of each group, and the path literal.
#include "transfer/importer.h"

#include <array>
#include <stdexcept>

#include "transfer/catalogos.h"
#include "transfer/conceptos.h"
#include "transfer/empresa.h"
#include "transfer/liquidaciones.h"
#include "transfer/personas.h"

namespace transfer {

const char* group_caption(int group) {
  static constexpr std::array<const char*, kGroupCount> kCaptions = {
      "Datos de la Empresa",
      "Cargos, Sectores, Regimenes Horarios y Sucursales",
      "Empleados, Contratos y Deducciones",
      "Conceptos y Tipos de Liquidaciones",
      "Liquidaciones",
  };
  return group >= 0 && group < kGroupCount ? kCaptions[static_cast<std::size_t>(group)] : "";
}

StepReport Importer::run_step(int group, StepContext& ctx, const RunInputs& inputs) {
  switch (group) {
    case 0:
      return import_company(ctx);
    case 1:
      return import_catalogues(ctx);
    case 2:
      return import_persons(ctx);
    case 3:
      return import_concepts(ctx);
    case 4:
      return import_liquidations(ctx, inputs.desde, inputs.hasta, inputs.persons_imported);
    default:
      throw std::out_of_range("No existe el grupo de importación " + std::to_string(group + 1));
  }
}

std::string jet_path_literal(const std::string& path) {
  std::string text;
  text.reserve(path.size() + 2);
  for (char c : path) {
    text += c;
    if (c == '\'') text += '\'';
  }
  return text;
}

}  // namespace transfer
