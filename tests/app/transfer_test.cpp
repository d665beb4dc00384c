// kestractl read and send, run as the program they are, on the built-in scanner.

#include "core/memfile.h"
#include "core/text.h"
#include "sim/ptyline.h"
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
    // stderr is a file here: the confirmation and the closing report, no progress bar.
    EXPECT_EQ(run.err.find('%'), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with("\nSend Data finished; 0 retries.\n")) << run.err;
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "virtualscanner.mem"));

    // With stderr on a terminal the bar is drawn in place and ends full; the
    // shell's "#" drops the helper's own redirections of stderr and stdout.
    {
        sim::PseudoTerminal terminal;
        ASSERT_TRUE(terminal.isOpen()) << terminal.error();
        run = kestractl(dir, "read '" + dir.file("out.mem") + "' --port sim:BC796D --banks 5" + where + " 2>'" +
                                 terminal.devicePath() + "' >/dev/null #");
        ASSERT_EQ(run.status, 0);
        const std::string shown = terminal.read();
        EXPECT_NE(shown.find("\r[##############################] 100%  channel "), std::string::npos) << shown;
        EXPECT_NE(shown.find("Read Data finished;"), std::string::npos) << shown;
    }
    const auto lines = crlfLines(readBytes(dir.file("out.mem")));
    ASSERT_EQ(lines.size(), 2107u);
    EXPECT_EQ(lines[401].substr(0, 28), "401,\"0152.5250\",\"Bank 5 row ");
    EXPECT_EQ(lines[1].substr(0, 17), "1,\"0000.0000\",\" \"");  // only bank 5 was read

    // --quiet: no closing report.
    run = kestractl(dir, "--quiet send '" + in + "' --port sim:BC796D --banks 5" + where);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err.find("finished"), std::string::npos) << run.err;
}

TEST(KestractlTransfer, HelpVersionAndUsageExitStatus)
{
    TempDir dir;
    CtlRun run = kestractl(dir, "--version");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "kestractl " KESTRA_TEST_VERSION "\n");

    // The help of one command names only it, with the shared options and the
    // exit status, on stdout.
    run = kestractl(dir, "export --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("usage: kestractl export IN.mem OUT.csv", 0), 0u) << run.out;
    EXPECT_EQ(run.out.find("convert IN OUT"), std::string::npos);
    EXPECT_NE(run.out.find("2  usage"), std::string::npos);
    run = kestractl(dir, "send --help");
    EXPECT_NE(run.out.find("sim:MODEL"), std::string::npos);   // the port words shared with read

    run = kestractl(dir, "--help");
    EXPECT_EQ(run.status, 0);
    for (const char* command : {"convert", "import", "export", "detect", "general", "monitor", "sim", "print", "read",
                                "send"})
        EXPECT_NE(run.out.find(std::string("\n  ") + command + " "), std::string::npos) << command;

    run = kestractl(dir, "export --colour");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err.rfind("kestractl: unknown option --colour", 0), 0u) << run.err;
    EXPECT_EQ(kestractl(dir, "frobnicate --help").status, 2);
    EXPECT_EQ(kestractl(dir, "").status, 2);
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
