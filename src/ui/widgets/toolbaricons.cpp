#include "toolbaricons.h"

#include <QString>

// The pictures are resources of the static window library: they are registered
// by name, outside any namespace, before the first one is asked for.
static void registerResources() { Q_INIT_RESOURCE(kestra); }

namespace kestra {

namespace {

// A toolbar button's picture: the SVG file under resources/toolbar, and the
// name of the same picture in a freedesktop icon theme where one means the
// same thing (empty where none does).
struct Picture {
    const char* key;
    const char* file;
    const char* themeName;
};

constexpr Picture kPictures[] = {
    {"exit_tab", "exit", "application-exit"},
    {"tabopen", "open", "document-open"},
    {"savenu", "save", "document-save"},
    {"tabundo", "undo", "edit-undo"},
    {"tab_cut", "cut", "edit-cut"},
    {"tab_copy", "copy", "edit-copy"},
    {"tab_paste", "paste", "edit-paste"},
    {"copy_channhels", "copy-channels", ""},
    {"swapbanks", "swap-banks", ""},
    {"memtab_delline", "clear-lines", ""},
    {"memtab_inslin", "insert-line", ""},
    {"memtab_remlines", "remove-empty-lines", ""},
    {"memtab_shiftup", "shift-up", ""},
    {"tab_delete", "clear-area", ""},
    {"menu_fd", "fill-down", ""},
    {"menu_fs", "fill-series", ""},
    {"filldefault", "fill-default", ""},
    {"redit", "range-editor", ""},
    {"menread", "read-scanner", ""},
    {"memsend", "send-scanner", ""},
    {"menuprint", "print", "document-print"},
    {"imp_csv", "import", ""},
    {"catch", "web-catcher", ""},
    {"ditun", "direct-tune", ""},
    {"cut_line", "cut-lines", ""},
    {"copy_line", "copy-lines", ""},
    {"paste_line", "paste-lines", ""},
    {"menucreate", "clear-sheet", "edit-clear"},
    {"center_tags", "center-tags", ""},
    {"sort_allb", "sort-ascending", "view-sort-ascending"},
    {"sort_rangedown", "sort-descending", "view-sort-descending"},
    {"fd_curbank", "find-duplicates", ""},
    {"remove_dupli", "remove-duplicates", ""},
    {"tabeasy", "easy-fill", ""},
    {"menufind", "find", "edit-find"},
    {"checktab", "check", ""},
    {"vc", "virtual-control", ""},
    {"tbtags", "bank-tags", ""},
    {"soft_options", "settings", "preferences-system"},
    {"edit_shiftdown", "shift-down", ""},
    {"edit_shiftup", "shift-up", ""},
};

void ensureResources()
{
    static const bool registered = (registerResources(), true);
    (void)registered;
}

} // namespace

QIcon pictureIcon(const std::string& key)
{
    ensureResources();
    for (const Picture& picture : kPictures) {
        if (key != picture.key) continue;
        const QIcon own(QStringLiteral(":/toolbar/%1.svg").arg(QLatin1String(picture.file)));
        if (*picture.themeName == '\0') return own;
        return QIcon::fromTheme(QLatin1String(picture.themeName), own);
    }
    return {};
}

QIcon programIcon()
{
    ensureResources();
    return QIcon(QStringLiteral(":/kestra.svg"));
}

} // namespace kestra
