// kestractl detect, run as the program it is, in real time, against the
// built-in virtual scanner of the folder's port binding.

#include "link/portsetup.h"
#include "support/kestractl.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::CtlRun;
using kestra::test::TempDir;
using kestra::test::writeBytes;

namespace {

CtlRun detect(const TempDir& home, const std::filesystem::path& folder)
{
    return kestra::test::runKestractl(home, "detect --dir '" + folder.string() + "'");
}

} // namespace

TEST(KestractlDetect, AFreshFolderFindsTheBuiltInScannerOnPortOneAsTheModelLastChosen)
{
    TempDir home, folder;
    CtlRun run = detect(home, folder.path());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "port 1, baud 19200, model UBC3300\n");   // nothing chosen yet
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "com250.ini"));   // finding is not storing

    // The program's last model, and the scanner moved to another port number.
    std::filesystem::create_directories(home.path() / "config" / "HalvornKESTRA");
    writeBytes(home.path() / "config" / "HalvornKESTRA" / "HalvornKESTRA.ini",
               "[model]\nbc785d=1\nx96=1\nubc33=0\n");
    writeBytes(folder.path() / "ports.ini", "[ports]\r\n7=virtual\r\n");
    run = detect(home, folder.path());
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "port 7, baud 19200, model BC796D\n");
}

TEST(KestractlDetect, NothingThatAnswersIsToldWithExitStatusOne)
{
    TempDir home, folder;
    writeBytes(folder.path() / "ports.ini", "[ports]\r\n1=/dev/kestra-no-such-device\r\n");
    const CtlRun run = detect(home, folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, std::string(kNotDetected) + "\n");
}
