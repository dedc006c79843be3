// demo/names.cpp — the name lists of the demo generator.
//
// Frequent given names and surnames of Uruguay, a few Montevideo streets and
// the main localities with their department numbers. Accented letters are
// kept: the importer must carry them through unchanged.
#include "demo/names.h"

#include <cstdio>

namespace demo {

namespace {

const char* const kMale[] = {
    "Juan", "José", "Carlos", "Luis", "Jorge", "Diego", "Martín", "Pablo", "Gonzalo", "Federico",
    "Sebastián", "Nicolás", "Rodrigo", "Matías", "Andrés", "Fernando", "Gustavo", "Daniel", "Marcelo",
    "Álvaro", "Ricardo", "Eduardo", "Sergio", "Walter", "Héctor", "Rubén", "Facundo", "Agustín",
    "Santiago", "Joaquín", "Maximiliano", "Leonardo", "Ignacio", "Mauricio", "Germán", "Raúl"};
const char* const kFemale[] = {
    "María", "Ana", "Laura", "Silvia", "Carolina", "Claudia", "Patricia", "Gabriela", "Mónica",
    "Lucía", "Florencia", "Valentina", "Sofía", "Camila", "Andrea", "Natalia", "Verónica", "Daniela",
    "Mariana", "Cecilia", "Graciela", "Rosario", "Inés", "Beatriz", "Alejandra", "Paola", "Lorena",
    "Victoria", "Agustina", "Micaela", "Fernanda", "Noelia", "Soledad", "Elena", "Teresa", "Magdalena"};
const char* const kSurnames[] = {
    "Rodríguez", "González", "Fernández", "García", "López", "Martínez", "Pérez", "Silva", "Sosa",
    "Díaz", "Suárez", "Pereira", "Álvarez", "Cabrera", "Gómez", "Hernández", "Ramírez", "Núñez",
    "Acosta", "Techera", "Olivera", "Castro", "Méndez", "Da Silva", "Vázquez", "Romero", "Correa",
    "De León", "Benítez", "Sánchez", "Ferreira", "Rosa", "Viera", "Machado", "Píriz", "Cardozo",
    "Morales", "Muniz", "Umpiérrez", "Larrosa", "Bentancor", "Duarte", "Gutiérrez", "Ferrari",
    "Berrutti", "Castiglioni", "Bonilla", "Ibarra", "Olivera", "Cuadrado", "Ojeda", "Porley"};
const char* const kStreets[] = {
    "Av. 18 de Julio", "Colonia", "Av. Italia", "Bvar. Artigas", "Av. Rivera", "Mercedes", "Canelones",
    "Av. Millán", "Av. Agraciada", "Gral. Flores", "Rambla República de México", "Soriano", "Uruguay",
    "Paysandú", "Av. General Garibaldi", "Camino Carrasco", "Av. Brasil", "Ellauri", "Obligado",
    "San José", "Durazno", "Jackson", "Constituyente", "Av. Luis Alberto de Herrera"};
const PlaceName kPlaces[] = {
    {"Montevideo", 1, 1}, {"Montevideo", 1, 1}, {"Montevideo", 1, 1}, {"Montevideo", 1, 1},
    {"Las Piedras", 20, 2}, {"Ciudad de la Costa", 21, 2}, {"Pando", 22, 2}, {"Canelones", 23, 2},
    {"Maldonado", 30, 10}, {"San José de Mayo", 40, 16}, {"Salto", 50, 15}, {"Paysandú", 60, 11}};

std::string ascii_lower(const std::string& s) {
  // Folds the accented letters of the name lists; other bytes pass through.
  static const struct { const char* from; char to; } kFold[] = {
      {"á", 'a'}, {"é", 'e'}, {"í", 'i'}, {"ó", 'o'}, {"ú", 'u'}, {"ñ", 'n'},
      {"Á", 'a'}, {"É", 'e'}, {"Í", 'i'}, {"Ó", 'o'}, {"Ú", 'u'}, {"Ñ", 'n'}};
  std::string out;
  for (std::size_t i = 0; i < s.size();) {
    bool folded = false;
    for (const auto& f : kFold) {
      if (s.compare(i, 2, f.from) == 0) {
        out += f.to;
        i += 2;
        folded = true;
        break;
      }
    }
    if (folded) continue;
    const char c = s[i++];
    if (c == ' ') continue;
    out += (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return out;
}

}  // namespace

const char* first_name(Prng& rng, int sex) { return sex == 2 ? rng.pick(kFemale) : rng.pick(kMale); }

const char* surname(Prng& rng) { return rng.pick(kSurnames); }

std::string street_address(Prng& rng) {
  std::string s = std::string(rng.pick(kStreets)) + " " + std::to_string(rng.range(100, 4999));
  if (rng.chance(35)) s += " apto " + std::to_string(rng.range(1, 12) * 100 + rng.range(1, 8));
  return s;
}

const PlaceName& place(Prng& rng) { return rng.pick(kPlaces); }

std::string landline(Prng& rng) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "2%03d %04d", rng.range(0, 999), rng.range(0, 9999));
  return buf;
}

std::string mobile(Prng& rng) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "09%d %03d %03d", rng.range(1, 9), rng.range(0, 999), rng.range(0, 999));
  return buf;
}

std::string email(Prng& rng, const std::string& first, const std::string& last) {
  static const char* const kDomains[] = {"gmail.com", "hotmail.com", "adinet.com.uy", "montevideo.com.uy"};
  return ascii_lower(first) + "." + ascii_lower(last) + "@" + rng.pick(kDomains);
}

}  // namespace demo
