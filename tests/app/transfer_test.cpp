// kestractl read and send, run as the program they are, on the built-in scanner.

#include "core/memfile.h"
#include "core/text.h"
#include "support/kestractl.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::crlfLines;
using kestra::test::readBytes;
using kestra::test::TempDir;
using kestra::test::writeBytes;

namespace {

using kestra::test::CtlRun;

CtlRun kestractl(const TempDir& home, const std::string& args) { return kestra::test::runKestractl(home, args); }

std::string someChannels()
{
    Document doc;
    doc.clearstores();
    for (int b : {0, 4, 9})
        for (int r = 1; r <= 100; r += 11) {
            auto& line = doc.memdata[b][r];
            line[col::freq] = padfreq(std::to_string(151 + r) + ".5250", 8, 5);
            line[col::tag] = "Bank " + std::to_string(b + 1) + " row " + std::to_string(r);
            for (int c : {3, 4, 6, 7, 9, 10}) line[c] = "0";
            line[col::delay] = "2";
            line[col::tone] = "12";
            line[col::mode] = "3";
            line[col::step] = "3";
        }
    return memText(doc, Settings{});
}

} // namespace

TEST(KestractlTransfer, SendThenReadThroughTheBuiltInScanner)
{
    TempDir dir;
    const std::string in = dir.file("in.mem");
    writeBytes(in, someChannels());
    const std::string where = " --dir '" + dir.path().string() + "'";
    CtlRun run = kestractl(dir, "send '" + in + "' --port sim:BC796D" + where);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.err.find("100%"), std::string::npos);  // progress on stderr
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "virtualscanner.mem"));

    run = kestractl(dir, "read '" + dir.file("out.mem") + "' --port sim:BC796D --banks 5" + where);
    ASSERT_EQ(run.status, 0) << run.err;
    const auto lines = crlfLines(readBytes(dir.file("out.mem")));
    ASSERT_EQ(lines.size(), 2107u);
    EXPECT_EQ(lines[401].substr(0, 28), "401,\"0152.5250\",\"Bank 5 row ");
    EXPECT_EQ(lines[1].substr(0, 17), "1,\"0000.0000\",\" \"");  // only bank 5 was read
}

TEST(KestractlTransfer, RefusalsEndWithStatusOne)
{
    TempDir dir;
    const std::string where = " --dir '" + dir.path().string() + "'";
    writeBytes(dir.file("bad.mem"), "not a mem file\r\n");
    CtlRun run = kestractl(dir, "send '" + dir.file("bad.mem") + "' --port sim:BC250D" + where);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "File is not compatible with this version.\n");
    writeBytes(dir.file("empty.mem"), memText([] { Document d; d.clearstores(); return d; }(), Settings{}));
    run = kestractl(dir, "send '" + dir.file("empty.mem") + "' --port sim:BC250D --banks 3" + where);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("There is nothing to send!"), std::string::npos);
    run = kestractl(dir, "read out.mem --banks 11 --port sim:BC250D" + where);
    EXPECT_EQ(run.status, 2);
    run = kestractl(dir, "read out.mem --port 7" + where);  // port 7 is bound to nothing
    EXPECT_EQ(run.status, 1);
}
