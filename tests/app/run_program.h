// tests/app/run_program.h — runs a kelimport executable with given arguments
// and standard input, capturing its output and exit status.
#pragma once

#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace testing_app {

struct RunResult {
  int status = -1;  // exit status, or -1 when it did not exit normally
  std::string out;
  std::string err;
  bool has(const std::string& text) const { return out.find(text) != std::string::npos; }
};

// Whom to run the program as: the test's own user, or another (uid, gid).
struct RunAs {
  uid_t uid = static_cast<uid_t>(-1);
  gid_t gid = static_cast<gid_t>(-1);
};

// Runs `program` with `args`, feeding `input` on standard input; the
// redirection files are kept in `folder`. With `as.uid` set, the program runs
// as that user and group alone (the test must be root).
inline RunResult run_kelimport(const std::vector<std::string>& args, const std::string& input,
                               const std::filesystem::path& folder,
                               const std::string& program = KEL_EXECUTABLE, RunAs as = {}) {
  const auto in_path = folder / "stdin.txt", out_path = folder / "stdout.txt",
             err_path = folder / "stderr.txt";
  std::ofstream(in_path, std::ios::binary) << input;
  std::vector<std::string> all{program};
  all.insert(all.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (auto& a : all) argv.push_back(a.data());
  argv.push_back(nullptr);
  pid_t pid = fork();
  if (pid == 0) {
    dup2(open(in_path.c_str(), O_RDONLY), 0);
    dup2(open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 1);
    dup2(open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 2);
    if (as.uid != static_cast<uid_t>(-1) &&
        (setgroups(0, nullptr) != 0 || setgid(as.gid) != 0 || setuid(as.uid) != 0))
      _exit(126);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  RunResult result;
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  result.out = TempDir::read(out_path);
  result.err = TempDir::read(err_path);
  return result;
}

}  // namespace testing_app
