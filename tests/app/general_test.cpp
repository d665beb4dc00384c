// kestractl general against kestractl sim on a pseudo-terminal, through the
// real QSerialPort: what is sent is read back, the FIPS codes through the MEM
// file, and a wrong option is refused before the line is touched.

#include "core/memfile.h"
#include "sim/simprocess.h"
#include "support/kestractl.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

namespace kestra::test {
namespace {

TEST(KestractlGeneral, WhatIsSentIsReadBackOnARealLine)
{
    TempDir home;
    SimProcess sim({"--model", "BC796D"}, home.file("sim.err"));
    ASSERT_FALSE(sim.device().empty());
    const std::string port = " --port " + sim.device() + " --dir " + home.path().string();

    Document doc;
    doc.clearstores();
    doc.fipscodes[1] = "012345";
    doc.fipscodes[12] = "999001";
    writeBytes(home.path() / "codes.mem", memText(doc, Settings{}));
    CtlRun sent = runKestractl(home, "general send " + home.file("codes.mem") + port +
                                         " --set 'key beep=OFF' --set 'SQ Mode=Search' --set 'Clone=slave'", 120);
    ASSERT_EQ(sent.status, 0) << sent.err;

    CtlRun read = runKestractl(home, "general read " + home.file("back.mem") + port, 120);
    ASSERT_EQ(read.status, 0) << read.err;
    EXPECT_EQ(read.out,
              "Dimmer Light: High\nDimmer Time: 15 sec.\nScreen Mask: off\nKey Beep: off\nEnter Lock: off\n"
              "Data Skip: off\nSQ Mode: Search\nApco Digital Card: Enable\nClone: SLAVE\n");
    Document back;
    ASSERT_EQ(readMem(back, readBytes(home.path() / "back.mem"), 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(back.fipscodes[1], "012345");
    EXPECT_EQ(back.fipscodes[12], "999001");
    EXPECT_EQ(back.fipscodes[2], "000000");

    CtlRun wrong = runKestractl(home, "general send " + home.file("codes.mem") + port + " --set 'Key Beep=loud'");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("Key Beep: takes \"on\" \"off\""), std::string::npos) << wrong.err;
}

} // namespace
} // namespace kestra::test
