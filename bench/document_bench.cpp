// Timings of the document's heavy paths on a full document: opening a file
// (read, then repaint of the grid) and saving (grid read back, then write).

#include "core/memtable.h"
#include "core/text.h"
#include "platform/fake/memoryprofilestore.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

using namespace kestra;

struct Bench {
    Document doc;
    Settings settings;
    Grid grid;
    ScriptedDialogs dialogs;
    MemoryProfileStore profile;
    VirtualScheduler scheduler;
    std::filesystem::path dir = std::filesystem::temp_directory_path() / "kestra-bench";
    MemTable table{doc, settings, grid, {dialogs, profile, scheduler, AppFolder(dir)}};
    std::string path = (dir / "full.mem").string();

    Bench()
    {
        std::filesystem::create_directories(dir);
        doc.model = ModelSwitches::of(Model::BC796D);
        table.formLoad();
        // Every channel of every bank full, with tags, tones and comments.
        for (int b = 0; b < 10; ++b)
            for (int r = 1; r <= 100; ++r) {
                auto& line = doc.memdata[b][r];
                line[col::line] = "";
                line[col::freq] = padfreq(std::to_string(150 + b) + "." + std::to_string(1000 + r * 25), 8, 5);
                line[col::tag] = "Channel " + std::to_string(b * 100 + r);
                for (int c : {3, 4, 6, 7, 9, 10}) line[c] = std::to_string(r % 2);
                line[col::delay] = std::to_string(r % 8);
                line[col::tone] = std::to_string(r % 292);
                line[col::mode] = std::to_string(r % 4);
                line[col::step] = std::to_string(r % 10);
                line[col::comment] = "Comment of channel " + std::to_string(b * 100 + r);
            }
        table.fillgrid();
        table.savemem(path);
    }
    ~Bench() { std::filesystem::remove_all(dir); }
};

void BM_LoadAndFillgrid(benchmark::State& state)
{
    Bench b;
    for (auto _ : state) {
        b.table.loadmem(b.path);
        benchmark::DoNotOptimize(b.grid.text(100, 2));
    }
}
BENCHMARK(BM_LoadAndFillgrid)->Unit(benchmark::kMillisecond);

void BM_CreatebankAndSave(benchmark::State& state)
{
    Bench b;
    for (auto _ : state) {
        b.table.createbank();
        b.table.savemem(b.path);
    }
}
BENCHMARK(BM_CreatebankAndSave)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
