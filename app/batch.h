// app/batch.h — `kelimport --batch`: an import without a window.
//
// For scripted and repeated trial imports: the same session controller the
// window uses runs with the window's command line ("destination*source*format
// index"): Form_Load, Form_Activate (which stages the source, as the window's
// automatic refresh does), cbImportar_Click and Form_Unload. Every message the
// window would show is printed on its own line ("AVISO: ...", "PREGUNTA: ...
// -> Sí", "INFO: ...", "ERROR: ..."); questions are answered by --yes or --no.
#pragma once

#include <array>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "session/main_controller.h"
#include "session/month.h"

namespace app {

// Exit statuses of a batch run.
enum BatchStatus : int {
  kBatchOk = 0,           // "Importación Satisfactoria!!": a group transferred, every ticked step to its end, nothing left out
  kBatchStopped = 1,      // an answer (No) stopped the run, or no group was ticked
  kBatchError = 2,        // an error ended the run (the report file or the printed lines say why)
  kBatchBadArguments = 3, // the command line is wrong (usage printed)
  kBatchIncomplete = 4    // the run finished, but something was skipped, refused or set aside (each printed)
};

// How a batch run ended, as far as the exit status is concerned.
struct BatchOutcome {
  bool blocked = false;      // another run holds the company, or the staging database could not be used
  bool load_failed = false;  // the staging load staged nothing, or its source folder was missing
  bool finished = false;     // the import ran to "Importación Satisfactoria!!"
  std::size_t left_out = 0;  // things the run skipped, refused or set aside (each told as AVISO:)
};

// The exit status of a run that got past its command line: 2 when it was
// blocked or staged nothing, 1 when an answer stopped it, 4 when it finished
// but left something out, 0 otherwise.
int BatchExitStatus(const BatchOutcome& outcome);

struct BatchOptions {
  std::string command_line;                 // "destination" or "destination*source*format index"
  std::optional<std::array<bool, 5>> groups;  // --groups: the ChkOP boxes before staging
  std::optional<session::Month> from;       // --from MM/yyyy: ticks and sets Desde
  std::optional<session::Month> to;         // --to MM/yyyy: ticks and sets Hasta
  std::optional<bool> answer;               // --yes / --no
  bool only_used_concepts = false;          // --only-used-concepts (chkImpSoloConUtil)
  bool set_aside_bad_rows = false;          // --set-aside-bad-rows (ApartarRechazados)
  bool restore_on_error = false;            // --restore-on-error: an error puts the safety copy back
  bool help = false;                        // --help
};

// Parses the arguments that follow "--batch". Returns nullopt with a Spanish
// `error` for an unknown option, a missing or malformed value, both --yes and
// --no, --from later than --to, or not exactly one command line.
std::optional<BatchOptions> ParseBatchArguments(const std::vector<std::string>& args, std::string* error);

// Runs a batch import with the program folder `program_folder`. Messages go to
// `out`, one per line; with `show_progress` the percentage of the progress
// bar is written to `err` as it changes (for a terminal). Returns a
// BatchStatus.
int run_batch(const std::vector<std::string>& args, const std::filesystem::path& program_folder,
              std::ostream& out, std::ostream& err, bool show_progress);

// Whether an import run is a batch success: every ticked step ran to its end
// and at least one step ran. Decided from the run's result, never from the
// text of its last message.
bool BatchSucceeded(const session::ImportResult& result);

// The usage text of batch mode (Spanish).
std::string batch_usage();

// The program folder: the folder of the running executable (argv[0] is used
// only when the system cannot say).
std::filesystem::path ProgramFolder(const char* argv0);

}  // namespace app
