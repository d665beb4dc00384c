// The frequency harvest of Advanced Data Import over a 10 MB HTML page of
// tables, dates, phone numbers and prices, read from a file as the window
// reads it. The page must be harvested in well under half a second.

#include "importexport/harvest.h"
#include "core/memfile.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

std::string bigPage()
{
    std::string page = "<html><body><table>\n";
    for (int i = 0; page.size() < 10u * 1024 * 1024; ++i) {
        page += "<tr><td><b>" + std::to_string(100 + i % 900) + "." + std::to_string(1000 + i % 9000) +
                "</b></td><td>Unit " + std::to_string(i) + "; updated 2024-05-" + std::to_string(10 + i % 20) +
                ", call 555-" + std::to_string(1000 + i % 9000) + "</td><td>$12.99</td><td>52.3702 N</td></tr>\n";
    }
    return page + "</table></body></html>\n";
}

void HarvestTenMegabyteHtmlFile(benchmark::State& state)
{
    const auto path = std::filesystem::temp_directory_path() / "kestra_harvest_bench.htm";
    kestra::writeFileAtomic(path, bigPage());
    for (auto _ : state) {
        kestra::FrequencyHarvest harvest;
        harvest.scanfile(path);
        benchmark::DoNotOptimize(harvest.items().size());
    }
    std::filesystem::remove(path);
}
BENCHMARK(HarvestTenMegabyteHtmlFile)->Unit(benchmark::kMillisecond);

// The same page as one string (the clipboard path has no cap on the lines it
// takes, so every line of the page is scanned).
void HarvestTenMegabyteHtmlText(benchmark::State& state)
{
    const std::string page = bigPage();
    for (auto _ : state) {
        kestra::FrequencyHarvest harvest;
        harvest.scantext(page);
        benchmark::DoNotOptimize(harvest.items().size());
    }
    state.SetBytesProcessed(static_cast<long long>(state.iterations() * page.size()));
}
BENCHMARK(HarvestTenMegabyteHtmlText)->Unit(benchmark::kMillisecond);

} // namespace
BENCHMARK_MAIN();
