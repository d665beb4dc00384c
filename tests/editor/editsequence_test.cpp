// Random sessions of editing: typing, list keys, line operations, sorts, undo,
// tab and model changes on random documents. Whatever the sequence, nothing
// crashes, and a save followed by a load gives back exactly what was saved,
// every column and the comments included.

#include "editor/banktools.h"
#include "editor/cellentry.h"
#include "editor/freqrules.h"
#include "editor/frequencyentry.h"
#include "editor/lineops.h"

#include "core/memfile.h"
#include "core/text.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <random>

using namespace kestra;

namespace {

const Model kModels[] = {Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D, Model::UBC3300};

struct Session : test::TableRig {
    explicit Session(unsigned seed) : TableRig(kModels[seed % 5]), random(seed)
    {
        dialogs.setFallback(Answer::Yes);
        table.saveCheck = [this] { checktable(doc, settings); };
    }

    LineOperations ops{table};
    BankTools tools{table, ops};
    FrequencyEntry frequency{table};
    CellEntry entry{table, frequency};
    std::mt19937 random;

    int any(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }

    // Any text of up to 20 characters from 32 to 255: quotes, commas, the
    // characters of other languages.
    std::string anyText()
    {
        std::string text;
        for (int n = any(0, 20); n > 0; --n) text += static_cast<char>(any(32, 255));
        return text;
    }
    std::string anyFrequency()
    {
        static const char* odd[] = {"abc", "155,5", "0", "1000", "24.9", "", "  146.52 ", "851.0125", "118.00833"};
        if (any(0, 3) == 0) return odd[any(0, 8)];
        return std::to_string(any(25, 1300)) + "." + std::to_string(any(0, 9999));
    }
    void selectSome()
    {
        const int top = any(1, kChannelRows);
        grid.setSelection({top, any(1, grid.cols() - 1), std::min(kChannelRows, top + any(0, 5)), any(1, grid.cols() - 1)});
    }

    // One step of a user's session.
    void step()
    {
        selectSome();
        switch (any(0, 14)) {
        case 0: case 1: case 2: {   // typing into a text cell
            const int storeColumn = any(0, 1) ? col::freq : col::tag;
            grid.select(any(1, kChannelRows), gridCol(storeColumn));
            if (entry.key(Keystroke::character('x')) == CellEntry::KeyResult::EditorOpened)
                entry.commit(storeColumn == col::freq ? anyFrequency() : anyText(), any(0, 1) == 1);
            break;
        }
        case 3: {   // a key in any column
            static const char keys[] = {'A', 'F', 'M', 'N', 'W', '0', '1', 'L', '+', '-', 'z'};
            grid.select(any(1, kChannelRows), any(1, grid.cols() - 1));
            if (entry.key(Keystroke::character(keys[any(0, 10)])) == CellEntry::KeyResult::EditorOpened) entry.drop();
            entry.key(Keystroke::of(any(0, 1) ? Keystroke::Kind::Space : Keystroke::Kind::Delete, any(0, 1) == 1));
            break;
        }
        case 4: ops.insertEmptyLine(); break;
        case 5: ops.removeSelectedLines(); break;
        case 6: any(0, 1) ? ops.shiftUp() : ops.shiftDown(); break;
        case 7: any(0, 1) ? ops.fillDown() : ops.fillSeries(); break;
        case 8: ops.pastecells(anyText() + "\t" + anyText() + (any(0, 1) ? "\n" : "\r\n") + anyText()); break;
        case 9: any(0, 1) ? tools.sortAscending() : tools.sortDescending(); break;
        case 10: ops.tabundo(); break;
        case 11: table.changeBank(any(0, kDummyBank)); break;
        case 12: table.setModel(ModelSwitches::of(kModels[any(0, 4)])); break;
        case 13:   // a comment, as a file or an import brings one (without quotes, as everything entering the store)
            if (table.createbank()) doc.memdata[any(0, kDummyBank)][any(1, kChannelRows)][col::comment] = withoutQuotes(anyText());
            break;
        default: any(0, 1) ? ops.removeAllEmptyLines() : ops.clearSelectedLines(); break;
        }
    }
};

} // namespace

TEST(EditSequence, RandomSessionsNeverCrashAndSaveThenLoadGivesTheSameDocument)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Session s(seed);
        for (int round = 0; round < 4; ++round) {
            for (int n = 0; n < 60; ++n) s.step();
            const std::string file = s.dir.file("session.mem");
            s.doc.fnaam = file;
            ASSERT_TRUE(s.table.fileSave());
            const Document saved = s.doc;

            test::TableRig again(kModels[seed % 5]);
            again.doc.model = saved.model;
            ASSERT_TRUE(again.table.loadmem(file));
            // Every cell of every channel of the ten banks (the Dummy bank is
            // scratch space, not part of a file); column 0, the channel's
            // number, is the file's line number and not kept in the store.
            for (int b = 0; b < kDummyBank; ++b)
                for (int r = 1; r <= kChannelRows; ++r)
                    for (int c = 1; c < kCellColumns; ++c)
                        ASSERT_EQ(again.doc.memdata[b][r][c], saved.memdata[b][r][c])
                            << "bank " << b << " row " << r << " column " << c;
            EXPECT_EQ(again.doc.banktags, saved.banktags);
            EXPECT_EQ(again.doc.priochan, saved.priochan);
        }
        // The sessions did make documents: channels and comments to compare.
        int channels = 0, comments = 0;
        for (int b = 0; b < kDummyBank; ++b)
            for (int r = 1; r <= kChannelRows; ++r) {
                channels += Val(s.doc.memdata[b][r][col::freq]) > 0;
                comments += trim(s.doc.memdata[b][r][col::comment]).size() > 0;
            }
        EXPECT_GT(channels, 3);
        EXPECT_GT(comments, 0);
    }
}
