// kestractl print: every report of a known document into a PDF file, read
// back with pdftotext -layout as a user would see the pages: columns in
// their places, heads, page breaks, totals and values.

#include "core/memfile.h"
#include "core/settings.h"
#include "support/kestractl.h"
#include "support/reportdocument.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

namespace kestra {
namespace {

using test::CtlRun;
using test::runKestractl;
using test::TempDir;

std::string pdfText(const std::string& pdf)
{
    std::string text;
    if (FILE* pipe = popen(("pdftotext -layout '" + pdf + "' - 2>/dev/null").c_str(), "r")) {
        char buf[4096];
        while (std::size_t n = fread(buf, 1, sizeof buf, pipe)) text.append(buf, n);
        pclose(pipe);
    }
    return text;
}

std::vector<std::string> split(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, at)) parts.push_back(part);
    return parts;
}

std::vector<std::string> words(const std::string& line)
{
    std::vector<std::string> out;
    std::istringstream in(line);
    for (std::string w; in >> w;) out.push_back(w);
    return out;
}

// The page's line whose words begin with these.
std::string lineStarting(const std::string& page, const std::vector<std::string>& start)
{
    for (const std::string& line : split(page, '\n')) {
        const auto w = words(line);
        if (w.size() >= start.size() && std::equal(start.begin(), start.end(), w.begin())) return line;
    }
    return {};
}

struct PrintCommand : ::testing::Test {
    TempDir home;
    std::string mem = home.file("scanner.mem");
    void SetUp() override { test::writeBytes(mem, memText(test::reportDocument(), Settings{})); }

    // The pages of a report (the text of each, form feeds taken out).
    std::vector<std::string> pages(const std::string& options)
    {
        const std::string pdf = home.file("out.pdf");
        std::remove(pdf.c_str());
        const CtlRun run = runKestractl(home, "print '" + mem + "' '" + pdf + "' --model BC785D --date 2026-11-23 " + options, 60);
        EXPECT_EQ(run.status, 0) << run.err;
        std::vector<std::string> result = split(pdfText(pdf), '\f');
        if (!result.empty() && words(result.back()).empty()) result.pop_back();
        return result;
    }
};

TEST_F(PrintCommand, AllBanksHaveTheirColumnsHeadsAndPageNumbers)
{
    const auto p = pages("--report all");
    ASSERT_EQ(p.size(), 22u);
    const std::string head = lineStarting(p[0], {"Frequency"});
    EXPECT_EQ(words(head), (std::vector<std::string>{"Frequency", "Tag", "Trunk", "Delay", "Record", "Beep", "PL/DPL",
                                                     "L.out", "ATT", "Mode", "Step"}));
    EXPECT_NE(p[0].find("Kestra Console for Uniden BC250/296/785/796 - 2026-11-23"), std::string::npos);
    EXPECT_NE(lineStarting(p[0], {"Bank:", "1"}), "");
    EXPECT_NE(lineStarting(p[0], {"Bankname:", "Bank", "tag", "1"}), "");
    EXPECT_NE(lineStarting(p[0], {"Filename:", "scanner.mem"}), "");

    const std::string row = lineStarting(p[0], {"12:"});
    EXPECT_EQ(words(row), (std::vector<std::string>{"12:", "118.3000", "Tag", "1-12", "Off", "Inf.", "On", "On",
                                                    "100.0", "Off", "Off", "FM", "10.0"}));
    // Each value starts under its head (the tab positions hold), give or
    // take the one character that pdftotext's layout may shift.
    for (const char* name : {"Tag", "Trunk", "Delay", "Record", "Beep", "PL/DPL", "L.out", "ATT", "Mode", "Step"}) {
        const std::size_t at = head.find(name);
        ASSERT_NE(at, std::string::npos);
        bool starts = false;
        for (std::size_t k = at - 1; k <= at + 1 && k < row.size(); ++k) starts |= row[k] != ' ' && row[k - 1] == ' ';
        EXPECT_TRUE(starts) << name << "\n" << head << "\n" << row;
    }
    EXPECT_NE(lineStarting(p[0], {"50:"}), "");
    EXPECT_EQ(lineStarting(p[0], {"51:"}), "");
    EXPECT_NE(lineStarting(p[1], {"51:"}), "");
    EXPECT_NE(p[0].find("--- Page 1 / 22"), std::string::npos);
    EXPECT_NE(lineStarting(p[9], {"460:", "Empty"}), "");
    EXPECT_NE(lineStarting(p[18], {"Bank:", "10"}), "");
    EXPECT_NE(lineStarting(p[21], {"Bank:", "Dummy"}), "");
    EXPECT_NE(lineStarting(p[21], {"1100:", "Empty"}), "");
    EXPECT_NE(p[21].find("--- Page 22 / 22"), std::string::npos);
}

TEST_F(PrintCommand, EveryOtherReportHasItsOwnForm)
{
    const auto both = pages("--report memsearch");
    ASSERT_EQ(both.size(), 23u);
    EXPECT_NE(both[21].find("Page 22 / 12"), std::string::npos);
    EXPECT_NE(both[22].find("Search / Edge data."), std::string::npos);
    EXPECT_EQ(words(lineStarting(both[22], {"2:"})),
              (std::vector<std::string>{"2:", "140.0000", "145.0000", "AM", "7.5", "Range", "2"}));
    EXPECT_NE(lineStarting(both[22], {"10:", "Empty"}), "");

    const auto bank = pages("--report bank --bank 10");
    ASSERT_EQ(bank.size(), 2u);
    EXPECT_NE(lineStarting(bank[0], {"Bank:", "10"}), "");
    EXPECT_NE(bank[1].find("Page 2 / 2"), std::string::npos);

    const auto ids = pages("--report ids --bank 3");
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_EQ(words(lineStarting(ids[0], {"ID"})), (std::vector<std::string>{"ID", "Tag", "ID", "Tag"}));
    EXPECT_EQ(words(lineStarting(ids[0], {"1-10:"})),
              (std::vector<std::string>{"1-10:", "1010", "Group", "1.10", "2-10:", "1110", "Group", "2.10"}));
    EXPECT_EQ(words(lineStarting(ids[0], {"9-10:"})), (std::vector<std::string>{"9-10:", "10-10:"}));
    EXPECT_EQ(pages("--report ids").size(), 10u);

    // The Dummy bank's rows, which a MEM file does not carry, hold the table.
    const auto plan = pages("--report bandplan");
    ASSERT_EQ(plan.size(), 1u);
    EXPECT_NE(plan[0].find("Kestra Console for Uniden BC250/296/785/796/UBC3300 - 2026-11-23"), std::string::npos);
    EXPECT_EQ(words(lineStarting(plan[0], {"Frequency"})),
              (std::vector<std::string>{"Frequency", "Mode", "Step", "Duplex", "Offset", "Comments"}));
    EXPECT_NE(lineStarting(plan[0], {"50:", "Empty"}), "");
    EXPECT_EQ(lineStarting(plan[0], {"51:"}), "");
}

TEST_F(PrintCommand, ProblemsAreToldWithTheirStatus)
{
    CtlRun run = runKestractl(home, "print '" + mem + "' '" + home.file("x.pdf") + "' --report nothing", 30);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("unknown report nothing"), std::string::npos);
    run = runKestractl(home, "print '" + mem + "' '" + home.file("no/such/folder/x.pdf") + "' --report search", 30);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("Problem in printerroutine #1 Err = 482"), std::string::npos);
}

} // namespace
} // namespace kestra
