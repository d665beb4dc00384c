#pragma once
// Runs the kestractl program of this build as a user would, with its per-user
// store and data folder inside a test's folder.

#include "support/testfiles.h"

#include <string>

namespace kestra::test {

struct CtlRun {
    int status = -1;   // the exit status, -1 when it did not exit
    std::string err;   // what it wrote on stderr
    std::string out;   // what it wrote on stdout
};

// With a time limit (seconds), a run still going then is killed (status 137).
CtlRun runKestractl(const TempDir& home, const std::string& args, int timeLimit = 0);

} // namespace kestra::test
