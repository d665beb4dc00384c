#include "convert.h"

#include "core/grid.h"
#include "core/listreader.h"
#include "core/memtable.h"
#include "core/text.h"

#include "editor/freqrules.h"

#include "platform/fake/virtualscheduler.h"

namespace kestra {

MemKind memKindOf(const std::string& path, std::string_view firstBytes)
{
    if (contains(path, ".CSV") || contains(path, ".csv")) return MemKind::Special;
    ListReader reader(firstBytes);
    const std::string first = reader.field().value_or("");
    if (!contains(first, "KESTRA MEM") && contains(first, "780")) return MemKind::Lorven;
    return MemKind::Kestra;
}

bool convertMem(const ConvertRequest& request, Dialogs& dialogs, ProfileStore& profile)
{
    Document doc;
    Settings settings;
    Grid grid;
    VirtualScheduler scheduler;
    AppFolder folder(request.folder);
    MemTable table(doc, settings, grid, {dialogs, profile, scheduler, folder});
    installTableCheck(table);

    table.readProfile();
    table.readSettingsFiles();
    if (request.model) {
        doc.model = ModelSwitches::of(*request.model);
        table.applyLayout();
    }
    table.formLoad();

    // File > Save As OUT: the name as the chooser would give it.
    std::string out = request.out;
    if (!contains(out, ".MEM") && !contains(out, ".mem")) out += ".mem";
    if (isReadOnlyFile(memSavePath(out))) {
        // The window would ask; without one a read-only file stays as it is.
        dialogs.message("The file " + cp1252FromUtf8(memSavePath(out).string()) + " is read-only; it was not replaced.");
        return false;
    }

    std::string head;
    readFileBytes(request.in, head);
    bool loaded = false;
    switch (memKindOf(request.in, head)) {
    case MemKind::Kestra: loaded = table.loadmem(request.in); break;
    case MemKind::Lorven: loaded = table.load780(request.in); break;
    case MemKind::Special: loaded = table.loadspecial(request.in); break;
    }
    if (!loaded) return false;

    // Save As, on Bank 1.
    if (!table.createbank()) return false;
    if (table.saveCheck) table.saveCheck();
    doc.fnaam = out;
    return table.savemem(out);
}

} // namespace kestra

namespace kestra {

HeadlessTable::HeadlessTable(const std::string& folderPath, Dialogs& dialogs, ProfileStore& profile)
    : folder(folderPath), table(doc, settings, grid, {dialogs, profile, scheduler, folder})
{
    installTableCheck(table);
    table.readProfile();
    table.readSettingsFiles();
    table.formLoad();
}

} // namespace kestra
