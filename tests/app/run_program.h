// tests/app/run_program.h — runs the built kelimport executable with given
// arguments and standard input, capturing its output and exit status.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace testing_app {

struct RunResult {
  int status = -1;  // exit status, or -1 when it did not exit normally
  std::string out;
  std::string err;
};

inline std::string slurp(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs KEL_EXECUTABLE with `args`, feeding `input` on standard input; the
// output files are kept in `folder`.
inline RunResult run_kelimport(const std::vector<std::string>& args, const std::string& input,
                               const std::filesystem::path& folder) {
  auto in_path = folder / "stdin.txt";
  auto out_path = folder / "stdout.txt";
  auto err_path = folder / "stderr.txt";
  std::ofstream(in_path, std::ios::binary) << input;
  std::vector<std::string> all{KEL_EXECUTABLE};
  all.insert(all.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& a : all) argv.push_back(a.data());
  argv.push_back(nullptr);
  RunResult result;
  pid_t pid = fork();
  if (pid == 0) {
    int in = open(in_path.c_str(), O_RDONLY);
    int out = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    int err = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  result.out = slurp(out_path);
  result.err = slurp(err_path);
  return result;
}

}  // namespace testing_app
