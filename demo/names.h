// demo/names.h — Uruguayan-style names, streets and places for demo people.
#pragma once

#include <string>

#include "demo/prng.h"

namespace demo {

struct PlaceName {
  const char* locality;
  int id_localidad;
  int id_dpto;  // department: 1 Montevideo, 2 Canelones, ...
};

// A first name for a person of sex 1 (male) or 2 (female).
const char* first_name(Prng& rng, int sex);
const char* surname(Prng& rng);
// "Av. 18 de Julio 1234", "Colonia 987 apto 302", ...
std::string street_address(Prng& rng);
const PlaceName& place(Prng& rng);
// A Montevideo landline "2xxx xxxx" or a mobile "09x xxx xxx".
std::string landline(Prng& rng);
std::string mobile(Prng& rng);
// "nombre.apellido@dominio.com.uy", lower case, accents removed.
std::string email(Prng& rng, const std::string& first, const std::string& last);

}  // namespace demo
