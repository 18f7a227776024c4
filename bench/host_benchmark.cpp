// Times the phases of a repair on the document of the benchmarks, in one process.
#include <benchmark/benchmark.h>
#include <tgx/embedded_host.h>
#include <tgx/tgx.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "bench/MarkedDocument.h"

namespace {

/// The document of that many pages, made once.
const std::string& DocumentOf(std::size_t pages) {
  static std::map<std::size_t, std::string> documents;
  std::string& bytes = documents[pages];
  if (bytes.empty()) {
    const auto folder = std::filesystem::temp_directory_path() / ("tgx-bench-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const std::string path = folder / "marked.pdf";
    tgx::bench::MakeMarkedDocument(pages, TGX_FONT_DOCUMENT, path);
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    bytes = text.str();
    std::filesystem::remove_all(folder);
  }
  return bytes;
}

/// An open document; each phase is one of its functions.
class Session {
 public:
  explicit Session(std::size_t pages) : bytes_(DocumentOf(pages)) {
    const TGXInitParams init = {nullptr, &TGXHost_Tables};
    TGX_init(&init);
  }
  void Open() {
    document_ = TGXHost_OpenMemory(bytes_.data(), bytes_.size(), "marked.pdf", nullptr);
    if (document_ == nullptr) Fail(TGXHost_LastError());
  }
  void Act(std::int32_t action) {
    const TGXActionParams params = {0, action, {0}};
    if (TGX_Action(document_, &params) != TGX_OK) Fail(TGX_GetLastError());
  }
  void Save() {
    void* data = nullptr;
    std::size_t size = 0;
    if (TGXHost_SaveMemory(document_, nullptr, &data, &size) != 0) Fail(TGXHost_LastError());
    TGXHost_FreeMemory(data);
  }
  void Close() { TGXHost_Close(document_); }

 private:
  [[noreturn]] static void Fail(const char* text) {
    std::fprintf(stderr, "%s\n", text);
    std::exit(1);
  }

  const std::string& bytes_;
  PDDoc document_ = nullptr;
};

/// Runs the phases in order and times the one named.
enum class Phase { kOpen, kAction, kSaveUnchanged, kSaveChanged, kClose, kAll };

void RunPhases(benchmark::State& state, Phase timed) {
  Session session(static_cast<std::size_t>(state.range(0)));
  const auto phase = [&](Phase name, auto&& work) {
    if (name != timed && timed != Phase::kAll) {
      state.PauseTiming();
      work();
      state.ResumeTiming();
    } else {
      work();
    }
  };
  for (auto _ : state) {
    phase(Phase::kOpen, [&] { session.Open(); });
    if (timed == Phase::kSaveUnchanged) {
      session.Save();
    } else {
      phase(Phase::kAction, [&] { session.Act(6); });
      phase(Phase::kSaveChanged, [&] { session.Save(); });
    }
    phase(Phase::kClose, [&] { session.Close(); });
  }
}

}  // namespace

BENCHMARK_CAPTURE(RunPhases, open, Phase::kOpen)->Arg(1000)->Arg(2000)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunPhases, remove_empty_tags, Phase::kAction)
    ->Arg(1000)
    ->Arg(2000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunPhases, save_unchanged, Phase::kSaveUnchanged)
    ->Arg(1000)
    ->Arg(2000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunPhases, save_changed, Phase::kSaveChanged)
    ->Arg(1000)
    ->Arg(2000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunPhases, close, Phase::kClose)->Arg(1000)->Arg(2000)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunPhases, all, Phase::kAll)->Arg(1000)->Arg(2000)->Iterations(5)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
