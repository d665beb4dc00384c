// Feeds arbitrary bytes to the readers of Advanced Data Import, the CSV
// table reader and the ICF decoder: no crash, and what must hold whatever the
// input (every harvested item a short text of value above 0, the ICF fields' ranges).

#include "core/text.h"
#include "importexport/csvtable.h"
#include "importexport/harvest.h"
#include "importexport/icf.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    kestra::FrequencyHarvest harvest;
    harvest.scantext(bytes);
    for (const std::string& item : harvest.items()) {
        if (item.empty() || item.size() > kestra::FrequencyHarvest::kItemLength) std::abort();
        if (!(kestra::Val(item) > 0)) std::abort();
    }

    for (const kestra::CsvRow& row : kestra::parseCsv(bytes))
        if (row.line < 1 || row.fields.empty()) std::abort();

    for (int khz9 = 0; khz9 < 2; ++khz9) {
        kestra::IcfData icf;
        if (kestra::decodeIcf(bytes, khz9, icf)) {
            kestra::perconClean(icf);
            for (const auto& bank : icf.icfdata)
                for (const auto& ch : bank)
                    if (ch.name.size() > 6 || ch.tone > 63 || ch.duplex > 15) std::abort();
        }
    }
    return 0;
}
